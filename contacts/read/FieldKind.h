#ifndef CALLJOURNAL_FIELDKIND_H
#define CALLJOURNAL_FIELDKIND_H

#include <cstddef>
#include <optional>
#include <string_view>

namespace calljournal {

/// What a column of an address book, or a property of a vCard, says about a person. The words of fieldKindName()
/// are those of the columns file and of `--map`, so they stay.
///
/// An address has parts and, where a program puts all in one cell, a kind for the whole. The phone's own two address
/// lines have kinds of their own, since they are already joined the way the phone does it.
enum class FieldKind : unsigned char {
    // The person.
    title,
    given,
    middle,
    family,
    suffix,
    nickname,
    displayName,
    company,
    department,
    jobTitle,
    // Telephones.
    workPhone,
    workPhone2,
    companyPhone,
    homePhone,
    homePhone2,
    mobile,
    carPhone,
    primaryPhone,
    otherPhone,
    assistantPhone,
    callbackPhone,
    radioPhone,
    isdn,
    telex,
    ttyTdd,
    pager,
    workFax,
    homeFax,
    otherFax,
    // Mail.
    email1,
    email2,
    email3,
    email4,
    // Addresses.
    workStreet,
    workStreet2,
    workStreet3,
    workCity,
    workState,
    workPostcode,
    workCountry,
    workPoBox,
    workAddress,
    homeStreet,
    homeStreet2,
    homeStreet3,
    homeCity,
    homeState,
    homePostcode,
    homeCountry,
    homePoBox,
    homeAddress,
    otherStreet,
    otherStreet2,
    otherStreet3,
    otherCity,
    otherState,
    otherPostcode,
    otherCountry,
    otherPoBox,
    otherAddress,
    // The phone's own file.
    addressLine1,  ///< Its Address1: the street.
    addressLine2,  ///< Its Address2: city, postcode and country with colons between them.
    defaultDial,   ///< Its DefaultDial: 0 none, 1 private, 2 business, 3 business 2, 4 mobile.
    // What the phone has no place for.
    birthDate,
    birthYear,
    birthMonth,
    birthDay,
    anniversary,
    web,
    webHome,
    notes,
    categories,
    other,  ///< Known, but nothing of the above.
    // Cells that say what the cell beside them means. A reader never hands these out: it gives the value beside them
    // the kind that fits, such as `mobile` to `phone1` where `phoneType1` is "Mobile".
    phone1,
    phone2,
    phone3,
    phone4,
    phone5,
    phone6,
    phone7,
    phoneType1,
    phoneType2,
    phoneType3,
    phoneType4,
    phoneType5,
    phoneType6,
    phoneType7,
    emailType1,
    emailType2,
    emailType3,
    emailType4,
    emailDisplay1,
    emailDisplay2,
    emailDisplay3,
    formattedAddress1,
    address1Type,
    address1Street,
    address1Street2,
    address1City,
    address1State,
    address1Postcode,
    address1Country,
    address1PoBox,
    formattedAddress2,
    address2Type,
    address2Street,
    address2Street2,
    address2City,
    address2State,
    address2Postcode,
    address2Country,
    address2PoBox,
};

/// How many field kinds there are; they are numbered from 0 without gaps.
constexpr std::size_t fieldKindCount = static_cast<std::size_t>(FieldKind::address2PoBox) + 1;

/// Returns the word for a field kind, which is the enumerator's: "workPhone".
std::string_view fieldKindName(FieldKind kind);

/// Returns the field kind of a word; upper and lower case are the same. The phone's own column names are words as well
/// ("Mobile1" is mobile, "LastName" is family). Nothing for other words.
std::optional<FieldKind> fieldKindOf(std::string_view word);

}  // namespace calljournal

#endif
