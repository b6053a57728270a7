#ifndef CALLJOURNAL_FIELDVALUE_H
#define CALLJOURNAL_FIELDVALUE_H

#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "detail/CallKinds.h"
#include "detail/Words.h"

namespace calljournal {

/// A value that a field does not take; `what()` names the value and what is accepted.
class ValueError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The words of an enumeration, with commas between: "NO_ICON, PRIVATE, ...".
std::string wordList(detail::Words words);

/// Throws ValueError unless `text` is a time as the journal stores it: YYYY-MM-DD HH:MM:SS, in the calendar.
void checkTime(const std::string& text);

/// Returns the local time now as the journal stores it.
std::string currentTime();

/// The words that fill a field, for messages and help: the words of its enumeration, or what else it takes.
inline std::string acceptedValues(const std::string&) {
    return "a text";
}
inline std::string acceptedValues(bool) {
    return "True, False";
}
template <class Enumeration>
std::string acceptedValues(Enumeration value) {
    return wordList(detail::wordsFor(value));
}

// Reading of one value, by its type. Unlike the decoders, which must take what is stored, these refuse unknown words.

inline void parseValue(std::string_view text, std::string& value) {
    value = text;
}
void parseValue(std::string_view text, bool& value);
[[noreturn]] void refuseWord(std::string_view text, const std::string& accepted);

template <class Enumeration>
void parseValue(std::string_view text, Enumeration& value) {
    const Enumeration parsed = detail::fromWord<Enumeration>(text);
    if (text.empty() || detail::toWord(parsed) != text) {
        refuseWord(text, acceptedValues(value));
    }
    value = parsed;
}

/// Stores `text` in the field of `call`. Throws ValueError if the field does not take it.
template <class Call>
void parseField(std::string_view text, const detail::CallField<Call>& field, Call& call) {
    if (field.tag == detail::text::TIMEDATE) {
        checkTime(std::string(text));
    }
    std::visit([&](auto member) { parseValue(text, call.*member); }, field.member);
}

}  // namespace calljournal

#endif
