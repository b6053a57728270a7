#pragma once

#include <cstddef>
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
///     for (const AnyEntry& entry : wantedEntries(journal, filter)) ...
struct Filter {
    std::vector<std::string> kinds;  ///< By the words for them; none for all.
    std::string since;               ///< Newest call at or after this time; empty for no limit.
    std::string until;               ///< Newest call at or before this time; empty for no limit.
    std::string number;              ///< A call of this number; empty for any.
    std::string name;                ///< A part of the name, in any case; empty for any.
    std::size_t limit = 0;           ///< At most so many entries; 0 for all.

    /// Makes a date alone its first second in `since` and its last one in `until`. Throws ValueError unless the times
    /// are times then.
    void completeTimes();

    bool wantsKind(const std::string& kind) const;
};

/// Returns the wanted entries, newest first. Throws what Journal::entries() throws.
std::vector<AnyEntry> wantedEntries(Journal& journal, const Filter& filter);

}  // namespace calljournal
