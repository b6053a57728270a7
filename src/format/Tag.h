#pragma once

#include <string_view>

#include "ShortText.h"

namespace calljournal::format {

/// The name of an element. As a text it is the name, without markup.
class Tag {
public:
    constexpr Tag(std::string_view name) : endTag_("</", name, ">") {}

    constexpr operator std::string_view() const { return {endTag_.data() + 2, endTag_.size() - 3}; }

    /// The name with the markup of an end tag: "</Name>".
    constexpr const ShortText& endTag() const { return endTag_; }

    friend constexpr bool operator==(const Tag& tag, std::string_view name) { return std::string_view(tag) == name; }
    friend constexpr bool operator!=(const Tag& tag, std::string_view name) { return !(tag == name); }

private:
    ShortText endTag_;
};

}  // namespace calljournal::format
