#pragma once

#include <string>
#include <string_view>

#include "Contact.h"

namespace calljournal {

/// Returns `contact` as a vCard 4.0 (RFC 6350): UTF-8, lines of at most 75 bytes that end in CR LF. Bytes that are not
/// UTF-8 become U+FFFD, since a vCard has no other form for them. `csvType` is the layout that it was imported from,
/// which says what address2 means: the Outlook layout joins city, postal code and country there.
///
///     BEGIN:VCARD
///     VERSION:4.0
///     FN:Anna Schmidt
///     N:Schmidt;Anna;;;
///     TEL;TYPE=work,voice;PREF=1:+49 30 1234
///     END:VCARD
std::string toVCard(const Contact& contact, int csvType);

/// Cuts a content line into lines of at most 75 bytes, never inside a UTF-8 character; each further one starts with a
/// blank. Every line ends in CR LF.
std::string foldedLine(std::string_view line);

}  // namespace calljournal
