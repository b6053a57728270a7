#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "KindDescriptor.h"
#include "Message.h"

namespace calljournal {

/// A value in which two entries differ.
struct Difference {
    std::size_t call;  ///< From 1; 0 for a value of the entry itself.
    std::string_view field;
    std::optional<std::string> a;  ///< Nothing if this entry has no such call.
    std::optional<std::string> b;
};

/// Reads the only entry of a message. Nothing if it has none or more, or is of no kind.
std::optional<EntryValues> readOnlyEntry(const Message& message);

/// Returns each value that differs. A call that only one entry has differs in each value that is not empty.
std::vector<Difference> compareEntries(const KindDescriptor& kind, const EntryValues& a, const EntryValues& b);

}  // namespace calljournal
