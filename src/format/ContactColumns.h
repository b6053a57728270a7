#ifndef CALLJOURNAL_FORMAT_CONTACTCOLUMNS_H
#define CALLJOURNAL_FORMAT_CONTACTCOLUMNS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Contact.h"

namespace calljournal {
namespace format {

/// The Tamber column, and field, that holds the number to dial by default.
constexpr int defaultDialField = 11;

/// The columns of the Tamber layout.
inline constexpr const char* tamberNames[] = {"LastName", "FirstName", "Business1", "Business2",
                                              "Mobile1",  "Private1",  "Company1",  "Address1",
                                              "Address2", "Position",  "Email1",    "DefaultDial"};

typedef std::string Contact::*TextMember;

/// The texts that an import fills, in the order of the Tamber columns; the default number follows as the twelfth.
inline constexpr TextMember tamberTexts[] = {&Contact::lastName,  &Contact::firstName, &Contact::business1,
                                             &Contact::business2, &Contact::mobile1,   &Contact::private1,
                                             &Contact::company1,  &Contact::address1,  &Contact::address2,
                                             &Contact::position,  &Contact::email1};
static_assert(sizeof tamberTexts / sizeof *tamberTexts == defaultDialField, "the default number follows the texts");

/// What `defaultDial` says of a number: none, or which one.
enum DialCode : int { noNumber = 0, dialPrivate1 = 1, dialBusiness1 = 2, dialBusiness2 = 3, dialMobile1 = 4 };

/// A number of a contact.
struct Number {
    int code;
    TextMember member;
};

/// The numbers in the order in which a default is looked for.
inline constexpr Number numbers[] = {{dialBusiness1, &Contact::business1},
                                     {dialBusiness2, &Contact::business2},
                                     {dialMobile1, &Contact::mobile1},
                                     {dialPrivate1, &Contact::private1}};

/// Returns the first number of `c` that is set, a null pointer if none is.
inline const Number* firstNumber(const Contact& c) {
    for (const Number& number : numbers) {
        if (!(c.*number.member).empty()) {
            return &number;
        }
    }
    return nullptr;
}

/// Returns what `defaultDial` is where no file tells: the first number that is set.
inline int derivedDefaultDial(const Contact& c) {
    const Number* number = firstNumber(c);
    return number == nullptr ? static_cast<int>(noNumber) : number->code;
}

/// Goes on with an address line by its next part. A colon follows whatever is there already, so an empty part leaves
/// the colons of earlier ones.
inline void joinAddressPart(std::string& address, const std::string& part) {
    if (!address.empty()) {
        address += ':';
    }
    address += part;
}

/// Returns column `index` of a record; a column that the record does not have is empty.
inline const std::string& columnOf(const std::vector<std::string>& columns, std::size_t index) {
    static const std::string none;
    return index < columns.size() ? columns[index] : none;
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

}  // namespace format
}  // namespace calljournal

#endif
