#include "PrintableText.h"

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <fmt/format.h>

#include "Utf8.h"

namespace calljournal {

namespace {

/// Marks that turn the direction of what follows: a name could rearrange a whole line with them.
bool turnsDirection(char32_t c) {
    return (c >= 0x202a && c <= 0x202e) || (c >= 0x2066 && c <= 0x2069) || c == 0x200e || c == 0x200f || c == 0x061c;
}

bool isControl(char32_t c) {
    return c < 0x20 || (c >= 0x7f && c < 0xa0) || c == 0x2028 || c == 0x2029;
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
        } else if (c.codePoint == '\n') {
            shown += "\\n";
        } else if (c.codePoint == '\t') {
            shown += "\\t";
        } else if (isControl(c.codePoint) && c.codePoint < 0x100) {
            shown += fmt::format("\\x{:02x}", static_cast<unsigned>(c.codePoint));
        } else if (isControl(c.codePoint) || turnsDirection(c.codePoint)) {
            shown += fmt::format("\\u{:04x}", static_cast<unsigned>(c.codePoint));
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
