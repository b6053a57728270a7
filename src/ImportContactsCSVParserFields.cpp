#include <cstddef>

#include "ClientUtils.h"
#include "HardwareVersion.h"
#include "ImportContactsCSVParser.h"
#include "detail/Columns.h"
#include "detail/Log.h"
#include "format/ContactColumns.h"

namespace {

using namespace calljournal::format;
using calljournal::detail::columnOf;

constexpr char module[] = "ImportContactscSVParser";
constexpr char source[] = "ImportContactsCSVParser";

/// Returns the member that `code` means: business1 unless it is one of the others.
std::string Contact::*memberOf(int code) {
    for (const ContactNumber& number : contactNumbers) {
        if (number.dialCode == code) {
            return number.member;
        }
    }
    return &Contact::business1;
}

/// Where a column of the Outlook layout goes. Some are used only where an earlier one is empty.
struct OutlookColumn {
    std::size_t index;
    std::string Contact::*member;
    bool onlyIfEmpty;
};

constexpr OutlookColumn outlookColumns[] = {
    {3, &Contact::lastName, false},  {1, &Contact::firstName, false},  {31, &Contact::business1, false},
    {44, &Contact::business1, true}, {32, &Contact::business2, false}, {40, &Contact::mobile1, false},
    {34, &Contact::mobile1, true},   {37, &Contact::private1, false},  {5, &Contact::company1, false},
    {8, &Contact::address1, false},  {7, &Contact::position, false},   {57, &Contact::email1, false},
};

/// The Outlook columns that address2 is joined from.
constexpr std::size_t outlookAddressColumns[] = {11, 13, 14};

/// Returns an Outlook column as UTF-8; `converted` holds the text of one that was not, and is taken for ISO 8859-1.
const std::string& outlookText(const ImportContactsCSVParser& importer, const std::vector<std::string>& columns,
                               std::size_t index, std::string& converted) {
    const std::string& text = columnOf(columns, index);
    if (importer.is_valid_utf8(text.c_str())) {
        return text;
    }
    converted = text;
    converted = importer.convertUnicodeANSIToUTF8(reinterpret_cast<unsigned char*>(&converted[0]),
                                                  static_cast<int>(converted.size()));
    return converted;
}

}  // namespace

void ImportContactsCSVParser::initContact(Contact& c) {
    c.defaultDial = noNumber;
    c.source = static_cast<Contact::eOrderedContactSource>(3);
}

bool ImportContactsCSVParser::parseContact(Contact& c) {
    if (csvType == CSV_TAMBER) {
        parseTamberContactFields(c);
        return true;
    }
    if (csvType == CSV_OUTLOOK) {
        parseOutlookContactFields(c);
        return true;
    }
    CALLJOURNAL_LOG(module, source, 2, "invalid csv file type");
    return false;
}

bool ImportContactsCSVParser::isEmpty(const Contact& c) {
    for (const ContactText& text : contactTexts) {
        if (!(c.*text.member).empty()) {
            return false;
        }
    }
    return true;
}

void ImportContactsCSVParser::parseTamberContactFields(Contact& c) {
    for (std::size_t column = 0; column < columnMap.size(); ++column) {
        const int field = columnMap[column];
        if (field == defaultDialField) {
            c.defaultDial = ClientUtils::stoi(columnOf(tokens, column));
        } else if (field >= 0 && field < defaultDialField) {
            c.*textAt(field).member = columnOf(tokens, column);
        }
    }
    if (c.defaultDial < noNumber || c.defaultDial > dialMobile1) {
        c.defaultDial = noNumber;
    }
    if (isTQ2()) {
        setDefaultNumberForTQ2(c);
    }
}

void ImportContactsCSVParser::parseOutlookContactFields(Contact& c) {
    std::string converted;
    for (const OutlookColumn& column : outlookColumns) {
        const std::string& text = outlookText(*this, tokens, column.index, converted);
        std::string& target = c.*column.member;
        if (!text.empty() && (target.empty() || !column.onlyIfEmpty)) {
            target = text;
        }
    }
    c.address2.clear();
    for (const std::size_t index : outlookAddressColumns) {
        joinAddressPart(c.address2, outlookText(*this, tokens, index, converted));
    }
    c.defaultDial = derivedDefaultDial(c);
}

bool ImportContactsCSVParser::isTQ2() const {
    return HardwareVersion::getHWSubPlatformVariant() == 1;
}

void ImportContactsCSVParser::setDefaultNumberForTQ2(Contact& c) {
    std::string& chosen = c.*memberOf(c.defaultDial);
    if (chosen.empty()) {
        const ContactNumber* number = firstNumber(c);
        c.defaultDial = derivedDefaultDial(c);
        if (number != nullptr) {
            c.business1 = c.*number->member;
        }
    } else if (chosen != c.business1) {
        if (c.business1.empty()) {
            c.business1 = chosen;
        } else {
            c.business1.swap(chosen);
            c.defaultDial = dialBusiness1;
        }
    }
}
