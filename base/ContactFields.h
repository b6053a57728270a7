#ifndef CALLJOURNAL_CONTACTFIELDS_H
#define CALLJOURNAL_CONTACTFIELDS_H

#include <string>
#include <string_view>

#include "Contact.h"

namespace calljournal {

/// A text of a contact with its name in JSON, which is that of the member.
struct ContactText {
    std::string_view name;
    std::string Contact::*member;
};

inline constexpr ContactText contactTexts[] = {
    {"firstName", &Contact::firstName}, {"lastName", &Contact::lastName}, {"business1", &Contact::business1},
    {"business2", &Contact::business2}, {"mobile1", &Contact::mobile1},   {"private1", &Contact::private1},
    {"email1", &Contact::email1},       {"company1", &Contact::company1}, {"position", &Contact::position},
    {"address1", &Contact::address1},   {"address2", &Contact::address2},
};

/// A number of a contact: what defaultDial calls it, and what readers of tables and vCards do.
struct ContactNumber {
    int dialCode;
    std::string Contact::*member;
    std::string_view title;
    std::string_view vCardType;
};

inline constexpr ContactNumber contactNumbers[] = {
    {2, &Contact::business1, "Business", "work,voice"},
    {3, &Contact::business2, "Business 2", "work,voice"},
    {4, &Contact::mobile1, "Mobile", "cell"},
    {1, &Contact::private1, "Private", "home,voice"},
};

/// First name and last name, or the one that there is.
std::string fullName(const Contact& contact);

/// Tells whether two contacts have the same texts and the same default number.
bool haveSameFields(const Contact& one, const Contact& other);

/// Tells whether one of the contact's texts is `text`.
bool holdsText(const Contact& contact, const std::string& text);

}  // namespace calljournal

#endif
