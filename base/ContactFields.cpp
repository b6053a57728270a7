#include "ContactFields.h"

#include <algorithm>
#include <iterator>

namespace calljournal {

std::string fullName(const Contact& contact) {
    const bool hasBoth = !contact.firstName.empty() && !contact.lastName.empty();
    return contact.firstName + (hasBoth ? " " : "") + contact.lastName;
}

bool haveSameFields(const Contact& one, const Contact& other) {
    for (const ContactText& text : contactTexts) {
        if (one.*text.member != other.*text.member) {
            return false;
        }
    }
    return one.defaultDial == other.defaultDial;
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
