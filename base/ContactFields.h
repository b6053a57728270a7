#pragma once

#include <string>

#include "Contact.h"
#include "ContactColumns.h"

namespace calljournal {

using format::ContactNumber;
using format::contactNumbers;
using format::ContactText;
using format::contactTexts;

/// Returns whether two contacts have the same texts and the same default number.
bool haveSameFields(const Contact& one, const Contact& other);

/// Returns whether a text of a contact is a telephone number.
bool isNumber(std::string Contact::*text);

/// Returns whether one of the contact's texts is `text`.
bool holdsText(const Contact& contact, const std::string& text);

}  // namespace calljournal
