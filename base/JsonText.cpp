#include "JsonText.h"

#include "Utf8.h"

namespace calljournal {

namespace {

/// Whether a character stays what it is between quotes.
bool isPlain(unsigned char c) {
    return c >= 0x20 && c < 0x80 && c != '"' && c != '\\';
}

/// Whether all of `text` does.
bool isPlain(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (isPlain(static_cast<unsigned char>(text[i]))) {
            ++i;
            continue;
        }
        // What is no character has a length of one, too.
        const std::size_t length = characterAt(text.substr(i)).length;
        if (length == 1) {
            return false;
        }
        i += length;
    }
    return true;
}

}  // namespace

std::string jsonText(const Json& json, bool indented) {
    return json.dump(indented ? 2 : -1, ' ', false, Json::error_handler_t::replace);
}

void appendJsonText(std::string& json, std::string_view text) {
    if (isPlain(text)) {
        json.append(1, '"').append(text).append(1, '"');
    } else {
        json += jsonText(Json(std::string(text)), false);
    }
}

}  // namespace calljournal
