#pragma once

#include <string>
#include <string_view>

#include "EntryQuery.h"

/// Returns the text of the element `name`, or nothing.
inline std::string textOf(const std::string& text, const std::string& name) {
    const std::size_t begin = text.find("<" + name + ">");
    return begin == std::string::npos
               ? std::string()
               : text.substr(begin + name.size() + 2, text.find('<', begin + 1) - begin - name.size() - 2);
}

/// The keys of a test entry: its number is known by region and number, its name by itself.
inline calljournal::EntryKeys testKeys(std::string_view, const std::string& text, const std::string& region) {
    calljournal::EntryKeys keys;
    keys.time = textOf(text, "TimeDate");
    keys.isSeen = textOf(text, "Viewed") != "False";
    if (!textOf(text, "Number").empty()) {
        keys.numbers = {region + textOf(text, "Number")};
    }
    keys.name = textOf(text, "Surname");
    return keys;
}
