#include <cstddef>

#include "ClientUtils.h"
#include "HardwareVersion.h"
#include "ImportContactsCSVParser.h"
#include "detail/ContactColumns.h"
#include "detail/Log.h"

namespace {

using calljournal::detail::columnOf;
using calljournal::detail::defaultDialField;

constexpr char module[] = "ImportContactscSVParser";
constexpr char source[] = "ImportContactsCSVParser";

typedef std::string Contact::*TextMember;

/// The texts that an import fills, in the order of the Tamber columns; the default number follows as the twelfth.
constexpr TextMember texts[] = {&Contact::lastName, &Contact::firstName, &Contact::business1, &Contact::business2,
                                &Contact::mobile1,  &Contact::private1,  &Contact::company1,  &Contact::address1,
                                &Contact::address2, &Contact::position,  &Contact::email1};
static_assert(sizeof texts / sizeof *texts == defaultDialField, "the default number follows the texts");

/// What `defaultDial` says of a number: none, or which one.
enum DialCode : int { noNumber = 0, dialPrivate1 = 1, dialBusiness1 = 2, dialBusiness2 = 3, dialMobile1 = 4 };

struct Number {
    int code;
    TextMember member;
};

/// The numbers in the order in which a default is looked for.
constexpr Number numbers[] = {{dialBusiness1, &Contact::business1},
                              {dialBusiness2, &Contact::business2},
                              {dialMobile1, &Contact::mobile1},
                              {dialPrivate1, &Contact::private1}};

/// Returns the first number of `c` that is set, a null pointer if none is.
const Number* firstNumber(const Contact& c) {
    for (const Number& number : numbers) {
        if (!(c.*number.member).empty()) {
            return &number;
        }
    }
    return nullptr;
}

/// Returns the member that `code` means: business1 unless it is one of the others.
TextMember memberOf(int code) {
    for (const Number& number : numbers) {
        if (number.code == code) {
            return number.member;
        }
    }
    return &Contact::business1;
}

/// Where a column of the Outlook layout goes. Some only stand in for an earlier one that is empty.
struct OutlookColumn {
    std::size_t index;
    TextMember member;
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

/// Returns an Outlook column as UTF-8: one that is not is taken for ISO 8859-1.
std::string outlookText(const ImportContactsCSVParser& importer, const std::vector<std::string>& columns,
                        std::size_t index) {
    std::string text = columnOf(columns, index);
    if (!importer.is_valid_utf8(text.c_str())) {
        text = importer.convertUnicodeANSIToUTF8(reinterpret_cast<unsigned char*>(&text[0]),
                                                 static_cast<int>(text.size()));
    }
    return text;
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
    for (const TextMember member : texts) {
        if (!(c.*member).empty()) {
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
            c.*texts[field] = columnOf(tokens, column);
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
    for (const OutlookColumn& column : outlookColumns) {
        const std::string text = outlookText(*this, tokens, column.index);
        std::string& target = c.*column.member;
        if (!text.empty() && (target.empty() || !column.onlyIfEmpty)) {
            target = text;
        }
    }
    c.address2.clear();
    for (const std::size_t index : outlookAddressColumns) {
        // A colon follows whatever is there already, so an empty part leaves the colons of earlier ones.
        if (!c.address2.empty()) {
            c.address2 += ':';
        }
        c.address2 += outlookText(*this, tokens, index);
    }
    const Number* number = firstNumber(c);
    c.defaultDial = number == nullptr ? noNumber : number->code;
}

bool ImportContactsCSVParser::isTQ2() const {
    return HardwareVersion::getHWSubPlatformVariant() == 1;
}

void ImportContactsCSVParser::setDefaultNumberForTQ2(Contact& c) {
    std::string& chosen = c.*memberOf(c.defaultDial);
    if (chosen.empty()) {
        const Number* number = firstNumber(c);
        c.defaultDial = number == nullptr ? noNumber : number->code;
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
