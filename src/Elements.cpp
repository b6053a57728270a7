#include "detail/Elements.h"

#include <algorithm>
#include <cstring>

#include "ClientUtils.h"

namespace calljournal::detail {

namespace {

/// Whether "name>" is at `text`; never looks behind the terminator.
bool isNameAt(const char* text, std::string_view name) {
    // Most other names differ in their first letter already.
    return (name.empty() || *text == name.front()) && std::strncmp(text, name.data(), name.size()) == 0 &&
           text[name.size()] == '>';
}

/// Returns the next "<", or null. Often it is right there.
const char* findMarkup(const char* text) {
    return *text == '<' ? text : std::strchr(text, '<');
}

/// Does what findBegin does, by looking for the front of the begin tag.
CALLJOURNAL_APART const char* findFarBegin(const char* text, std::string_view tag) {
    char front[32] = "<";
    front[1 + tag.copy(front + 1, sizeof front - 2)] = '\0';
    while ((text = std::strstr(text, front)) != nullptr) {
        ++text;
        if (isNameAt(text, tag)) {
            return text + tag.size() + 1;
        }
    }
    return nullptr;
}

}  // namespace

void appendBegin(std::string& out, std::string_view tag) {
    out += '<';
    out += tag;
    out += '>';
}

void appendClose(std::string& out, std::string_view tag) {
    out += "</";
    out += tag;
    out += '>';
}

void appendElement(std::string& out, std::string_view tag, std::string_view value) {
    appendBegin(out, tag);
    out += value;
    appendClose(out, tag);
}

void makeRoom(std::string& out, std::size_t length) {
    if (out.capacity() - out.size() < length) {
        // On 32-bit machines a text may be longer than half of the longest.
        out.reserve(std::max(out.size() + length, std::min(2 * out.size(), out.max_size())));
    }
}

const char* findBegin(const char* text, std::string_view tag) {
    // It is mostly the next element, and otherwise mostly none.
    return *text == '<' && isNameAt(text + 1, tag) ? text + tag.size() + 2 : findFarBegin(text, tag);
}

const char* findClose(const char* text, std::string_view tag) {
    for (; (text = findMarkup(text)) != nullptr; ++text) {
        if (text[1] == '/' && isNameAt(text + 2, tag)) {
            return text;
        }
    }
    return nullptr;
}

CALLJOURNAL_FLAT FoundElement findElement(const char* cursor, std::string_view tag) {
    const char* const begin = findBegin(cursor, tag);
    const char* const close = begin == nullptr ? nullptr : findClose(begin, tag);
    if (close == nullptr) {
        return {nullptr, nullptr, cursor};
    }
    const bool isAtCursor = begin == cursor + tag.size() + 2;
    return {begin, close, isAtCursor ? close + tag.size() + 3 : cursor};
}

std::string unescaped(std::string_view raw) {
    std::string text(raw);
    if (mayHoldEntities(raw)) {
        text = ClientUtils::unescapeXMLString(text);
    }
    return text;
}

}  // namespace calljournal::detail
