#include "ContactFields.h"

#include <algorithm>
#include <iterator>

namespace calljournal {

bool haveSameFields(const Contact& one, const Contact& other) {
    return one.defaultDial == other.defaultDial &&
           std::all_of(std::begin(contactTexts), std::end(contactTexts),
                       [&](const ContactText& text) { return one.*text.member == other.*text.member; });
}

bool isNumber(std::string Contact::*text) {
    return std::any_of(std::begin(contactNumbers), std::end(contactNumbers),
                       [text](const ContactNumber& number) { return number.member == text; });
}

bool holdsText(const Contact& contact, const std::string& text) {
    return std::any_of(std::begin(contactTexts), std::end(contactTexts),
                       [&](const ContactText& own) { return contact.*own.member == text; });
}

}  // namespace calljournal
