#include "Checksum.h"

#include <string>

namespace calljournal {

namespace {

// FNV-1a of 64 bits.
constexpr std::uint64_t offset = 14695981039346656037U;
constexpr std::uint64_t prime = 1099511628211U;

/// Goes on with a text and a byte that ends it, so that no letter can change from one text to the next unnoticed.
std::uint64_t goOnByBytes(std::uint64_t hash, std::string_view text) {
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * prime;
    }
    return (hash ^ 0xffU) * prime;
}

/// The same by eight bytes at once. The shift brings the upper bits, where alone a change of them shows, down again.
std::uint64_t goOn(std::uint64_t hash, std::uint64_t word) {
    hash = (hash ^ word) * prime;
    return hash ^ (hash >> 32U);
}

/// Returns the first eight bytes of `text` as a number, the same on every machine.
std::uint64_t wordOf(std::string_view text) {
    const auto byte = [&](unsigned i) {
        return static_cast<std::uint64_t>(static_cast<unsigned char>(text[i])) << 8U * i;
    };
    return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
}

/// Goes on with a text and its length.
std::uint64_t goOn(std::uint64_t hash, std::string_view text) {
    hash = goOn(hash, text.size());
    for (; text.size() >= sizeof(std::uint64_t); text.remove_prefix(sizeof(std::uint64_t))) {
        hash = goOn(hash, wordOf(text));
    }
    return goOnByBytes(hash, text);
}

long long folded(std::uint64_t hash) {
    return static_cast<long long>((hash >> 32U) ^ (hash & 0xffffffffU));
}

}  // namespace

long long checksumOfVersion2(std::string_view schema, std::string_view id, long long place, std::string_view body) {
    return folded(goOnByBytes(goOnByBytes(goOnByBytes(goOnByBytes(offset, schema), id), std::to_string(place)), body));
}

long long checksumOfVersion3(std::string_view schema, std::string_view id, long long place, std::string_view body) {
    return folded(goOn(goOn(goOn(goOn(offset, static_cast<std::uint64_t>(place)), schema), id), body));
}

std::array<char, pageChecksumSize> pageChecksum(std::uint64_t number, std::string_view page) {
    page.remove_suffix(pageChecksumSize);
    const std::uint64_t sum = goOn(goOn(offset, number), page);
    std::array<char, pageChecksumSize> bytes = {};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(sum >> 8U * i);
    }
    return bytes;
}

bool hasItsChecksum(std::uint64_t number, std::string_view page) {
    const auto sum = pageChecksum(number, page);
    return page.substr(page.size() - sum.size()) == std::string_view(sum.data(), sum.size());
}

}  // namespace calljournal
