#include "JsonText.h"

#include <algorithm>
#include <fmt/format.h>

#include "PrintableText.h"
#include "Utf8.h"

namespace calljournal {

namespace {

/// Whether a character stays what it is between quotes.
bool isPlain(unsigned char c) {
    return c >= 0x20 && c < 0x7f && c != '"' && c != '\\';
}

/// Whether all of `text` does.
bool isPlain(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (isPlain(static_cast<unsigned char>(text[i]))) {
            ++i;
            continue;
        }
        // What is no character has a length of one, too.
        const Utf8Character c = characterAt(text.substr(i));
        if (c.length == 1 || isShownAsEscape(c.codePoint)) {
            return false;
        }
        i += c.length;
    }
    return true;
}

/// Beyond four digits an escape is two surrogates.
std::string escapeOf(char32_t codePoint) {
    const auto number = static_cast<unsigned>(codePoint);
    if (number < 0x10000) {
        return fmt::format("\\u{:04x}", number);
    }
    return fmt::format("\\u{:04x}\\u{:04x}", 0xd7c0 + (number >> 10), 0xdc00 + (number & 0x3ff));
}

}  // namespace

std::string jsonText(const Json& json, bool indented) {
    const std::string dumped = json.dump(indented ? 2 : -1, ' ', false, Json::error_handler_t::replace);
    std::string text;
    text.reserve(dumped.size());
    std::string_view rest = dumped;
    for (;;) {
        // A control character below these is a line end between texts.
        const auto odd = std::find_if(rest.begin(), rest.end(), [](unsigned char c) { return c >= 0x7f; });
        text.append(rest.begin(), odd);
        rest.remove_prefix(static_cast<std::size_t>(odd - rest.begin()));
        if (rest.empty()) {
            return text;
        }
        const Utf8Character c = characterAt(rest);
        if (isShownAsEscape(c.codePoint)) {
            text += escapeOf(c.codePoint);
        } else {
            text += rest.substr(0, c.length);
        }
        rest.remove_prefix(c.length);
    }
}

void appendJsonText(std::string& json, std::string_view text) {
    if (isPlain(text)) {
        json.append(1, '"').append(text).append(1, '"');
    } else {
        json += jsonText(Json(std::string(text)), false);
    }
}

}  // namespace calljournal
