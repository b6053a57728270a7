#pragma once

#include <string_view>

#include "EntryRow.h"

namespace calljournal {

/// Returns the checksum of a row of `schema`: half the bits of one of 64, so that the sum over all entries of a store
/// stays far below what a database's integer holds.
long long entryChecksum(std::string_view schema, const EntryRow& row);

/// The checksum of an entry in the tables of version 2.
long long checksumOfVersion2(std::string_view schema, std::string_view id, long long place, std::string_view body);

}  // namespace calljournal
