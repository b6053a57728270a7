#include "ContactViews.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sstream>

#include "ContactJson.h"
#include "JsonText.h"

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

TEST(ContactJson, UsesTheNamesOfTheMembers) {
    Contact contact = person();
    contact.business2 = "3";
    contact.private1 = "4";
    contact.address1 = "Mill Lane";
    contact.address2 = "Leeds::";
    EXPECT_EQ(calljournal::contactJson(contact),
              R"({"firstName":"Ann","lastName":"Smith","business1":"1","business2":"3","mobile1":"2","private1":"4",)"
              R"("email1":"ann@example.com","company1":"Smith & Co","position":"Head","address1":"Mill Lane",)"
              R"("address2":"Leeds::","defaultDial":4,"source":"CSV"})");
}

TEST(ContactJson, LeavesOutEmptyTextsAndReplacesBadBytes) {
    Contact contact;
    contact.lastName = "M\xfcller\n\"";
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    EXPECT_EQ(calljournal::contactJson(contact),
              "{\"lastName\":\"M\ufffdller\\n\\\"\",\"defaultDial\":0,\"source\":\"CSV\"}");
}

/// Texts take a short way unless something is odd about them, which is for the JSON library.
TEST(ContactJson, WritesEveryTextAsTheJsonLibraryDoes) {
    const auto expectSame = [](const std::string& text) {
        std::string json = "[";
        calljournal::appendJsonText(json, text);
        ASSERT_EQ(json, '[' + calljournal::jsonText(calljournal::Json(text), false)) << ::testing::PrintToString(text);
    };
    for (int pair = 0; pair < 65536; ++pair) {
        expectSame({static_cast<char>(pair / 256), static_cast<char>(pair % 256)});
    }
    const unsigned seed = 20261121;
    std::mt19937 random(seed);
    const std::string pieces[] = {"a",
                                  "ü",
                                  "日",
                                  "😀",
                                  "\"",
                                  "\\",
                                  "\x7f",
                                  "\x1f",
                                  "\xc3",
                                  "\xe6\x97",
                                  "\xed\xa0\x80",
                                  "\xf0\x9f",
                                  "\xc0\x80",
                                  "\xf4\x90\x80\x80",
                                  "\xff"};
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto length = random() % 6; length != 0; --length) {
            text += pieces[random() % std::size(pieces)];
        }
        expectSame(text);
    }
}

}  // namespace
