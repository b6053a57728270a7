#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// One callback of an XML parser.
struct XmlEvent {
    enum Kind { begin, end, text };

    Kind kind;
    std::string value;  ///< The element's name, or the text.
    std::vector<std::pair<std::string, std::string>> attributes;

    bool operator==(const XmlEvent& other) const {
        return kind == other.kind && value == other.value && attributes == other.attributes;
    }
};

/// What a parser made of a message.
struct XmlEvents {
    std::vector<XmlEvent> events;
    bool isSound = false;  ///< The parser's own verdict.

    bool operator==(const XmlEvents& other) const { return events == other.events && isSound == other.isSound; }

    /// One event a line: `<name attribute=[value]>`, `</name>`, `[text]`; and a line `unsound` where the verdict is
    /// that.
    std::string asText() const;
};

void PrintTo(const XmlEvents& events, std::ostream* out);

/// What XmlParser makes of `message`. The message is given to it in memory of exactly its size, so that a sanitizer
/// sees any step outside of it.
XmlEvents parse(std::string_view message);
