#include "EntryChecksum.h"

#include <cstdint>
#include <string>

namespace calljournal {

namespace {

// FNV-1a of 64 bits.
constexpr std::uint64_t offset = 14695981039346656037U;
constexpr std::uint64_t prime = 1099511628211U;

/// Goes on with a text and a byte that ends it, so that no letter can change from one text to the next unnoticed.
std::uint64_t goOn(std::uint64_t hash, std::string_view text) {
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * prime;
    }
    return (hash ^ 0xffU) * prime;
}

}  // namespace

long long entryChecksum(std::string_view schema, std::string_view id, long long place, std::string_view body) {
    const std::uint64_t hash = goOn(goOn(goOn(goOn(offset, schema), id), std::to_string(place)), body);
    // Half the bits: sums of them over all entries of a store stay far below what a database's integer holds.
    return static_cast<long long>((hash >> 32U) ^ (hash & 0xffffffffU));
}

}  // namespace calljournal
