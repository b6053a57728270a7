#include "ContactViews.h"

#include <ostream>

#include "ContactFields.h"
#include "PrintableText.h"
#include "Text.h"
#include "TextTable.h"

namespace calljournal {

namespace {

/// Names and numbers stay whole where others give way; but no longer than this, or one would push the table apart.
constexpr std::size_t widestText = 30;

std::string titleOf(format::DialCode code) {
    switch (code) {
        case format::dialPrivate1:
            return "Private";
        case format::dialBusiness1:
            return "Business";
        case format::dialBusiness2:
            return "Business 2";
        case format::dialMobile1:
            return "Mobile";
        default:
            return "";
    }
}

}  // namespace

void printContactTable(const std::vector<Contact>& contacts, std::ostream& out, std::size_t width) {
    std::vector<TextTable::Column> columns = {{"Name", false, false}};
    for (const ContactNumber& number : contactNumbers) {
        columns.push_back({titleOf(number.dialCode), false, false});
    }
    columns.insert(columns.end(), {{"Company", true, false}, {"Mail", true, false}, {"Position", true, false}});
    TextTable table(std::move(columns));
    for (const Contact& contact : contacts) {
        std::vector<std::string> row = {fitted(printable(fullName(contact.firstName, contact.lastName)), widestText)};
        for (const ContactNumber& number : contactNumbers) {
            const std::string text = fitted(printable(contact.*number.member), widestText);
            row.push_back(text + (!text.empty() && number.dialCode == contact.defaultDial ? " *" : ""));
        }
        row.insert(row.end(), {contact.company1, contact.email1, contact.position});
        table.add(row);
    }
    table.print(out, width);
}

}  // namespace calljournal
