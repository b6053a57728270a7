#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "Entry.h"
#include "Journal.h"

namespace calljournal {

/// Which entries of a journal are wanted.
///
///     Filter filter;
///     filter.since = "2024-05-01";
///     filter.completeTimes();
///     forEachWanted(journal, filter, [](const AnyEntry& entry) { ...; return true; });
struct Filter {
    std::vector<std::string> kinds;  ///< By the words for them; none for all.
    std::string since;               ///< Newest call at or after this time; empty for no limit.
    std::string until;               ///< Newest call at or before this time; empty for no limit.
    std::string number;              ///< A call of this number; empty for any.
    std::string name;                ///< A part of the name, in any case; blank for any.
    std::size_t limit = 0;           ///< At most so many entries; 0 for all.

    /// Makes a date alone its first second in `since` and its last one in `until`. Throws ValueError unless the times
    /// are times then.
    void completeTimes();

    bool wantsKind(const std::string& kind) const;
};

/// Calls `visit` with the wanted entries, newest first, as they are read from the store, page by page, until it returns
/// false. Throws StoreError.
void forEachWanted(Journal& journal, const Filter& filter, const std::function<bool(const AnyEntry& entry)>& visit);

}  // namespace calljournal
