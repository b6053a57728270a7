#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace calljournal {

/// One character of a UTF-8 text; a byte that belongs to none has no code point.
struct Utf8Character {
    std::size_t length;
    char32_t codePoint;
    bool isValid;
};

/// Whether a byte is part of a character without beginning it.
constexpr bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xc0u) == 0x80u;
}

/// Whether all of `text` is ASCII.
bool isAscii(std::string_view text);

/// Returns the first character of `text`, which is not empty.
Utf8Character characterAt(std::string_view text);

/// Returns `text` with U+FFFD in the place of each byte that is not UTF-8.
std::string asUtf8(std::string_view text);

/// Returns how many bytes of `text` are characters as a whole if no more than `most` may be taken: `most`, or up to
/// three less where that would cut a character.
std::size_t wholeCharacters(std::string_view text, std::size_t most);

}  // namespace calljournal
