#include "Elements.h"

#include <algorithm>
#include <cstring>

#include "ClientUtils.h"

namespace calljournal {
namespace detail {

namespace {

/// Whether "name>" stands at `text`; never looks behind the terminator.
bool isNameAt(const char* text, std::string_view name) {
    return std::strncmp(text, name.data(), name.size()) == 0 && text[name.size()] == '>';
}

/// Finds "<tag>", or "</tag>" for the mark "</". Null if there is none.
const char* findTag(const char* text, std::string_view mark, std::string_view tag) {
    for (; (text = std::strchr(text, '<')) != nullptr; ++text) {
        if ((mark.size() == 1 || text[1] == mark[1]) && isNameAt(text + mark.size(), tag)) {
            return text;
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
        out.reserve(std::max(out.size() + length, 2 * out.size()));
    }
}

FoundElement findElement(const char* cursor, std::string_view tag) {
    const char* open = findTag(cursor, "<", tag);
    if (open == nullptr) {
        return {nullptr, nullptr, cursor};
    }
    const char* begin = open + tag.size() + 2;
    const char* close = findTag(begin, "</", tag);
    if (close == nullptr) {
        return {nullptr, nullptr, cursor};
    }
    return {begin, close, open == cursor ? close + tag.size() + 3 : cursor};
}

bool mayHoldEntities(std::string_view raw) {
    return raw.find('&') != std::string_view::npos;
}

void assignUnescaped(std::string& out, std::string_view raw) {
    if (mayHoldEntities(raw)) {
        out = ClientUtils::unescapeXMLString(std::string(raw));
    } else {
        out.assign(raw);
    }
}

}  // namespace detail
}  // namespace calljournal
