#pragma once

#include <cstdint>
#include <vector>

#include "Journal.h"

namespace calljournal {

/// What has changed in a journal since a change number.
struct JournalChanges {
    std::uint64_t number = 0;     ///< To ask from next.
    std::vector<Change> entries;  ///< One for each entry, in the order of their last changes.
    bool isWhole = true;          ///< False if more was deleted in between than the store remembers.
};

/// Returns what has changed since an earlier call returned the number `since`, of very much the first part; with 0,
/// nothing but the number to begin with. Call-backs are among the entries; those that no list shows are not. Throws
/// StoreError.
JournalChanges changesSince(Journal& journal, std::uint64_t since);

}  // namespace calljournal
