#pragma once

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Contact.h"

namespace calljournal::format {

/// A text of a contact.
struct ContactText {
    std::string_view name;    ///< Of the member, which is its name in JSON.
    std::string_view column;  ///< The name of its column in the Tamber layout.
    int place;                ///< Which column that is, counted from 0.
    std::string Contact::*member;
};

/// The texts that an import fills, in the order in which they are shown.
inline constexpr ContactText contactTexts[] = {
    {"firstName", "FirstName", 1, &Contact::firstName}, {"lastName", "LastName", 0, &Contact::lastName},
    {"business1", "Business1", 2, &Contact::business1}, {"business2", "Business2", 3, &Contact::business2},
    {"mobile1", "Mobile1", 4, &Contact::mobile1},       {"private1", "Private1", 5, &Contact::private1},
    {"email1", "Email1", 10, &Contact::email1},         {"company1", "Company1", 6, &Contact::company1},
    {"position", "Position", 9, &Contact::position},    {"address1", "Address1", 7, &Contact::address1},
    {"address2", "Address2", 8, &Contact::address2},
};

/// The place of the Tamber layout's last column, "DefaultDial": behind those of the texts.
constexpr int defaultDialField = static_cast<int>(std::size(contactTexts));

/// Returns the text whose column is in the place `place` of the Tamber layout, from 0 to defaultDialField - 1.
constexpr const ContactText& textAt(int place) {
    const ContactText* text = contactTexts;
    while (text->place != place) {
        ++text;
    }
    return *text;
}

/// Returns the names of the Tamber layout's columns in their order.
inline std::vector<std::string> tamberNames() {
    std::vector<std::string> names;
    for (int place = 0; place < defaultDialField; ++place) {
        names.emplace_back(textAt(place).column);
    }
    names.emplace_back("DefaultDial");
    return names;
}

/// What `defaultDial` says: no number, or which one.
enum DialCode : int { noNumber = 0, dialPrivate1 = 1, dialBusiness1 = 2, dialBusiness2 = 3, dialMobile1 = 4 };

/// A number of a contact.
struct ContactNumber {
    DialCode dialCode;
    std::string Contact::*member;
};

/// The numbers in the order in which a default is looked for.
inline constexpr ContactNumber contactNumbers[] = {
    {dialBusiness1, &Contact::business1},
    {dialBusiness2, &Contact::business2},
    {dialMobile1, &Contact::mobile1},
    {dialPrivate1, &Contact::private1},
};

/// Returns the first number of `c` that is set, a null pointer if none is.
inline const ContactNumber* firstNumber(const Contact& c) {
    for (const ContactNumber& number : contactNumbers) {
        if (!(c.*number.member).empty()) {
            return &number;
        }
    }
    return nullptr;
}

/// Returns what `defaultDial` is where no file says it: the first number that is set.
inline DialCode derivedDefaultDial(const Contact& c) {
    const ContactNumber* number = firstNumber(c);
    return number == nullptr ? noNumber : number->dialCode;
}

/// Goes on with an address line by its next part. A colon follows whatever is there already, so an empty part leaves
/// the colons of earlier ones.
inline void joinAddressPart(std::string& address, const std::string& part) {
    if (!address.empty()) {
        address += ':';
    }
    address += part;
}

/// The longest a stored field may be, in bytes after XML escaping.
constexpr std::size_t fieldLimit = 249;

/// What no character takes more of once it is escaped.
constexpr std::size_t mostEscaped = 6;

/// The bytes that `character` takes once it is escaped.
inline std::size_t escapedLength(char character) {
    switch (character) {
        case '"':
        case '\'':
            return mostEscaped;
        case '&':
            return 5;
        case '<':
        case '>':
            return 4;
        default:
            return 1;
    }
}

/// Returns how many bytes of `field` can be stored: as many as take at most 249 once they are XML-escaped.
inline std::size_t storedLength(std::string_view field) {
    if (field.size() <= fieldLimit / mostEscaped) {
        return field.size();
    }
    std::size_t escaped = 0;
    for (std::size_t length = 0; length < field.size(); ++length) {
        escaped += escapedLength(field[length]);
        if (escaped > fieldLimit) {
            return length;
        }
    }
    return field.size();
}

}  // namespace calljournal::format
