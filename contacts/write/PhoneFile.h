#pragma once

#include <string>
#include <string_view>

#include "Contact.h"

namespace calljournal {

// The file that the phone's importer takes without loss: the Tamber layout, the one whose columns are the fields of a
// contact. UTF-8, semicolons, a line for each contact.
//
//     LastName;FirstName;Business1;Business2;Mobile1;Private1;Company1;Address1;Address2;Position;Email1;DefaultDial
//     Schmidt;Anna;+49 30 1234;;;;"Schmidt; Partner";;;;;2

/// The line of column names, with its line end.
std::string phoneFileHeader();

/// Appends the line of `contact` to `file`. The importer reads back exactly the texts, as long as each fits into a
/// contact (storableLength), and the default number.
void appendPhoneLine(std::string& file, const Contact& contact);

/// Returns how many bytes of `text` a contact can hold: the importer's limit, moved back to where a character ends.
std::size_t storableLength(std::string_view text);

}  // namespace calljournal
