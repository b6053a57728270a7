#include "ItemJson.h"

namespace calljournal {

std::string jsonString(const Json& json, const std::string& key) {
    if (!json.is_string()) {
        throw ValueError(key + ": " + jsonText(json, false) + " is not a text");
    }
    return json.get<std::string>();
}

bool jsonFlag(const Json& json, const std::string& key) {
    if (!json.is_boolean()) {
        throw ValueError(key + ": " + jsonText(json, false) + " is neither true nor false");
    }
    return json.get<bool>();
}

}  // namespace calljournal
