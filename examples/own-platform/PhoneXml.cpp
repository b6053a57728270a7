#include <string>
#include <vector>

#include "XmlParser.h"

// A scanner that knows what the data access service sends: tags, attributes and text, with the declaration in front.
// Texts go out as they are, entities and all.

namespace {

const char blanks[] = " \t\n\r";

/// The inside of a start tag, cut into its name and its attributes' names and values in turn.
struct Tag {
    std::string name;
    std::vector<std::string> attributes;
};

Tag parseTag(const std::string& inside) {
    Tag tag;
    std::string::size_type at = inside.find_first_of(blanks);
    tag.name = inside.substr(0, at);
    while (at != std::string::npos) {
        const std::string::size_type name = inside.find_first_not_of(blanks, at);
        const std::string::size_type equals = inside.find('=', at);
        const std::string::size_type quote = inside.find_first_of("\"'", equals);
        if (name == std::string::npos || equals == std::string::npos || quote == std::string::npos) {
            break;
        }
        const std::string::size_type end = inside.find(inside[quote], quote + 1);
        if (end == std::string::npos) {
            break;
        }
        tag.attributes.push_back(inside.substr(name, inside.find_first_of("= \t\n\r", name) - name));
        tag.attributes.push_back(inside.substr(quote + 1, end - quote - 1));
        at = end + 1;
    }
    return tag;
}

}  // namespace

XmlParser::XmlParser(void* object, TagBegin begin, TagEnd end, Data characters)
    : userData(object), tagBegin(begin), tagEnd(end), data(characters) {}

XmlParser::~XmlParser() {}

bool XmlParser::parseMessage(const char* text, int length) {
    const std::string message(text, length > 0 ? static_cast<std::string::size_type>(length) : 0);
    std::vector<std::string> open;
    std::string::size_type at = 0;
    while (at < message.size()) {
        const std::string::size_type begin = message.find('<', at);
        const std::string::size_type end = message.find('>', begin);
        if (begin == std::string::npos || end == std::string::npos) {
            break;
        }
        if (begin > at && !open.empty()) {
            data(userData, message.data() + at, static_cast<int>(begin - at));
        }
        at = end + 1;
        std::string inside = message.substr(begin + 1, end - begin - 1);
        if (inside.empty() || inside[0] == '?' || inside[0] == '!') {
            continue;
        }
        if (inside[0] == '/') {
            inside = inside.substr(1, inside.find_first_of(blanks) - 1);
            if (open.empty() || open.back() != inside) {
                return false;
            }
            open.pop_back();
            tagEnd(userData, inside.c_str());
            continue;
        }
        const bool isEmpty = inside.back() == '/';
        if (isEmpty) {
            inside.pop_back();
        }
        const Tag tag = parseTag(inside);
        std::vector<const char*> attributes;
        for (const std::string& attribute : tag.attributes) {
            attributes.push_back(attribute.c_str());
        }
        attributes.push_back(nullptr);
        tagBegin(userData, tag.name.c_str(), attributes.data());
        if (isEmpty) {
            tagEnd(userData, tag.name.c_str());
        } else {
            open.push_back(tag.name);
        }
    }
    return open.empty();
}
