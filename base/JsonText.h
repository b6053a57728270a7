#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace calljournal {

/// Keeps keys in the order in which they were put.
using Json = nlohmann::ordered_json;

/// Writes `json` as text, one line or indented. Bytes that are not UTF-8 become U+FFFD, since JSON has no other form.
std::string jsonText(const Json& json, bool indented);

/// Appends `text` to `json` as jsonText() writes it, quickly for texts that stay as they are.
void appendJsonText(std::string& json, std::string_view text);

}  // namespace calljournal
