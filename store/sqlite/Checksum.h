#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "EntryRow.h"

namespace calljournal {

/// Returns the checksum of a row of `schema`: half the bits of one of 64, so that the sum over all entries of a store
/// stays far below what a database's integer holds.
long long entryChecksum(std::string_view schema, const EntryRow& row);

/// The checksum of an entry in the tables of version 2.
long long checksumOfVersion2(std::string_view schema, std::string_view id, long long place, std::string_view body);

/// How many bytes at the end of each page of a store hold its checksum.
constexpr std::size_t pageChecksumSize = sizeof(std::uint64_t);

/// Returns what is to be at the end of the page of a database that has this number: its checksum, lowest byte first, as
/// on every machine. `page` is all of it; its own last bytes do not count.
std::array<char, pageChecksumSize> pageChecksum(std::uint64_t number, std::string_view page);

/// Returns whether the page ends in its checksum.
bool hasItsChecksum(std::uint64_t number, std::string_view page);

}  // namespace calljournal
