#include "FieldValue.h"

namespace calljournal {

std::string wordList(format::Words words) {
    std::string list;
    for (const format::Word* word = words.begin; word != words.end; ++word) {
        if (!word->word.empty()) {
            list += list.empty() ? "" : ", ";
            list += word->word;
        }
    }
    return list;
}

void refuseWord(std::string_view text, const std::string& accepted) {
    throw ValueError("\"" + std::string(text) + "\" is not one of " + accepted);
}

void parseValue(std::string_view text, bool& value) {
    if (text != format::text::TRUE && text != format::text::FALSE) {
        refuseWord(text, acceptedValues(value));
    }
    value = text == format::text::TRUE;
}

}  // namespace calljournal
