#pragma once

#include <string>
#include <string_view>

#include "EntryQuery.h"

namespace calljournal {

/// Derives the keys that a store finds an entry by from what a journal reads of it; the indexer of every store that a
/// journal is on. An entry that no list shows, and one of a schema without a kind, has no keys and was seen.
EntryKeys indexEntry(std::string_view schema, const std::string& text, const std::string& region);

/// Returns what the store keeps of a number's key, so that keys that are texts of any kind are kept and looked up.
std::string indexedNumber(const std::string& numberKey);

/// Returns what the store keeps of a name.
std::string indexedName(const std::string& firstname, const std::string& surname);

}  // namespace calljournal
