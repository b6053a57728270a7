#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace calljournal {

/// The checksum of an entry in the tables of version 2, and of version 3.
long long checksumOfVersion2(std::string_view schema, std::string_view id, long long place, std::string_view body);
long long checksumOfVersion3(std::string_view schema, std::string_view id, long long place, std::string_view body);

/// How many bytes at the end of each page of a store hold its checksum.
constexpr std::size_t pageChecksumSize = sizeof(std::uint64_t);

/// Returns what is to be at the end of the page of a database that has this number: its checksum, lowest byte first, as
/// on every machine. `page` is all of it; its own last bytes do not count.
std::array<char, pageChecksumSize> pageChecksum(std::uint64_t number, std::string_view page);

/// Returns whether the page ends in its checksum.
bool hasItsChecksum(std::uint64_t number, std::string_view page);

}  // namespace calljournal
