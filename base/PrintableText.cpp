#include "PrintableText.h"

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <fmt/format.h>
#include <iterator>

#include "Utf8.h"

namespace calljournal {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// The joiners U+200C and U+200D are none of them: words of many scripts, and emoji, have them.
constexpr Range escapedRanges[] = {
    {0x0000, 0x001f},    // control characters
    {0x007f, 0x009f},    // delete, further control characters
    {0x00ad, 0x00ad},    // soft hyphen
    {0x034f, 0x034f},    // grapheme joiner
    {0x061c, 0x061c},    // Arabic letter mark
    {0x115f, 0x1160},    // Hangul fillers
    {0x17b4, 0x17b5},    // Khmer inherent vowels
    {0x180e, 0x180e},    // Mongolian vowel separator
    {0x200b, 0x200b},    // zero width space
    {0x200e, 0x200f},    // left-to-right and right-to-left mark
    {0x2028, 0x202e},    // line and paragraph separator, embeddings and overrides of the direction
    {0x2060, 0x206f},    // word joiner, invisible operators, isolates of the direction
    {0x3164, 0x3164},    // Hangul filler
    {0xfeff, 0xfeff},    // byte-order mark
    {0xffa0, 0xffa0},    // halfwidth Hangul filler
    {0xfff9, 0xfffb},    // annotations
    {0x1d173, 0x1d17a},  // musical formats
    {0xe0000, 0xe007f},  // tags
};

std::string escapeOf(char32_t codePoint) {
    const auto number = static_cast<unsigned>(codePoint);
    switch (codePoint) {
        case '\n':
            return "\\n";
        case '\t':
            return "\\t";
        default:
            return codePoint < 0xa0      ? fmt::format("\\x{:02x}", number)
                   : codePoint < 0x10000 ? fmt::format("\\u{:04x}", number)
                                         : fmt::format("\\U{:08x}", number);
    }
}

/// Whether `text` is printable ASCII, as most cells are: one byte a column, and nothing to escape.
bool isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7f; });
}

/// The C library's table of widths, whatever locale the user has.
std::size_t columnsOf(char32_t codePoint) {
    static const locale_t utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = ::uselocale(utf8);
    const int width = ::wcwidth(static_cast<wchar_t>(codePoint));
    ::uselocale(before);
    return width < 0 ? 1 : static_cast<std::size_t>(width);
}

}  // namespace

bool isShownAsEscape(char32_t codePoint) {
    return std::any_of(std::begin(escapedRanges), std::end(escapedRanges),
                       [&](const Range& range) { return codePoint >= range.first && codePoint <= range.last; });
}

std::string printable(std::string_view text) {
    if (isPlain(text)) {
        return std::string(text);
    }
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const Utf8Character c = characterAt(text);
        if (!c.isValid) {
            shown += fmt::format("\\x{:02x}", static_cast<unsigned char>(text[0]));
        } else if (isShownAsEscape(c.codePoint)) {
            shown += escapeOf(c.codePoint);
        } else {
            shown += text.substr(0, c.length);
        }
        text.remove_prefix(c.length);
    }
    return shown;
}

std::size_t displayWidth(std::string_view text) {
    if (isPlain(text)) {
        return text.size();
    }
    std::size_t width = 0;
    while (!text.empty()) {
        const Utf8Character c = characterAt(text);
        width += c.codePoint < 0x300 ? 1 : columnsOf(c.codePoint);
        text.remove_prefix(c.length);
    }
    return width;
}

std::string fitted(const std::string& text, std::size_t width) {
    if (displayWidth(text) <= width) {
        return text;
    }
    std::string_view rest = text;
    std::size_t used = 0;
    while (!rest.empty()) {
        const Utf8Character c = characterAt(rest);
        const std::size_t columns = c.codePoint < 0x300 ? 1 : columnsOf(c.codePoint);
        if (used + columns + 1 > width) {
            break;
        }
        used += columns;
        rest.remove_prefix(c.length);
    }
    return text.substr(0, text.size() - rest.size()) + "…";
}

}  // namespace calljournal
