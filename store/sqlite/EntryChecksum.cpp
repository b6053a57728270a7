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

std::uint64_t goOn(std::uint64_t hash, long long number) {
    return (hash ^ static_cast<std::uint64_t>(number)) * prime;
}

long long folded(std::uint64_t hash) {
    return static_cast<long long>((hash >> 32U) ^ (hash & 0xffffffffU));
}

}  // namespace

long long entryChecksum(std::string_view schema, const EntryRow& row) {
    std::uint64_t hash = goOn(goOn(goOn(offset, schema), row.id), row.place);
    for (const long long number : {row.added, row.changed, row.number, static_cast<long long>(row.isSeen)}) {
        hash = goOn(hash, number);
    }
    for (const std::string* text : {&row.time, &row.numbers, &row.name, &row.body}) {
        hash = goOn(hash, *text);
    }
    return folded(hash);
}

long long checksumOfVersion2(std::string_view schema, std::string_view id, long long place, std::string_view body) {
    return folded(goOn(goOn(goOn(goOn(offset, schema), id), std::to_string(place)), body));
}

}  // namespace calljournal
