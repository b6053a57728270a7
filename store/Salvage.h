#pragma once

#include <string>
#include <vector>

namespace calljournal {

/// An entry of a damaged store, as it was written.
struct SalvagedEntry {
    std::string schema;  ///< Empty if it is lost of which one the entry is.
    std::string id;
    std::string body;  ///< As in a write request; see EntryBody.h.
};

/// What is left of a damaged store.
struct Salvage {
    std::vector<SalvagedEntry> entries;  ///< Schema by schema, in order of first insertion.
    std::vector<std::string> losses;     ///< What is lost, a sentence each.
};

/// Reads what is whole of the store of `url`, however damaged it is, and changes nothing: its file is read page by
/// page, and a page or an entry counts only if it is as it was written. An entry of which no more than the id is left is
/// among the losses. Nobody may use the store meanwhile, this process included. Needs the memory for all entries. Throws
/// StoreError if the file cannot be read, or if it is none of this version.
Salvage salvageStore(const std::string& url);

}  // namespace calljournal
