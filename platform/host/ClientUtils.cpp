#include "ClientUtils.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace ClientUtils {

namespace {

constexpr const char* blanks = " \t\n\r\v\f";

struct Entity {
    char character;
    std::string_view text;
};

/// XML 1.0, section 4.6.
constexpr Entity entities[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"},
};

/// For each byte the number of its entity, counted from 1; 0 if it is written as it is.
constexpr std::array<unsigned char, 256> makeEntityNumbers() {
    std::array<unsigned char, 256> numbers{};
    unsigned char number = 0;
    for (const Entity& entity : entities) {
        numbers[static_cast<unsigned char>(entity.character)] = ++number;
    }
    return numbers;
}

constexpr auto entityNumbers = makeEntityNumbers();

/// Returns the entity that writes `c`, or null.
const Entity* entityFor(char c) {
    const unsigned char number = entityNumbers[static_cast<unsigned char>(c)];
    return number == 0 ? nullptr : entities + number - 1;
}

/// Returns the entity at the start of `text`, or null.
const Entity* entityAtStart(std::string_view text) {
    for (const Entity& entity : entities) {
        if (text.substr(0, entity.text.size()) == entity.text) {
            return &entity;
        }
    }
    return nullptr;
}

bool isForbiddenInXml(char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

constexpr std::ptrdiff_t blockSize = 32;

/// Whether a byte of the block may be a control character. They are rare and a list is long, so eight bytes are looked
/// at together: taking 0x20 from each sets the top bit of those below, unless it was set before.
bool mayHoldControls(const char* block) {
    std::uint64_t below = 0;
    for (std::ptrdiff_t i = 0; i < blockSize; i += 8) {
        std::uint64_t bytes;
        std::memcpy(&bytes, block + i, sizeof bytes);
        below |= (bytes - 0x2020202020202020U) & ~bytes;
    }
    return (below & 0x8080808080808080U) != 0;
}

}  // namespace

std::string escapeXMLString(const std::string& text) {
    const auto first = std::find_if(text.begin(), text.end(), [](char c) { return entityFor(c) != nullptr; });
    std::string escaped(text.begin(), first);
    if (first == text.end()) {
        return escaped;
    }
    escaped.reserve(text.size());
    for (const char c : std::string_view(text).substr(escaped.size())) {
        if (const Entity* const entity = entityFor(c)) {
            escaped += entity->text;
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::string unescapeXMLString(const std::string& text) {
    std::string plain;
    plain.reserve(text.size());
    std::string_view rest = text;
    for (std::size_t at; (at = rest.find('&')) != std::string_view::npos;) {
        plain += rest.substr(0, at);
        rest.remove_prefix(at);
        const Entity* const entity = entityAtStart(rest);
        plain += entity != nullptr ? entity->character : '&';
        rest.remove_prefix(entity != nullptr ? entity->text.size() : 1);
    }
    plain += rest;
    return plain;
}

std::string fixSpecialXMLCharactersToQuote(const std::string& text) {
    std::string fixed = text;
    char* at = fixed.data();
    char* const end = at + fixed.size();
    while (at != end) {
        if (end - at >= blockSize && !mayHoldControls(at)) {
            at += blockSize;
            continue;
        }
        if (isForbiddenInXml(*at)) {
            *at = '\'';
        }
        ++at;
    }
    return fixed;
}

std::string trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

bool isAllDigits(const std::string& text) {
    return text.find_first_not_of("0123456789") == std::string::npos;
}

int stoi(const std::string& text) {
    return static_cast<int>(std::clamp<long>(std::strtol(text.c_str(), nullptr, 10), INT_MIN, INT_MAX));
}

void handleCRatEnd(std::string& line) {
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
}

}  // namespace ClientUtils
