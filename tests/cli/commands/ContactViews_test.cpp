#include "ContactViews.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>

namespace {

std::string tableOf(const std::vector<Contact>& contacts, std::size_t width = 0) {
    std::ostringstream out;
    calljournal::printContactTable(contacts, out, width);
    return out.str();
}

Contact person() {
    Contact contact;
    contact.firstName = "Ann";
    contact.lastName = "Smith";
    contact.business1 = "1";
    contact.mobile1 = "2";
    contact.company1 = "Smith & Co";
    contact.email1 = "ann@example.com";
    contact.position = "Head";
    contact.defaultDial = 4;
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    return contact;
}

TEST(ContactTable, MarksTheDefaultNumber) {
    EXPECT_EQ(tableOf({person()}),
              "Name       Business  Mobile  Company     Mail             Position\n"
              "Ann Smith  1         2 *     Smith & Co  ann@example.com  Head\n");
}

TEST(ContactTable, MarksEachKindOfNumber) {
    Contact contact;
    contact.business1 = "10";
    contact.business2 = "20";
    contact.mobile1 = "30";
    contact.private1 = "40";
    const std::pair<int, const char*> marks[] = {{1, "  40 *\n"}, {2, "10 *  "}, {3, "  20 *  "}, {4, "  30 *  "}};
    for (const auto& [code, mark] : marks) {
        contact.defaultDial = code;
        const std::string table = tableOf({contact});
        EXPECT_EQ(std::count(table.begin(), table.end(), '*'), 1) << table;
        EXPECT_NE(table.find(mark), std::string::npos) << table;
    }
}

TEST(ContactTable, MarksNothingThatIsNotThere) {
    Contact contact = person();
    contact.defaultDial = 3;
    EXPECT_EQ(tableOf({contact}).find('*'), std::string::npos);
    contact.defaultDial = 0;
    EXPECT_EQ(tableOf({contact}).find('*'), std::string::npos);
}

TEST(ContactTable, KeepsNamesAndNumbersWhereItIsNarrow) {
    EXPECT_EQ(tableOf({person()}, 50),
              "Name       Business  Mobile  Compa…  Mail    Posit…\n"
              "Ann Smith  1         2 *     Smith…  ann@e…  Head\n");
}

TEST(ContactTable, EndsALongNumber) {
    Contact contact;
    contact.business1 = std::string(249, '9');
    contact.defaultDial = 2;
    EXPECT_EQ(tableOf({contact}), "Business\n" + std::string(29, '9') + "… *\n");
}

TEST(ContactTable, MakesTextsPrintable) {
    Contact contact;
    contact.lastName = "a\nb\x1b\xff";
    EXPECT_EQ(tableOf({contact}), "Name\na\\nb\\x1b\\xff\n");
}

}  // namespace
