#pragma once

#include <string>
#include <vector>

namespace calljournal {

/// What a data access service said to a write or delete request.
struct StoreReply {
    bool ok = false;
    std::string reason;                  ///< Why it failed, for people; empty if it did not.
    std::vector<std::string> uniqueIds;  ///< Of the entries written, in the order of the request.
};

/// Reads a reply. One that says neither "ok" nor "failed" counts as a failure and is quoted as the reason.
StoreReply readStoreReply(const std::string& reply);

/// Returns the bodies of the "Entry" elements of a reply to a read request, in their order. A body holds neither tag:
/// the store refuses such an entry.
std::vector<std::string> readEntryBodies(const std::string& reply);

}  // namespace calljournal
