#include "Folding.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>

#include "Text.h"
#include "Utf8.h"

namespace calljournal {

namespace {

constexpr bool isBlank(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte <= ' ' || byte == 0x7fU;
}

std::string caseFolded(std::string_view text) {
    std::string folded;
    icu::StringByteSink<std::string> sink(&folded);
    UErrorCode error = U_ZERO_ERROR;
    icu::CaseMap::utf8Fold(0, icu::StringPiece(text.data(), static_cast<int32_t>(text.size())), sink, nullptr, error);
    return folded;
}

/// Returns `text` with a space in the place of each white space outside ASCII.
std::string withPlainBlanks(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const Utf8Character next = characterAt(text);
        if (next.isValid && next.length > 1 && u_isUWhiteSpace(static_cast<UChar32>(next.codePoint)) != 0) {
            plain += ' ';
        } else {
            plain.append(text, 0, next.length);
        }
        text.remove_prefix(next.length);
    }
    return plain;
}

}  // namespace

std::string folded(std::string_view text) {
    const std::string plain = isAscii(text) ? lowerCase(text) : withPlainBlanks(caseFolded(text));
    std::string words;
    for (const char c : plain) {
        if (!isBlank(c)) {
            words += c;
        } else if (!words.empty() && words.back() != ' ') {
            words += ' ';
        }
    }
    words.resize(words.size() - (!words.empty() && words.back() == ' ' ? 1 : 0));
    return words;
}

}  // namespace calljournal
