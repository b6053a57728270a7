#include "Terminal.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace calljournal {

namespace {

/// One character of a UTF-8 text; a byte that belongs to none has no code point.
struct Character {
    std::size_t length;
    char32_t codePoint;
    bool isValid;
};

Character characterAt(std::string_view text) {
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
        if ((byte(i) & 0xc0u) != 0x80u) {
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

bool isTerminal() {
    return ::isatty(STDOUT_FILENO) != 0;
}

std::size_t terminalWidth() {
    if (const char* columns = std::getenv("COLUMNS")) {
        const unsigned long width = std::strtoul(columns, nullptr, 10);
        if (width > 0) {
            return width;
        }
    }
    winsize size = {};
    if (isTerminal() && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) {
        return size.ws_col;
    }
    return 0;
}

std::string printable(std::string_view text) {
    if (isPlain(text)) {
        return std::string(text);
    }
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const Character c = characterAt(text);
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

std::string asUtf8(std::string_view text) {
    std::string valid;
    valid.reserve(text.size());
    while (!text.empty()) {
        const Character c = characterAt(text);
        valid += c.isValid ? text.substr(0, c.length) : "\ufffd";
        text.remove_prefix(c.length);
    }
    return valid;
}

std::size_t displayWidth(std::string_view text) {
    if (isPlain(text)) {
        return text.size();
    }
    std::size_t width = 0;
    while (!text.empty()) {
        const Character c = characterAt(text);
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
        const Character c = characterAt(rest);
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
