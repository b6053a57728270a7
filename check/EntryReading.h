#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Message.h"

namespace calljournal {

/// One entry as its reader left it.
struct ReadEntry {
    std::optional<EntryValues> values;  ///< Nothing if the missed call list dropped it.
    std::string callLogType;            ///< That the list kept or dropped it for; empty for a decoder.
};

/// Has the reader of the message read it, and returns the entries that it saw. A request to write is read as the store
/// serves it. Values that the missed call list hands over raw are unescaped as often as the decoder would.
std::vector<ReadEntry> readEntries(const Message& message);

}  // namespace calljournal
