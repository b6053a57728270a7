#pragma once

#include <string>
#include <string_view>

#include "Texts.h"
#include "ValueError.h"
#include "Words.h"

namespace calljournal {

/// The words of an enumeration, with commas between: "NO_ICON, PRIVATE, ...".
std::string wordList(format::Words words);

/// The words that fill a field, for messages and help: the words of its enumeration, or what else it takes.
inline std::string acceptedValues(const std::string&) {
    return "a text";
}
inline std::string acceptedValues(bool) {
    return "True, False";
}
template <class Enumeration>
std::string acceptedValues(Enumeration value) {
    return wordList(format::wordsFor(value));
}

// Reading of one value, by its type. Unlike the decoders, which must take what is stored, these refuse unknown words.

inline void parseValue(std::string_view text, std::string& value) {
    value = text;
}
void parseValue(std::string_view text, bool& value);
[[noreturn]] void refuseWord(std::string_view text, const std::string& accepted);

template <class Enumeration>
void parseValue(std::string_view text, Enumeration& value) {
    const Enumeration parsed = format::fromWord<Enumeration>(text);
    if (text.empty() || format::toWord(parsed) != text) {
        refuseWord(text, acceptedValues(value));
    }
    value = parsed;
}

}  // namespace calljournal
