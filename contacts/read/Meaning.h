#ifndef CALLJOURNAL_MEANING_H
#define CALLJOURNAL_MEANING_H

#include <cstddef>
#include <optional>
#include <string_view>

namespace calljournal {

/// What a column of an address book, or a property of a vCard, says about a person. The words of meaningName() stand in
/// the columns file and in `--map`, so they stay.
///
/// An address has parts and, where a program puts all in one cell, a meaning for the whole. The phone's own two address
/// lines have meanings of their own, since they are already joined the way it does it.
enum class Meaning : unsigned char {
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
    // the meaning that fits, such as `mobile` to `phone1` where `phoneType1` is "Mobile".
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

/// How many meanings there are; they are numbered from 0 without gaps.
constexpr std::size_t meaningCount = static_cast<std::size_t>(Meaning::address2PoBox) + 1;

/// Returns the word for a meaning, which is the enumerator's: "workPhone".
std::string_view meaningName(Meaning meaning);

/// Returns the meaning of a word; upper and lower case are the same. The phone's own column names are words as well
/// ("Mobile1" is mobile, "LastName" is family). Nothing for other words.
std::optional<Meaning> meaningOf(std::string_view word);

}  // namespace calljournal

#endif
