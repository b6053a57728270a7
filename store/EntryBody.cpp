#include "EntryBody.h"

#include <algorithm>
#include <cstring>

#include "StoreRequest.h"
#include "StoreWords.h"

namespace calljournal {

namespace {

bool isNameCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

/// Returns the name in the open tag that `body` begins with; empty if there is none.
std::string_view firstTagName(std::string_view body) {
    if (body.empty() || body[0] != '<') {
        return {};
    }
    const auto end = std::find_if_not(body.begin() + 1, body.end(), isNameCharacter);
    return end != body.end() && *end == '>' ? body.substr(1, static_cast<std::size_t>(end - body.begin()) - 1)
                                            : std::string_view();
}

/// Returns whether the close tag of `name` is at `begin`.
bool isCloseAt(std::string_view body, std::size_t begin, std::string_view name) {
    const std::string_view tag = body.substr(begin, name.size() + 3);
    return tag.size() == name.size() + 3 && tag.substr(0, 2) == "</" && tag.substr(2, name.size()) == name &&
           tag.back() == '>';
}

/// Returns where the close tag of the first element begins, or npos.
std::size_t findClose(std::string_view body, std::string_view name, std::size_t textBegin) {
    if (name == format::text::LOGLIST) {
        const std::size_t last = std::max(textBegin, body.size() - std::min(body.size(), name.size() + 3));
        return isCloseAt(body, last, name) ? last : std::string_view::npos;
    }
    std::size_t begin = body.find('<', textBegin);
    while (begin != std::string_view::npos && !isCloseAt(body, begin, name)) {
        begin = body.find('<', begin + 1);
    }
    return begin;
}

}  // namespace

std::optional<BodyElement> firstElement(std::string_view body) {
    const std::string_view name = firstTagName(body);
    if (name.empty()) {
        return std::nullopt;
    }
    const std::size_t textBegin = name.size() + 2;
    const std::size_t textEnd = findClose(body, name, textBegin);
    if (textEnd == std::string_view::npos) {
        return std::nullopt;
    }
    return BodyElement{name, body.substr(textBegin, textEnd - textBegin), body.substr(0, textEnd + name.size() + 3)};
}

void appendWithPictureClip(std::string_view body, std::string& text) {
    std::string_view rest = body;
    std::optional<BodyElement> element = firstElement(rest);
    while (element && element->name != format::text::VIEWED) {
        rest.remove_prefix(element->whole.size());
        if (element->name == format::text::PICTURE) {
            text.append(body.substr(0, body.size() - rest.size() - element->whole.size()));
            appendXmlElement(format::text::PICTURE_CLIP, element->text, text);
            body = rest;
        }
        element = firstElement(rest);
    }
    text.append(body);
}

void appendServed(std::string_view schema, std::string_view id, std::string_view body, std::string& text) {
    appendXmlElement(format::text::UNIQUEID, id, text);
    // By memmem, since a body is full of the "<" that string_view::find stops at.
    static const std::string picture = openTag(format::text::PICTURE);
    if (servesPictureClips(schema) && ::memmem(body.data(), body.size(), picture.data(), picture.size()) != nullptr) {
        appendWithPictureClip(body, text);
    } else {
        text.append(body);
    }
}

}  // namespace calljournal
