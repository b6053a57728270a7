#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace calljournal {

/// Keeps keys in the order in which they were put. There is room for those of a call, since whatever a larger place is
/// given to is copied.
template <class Key, class Value, class Less, class Allocator>
struct OrderedKeys : nlohmann::ordered_map<Key, Value, Less, Allocator> {
    using nlohmann::ordered_map<Key, Value, Less, Allocator>::ordered_map;
    OrderedKeys() { this->reserve(24); }
};
using Json = nlohmann::basic_json<OrderedKeys>;

/// Writes `json` as text, one line or indented. Bytes that are not UTF-8 become U+FFFD, since JSON has no other form.
/// Characters that isShownAsEscape() names are escapes, of which a reader makes the same characters.
std::string jsonText(const Json& json, bool indented);

/// Appends `text` to `json` as jsonText() writes it, quickly for texts that stay as they are.
void appendJsonText(std::string& json, std::string_view text);

}  // namespace calljournal
