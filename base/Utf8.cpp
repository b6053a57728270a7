#include "Utf8.h"

#include <algorithm>

namespace calljournal {

namespace {

constexpr std::size_t longestCharacter = 4;

}  // namespace

bool isAscii(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0x80u) != 0; });
}

Utf8Character characterAt(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80         ? 1
                               : (lead >> 5) == 6  ? 2
                               : (lead >> 4) == 14 ? 3
                               : (lead >> 3) == 30 ? 4
                                                   : 0;
    static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (length == 0 || length > text.size()) {
        return {1, 0, false};
    }
    char32_t codePoint = length == 1 ? lead : lead & (0x7fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i])) {
            return {1, 0, false};
        }
        codePoint = (codePoint << 6) | (byte(i) & 0x3fu);
    }
    const bool isSurrogate = codePoint >= 0xd800 && codePoint <= 0xdfff;
    if (codePoint < smallest[length] || codePoint > 0x10ffff || isSurrogate) {
        return {1, 0, false};
    }
    return {length, codePoint, true};
}

std::string asUtf8(std::string_view text) {
    std::string valid;
    valid.reserve(text.size());
    while (!text.empty()) {
        const Utf8Character c = characterAt(text);
        valid += c.isValid ? text.substr(0, c.length) : "\ufffd";
        text.remove_prefix(c.length);
    }
    return valid;
}

std::size_t wholeCharacters(std::string_view text, std::size_t most) {
    if (most >= text.size()) {
        return text.size();
    }
    // A byte that goes on with a character stays with its lead byte; more of them than a character has are no
    // characters.
    for (std::size_t back = 0; back < longestCharacter && back <= most; ++back) {
        if (!isContinuation(text[most - back])) {
            return most - back;
        }
    }
    return most;
}

}  // namespace calljournal
