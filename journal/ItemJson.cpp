#include "ItemJson.h"

#include <algorithm>

namespace calljournal {

namespace {

/// An entry's calls are objects in an array in an object, which may be in an array.
constexpr int deepestNesting = 16;

bool isNotTooDeep(int depth, Json::parse_event_t /*event*/, Json& /*value*/) {
    if (depth >= deepestNesting) {
        throw ValueError("arrays and objects are nested deeper than " + std::to_string(deepestNesting) + " levels");
    }
    return true;
}

/// What the library says, without its own names for errors.
std::string sentenceOf(const Json::exception& error) {
    constexpr std::string_view withPlace = "parse error at ";
    const std::string_view text = error.what();
    const std::string_view sentence = text.substr(text.find("] ") + 2);
    const bool hasPlace = sentence.substr(0, withPlace.size()) == withPlace;
    return std::string(sentence.substr(hasPlace ? withPlace.size() : 0));
}

}  // namespace

Json parseJson(std::string_view text) {
    // What has few brackets is not nested deep, and to look at each value takes as long as to read it.
    const auto brackets = std::count_if(text.begin(), text.end(), [](char c) { return c == '{' || c == '['; });
    try {
        return Json::parse(text.begin(), text.end(), brackets > deepestNesting ? isNotTooDeep : nullptr);
    } catch (const Json::exception& error) {  // a number that overflows is no parse_error
        throw ValueError(sentenceOf(error));
    }
}

const std::string& jsonString(const Json& json, const std::string& key) {
    if (!json.is_string()) {
        throw ValueError(key + ": " + jsonText(json, false) + " is not a text");
    }
    return json.get_ref<const std::string&>();
}

bool jsonFlag(const Json& json, const std::string& key) {
    if (!json.is_boolean()) {
        throw ValueError(key + ": " + jsonText(json, false) + " is neither true nor false");
    }
    return json.get<bool>();
}

}  // namespace calljournal
