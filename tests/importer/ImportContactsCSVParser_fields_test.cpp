#include <gtest/gtest.h>

#include "ImportFixture.h"
#include "Probe.h"

namespace {

/// The texts of a contact in the order of the Tamber columns.
const char* const tamberMembers[] = {"lastName", "firstName", "business1", "business2", "mobile1", "private1",
                                     "company1", "address1",  "address2",  "position",  "email1"};

class ImportedFields : public ImportTest {
protected:
    static std::string tamber(const Texts& columns) {
        const Outcome outcome = importText(tamberHeader() + join(columns, ';') + "\n");
        EXPECT_EQ(outcome.code, 7);
        EXPECT_EQ(outcome.log, Texts{});
        EXPECT_LE(outcome.contacts.size(), 1U);
        return outcome.contacts.empty() ? std::string("none") : outcome.contacts.front();
    }

    static std::string outlook(const std::map<std::size_t, std::string>& columns) {
        const Outcome outcome = importText(outlookHeader() + outlookColumns(columns) + "\n");
        EXPECT_EQ(outcome.code, 8);
        EXPECT_EQ(outcome.log, Texts{});
        EXPECT_LE(outcome.contacts.size(), 1U);
        return outcome.contacts.empty() ? std::string("none") : outcome.contacts.front();
    }

    /// A Tamber contact with numbers only.
    static std::string numbers(const std::string& business1, const std::string& business2, const std::string& mobile1,
                               const std::string& private1, const std::string& dial) {
        return tamber({"", "", business1, business2, mobile1, private1, "", "", "", "", "", dial});
    }
};

TEST_F(ImportedFields, StartWithoutDefaultNumberFromACsvFile) {
    Probe importer;
    Contact contact;
    contact.defaultDial = 3;
    contact.lastName = "Doe";
    importer.initContact(contact);
    EXPECT_EQ(describe(contact), "dial=0 source=3 lastName=Doe");
}

TEST_F(ImportedFields, AreTakenFromTheTwelveTamberColumns) {
    EXPECT_EQ(tamber({"Doe", "Jane", "1", "2", "3", "4", "Comp", "Street", "Town", "Boss", "j@d", "3"}),
              imported(3, {{"lastName", "Doe"},
                           {"firstName", "Jane"},
                           {"business1", "1"},
                           {"business2", "2"},
                           {"mobile1", "3"},
                           {"private1", "4"},
                           {"company1", "Comp"},
                           {"address1", "Street"},
                           {"address2", "Town"},
                           {"position", "Boss"},
                           {"email1", "j@d"}}));
    for (std::size_t column = 0; column < 11; ++column) {
        Texts columns(12);
        columns[column] = "x";
        columns[11] = "0";
        EXPECT_EQ(tamber(columns), imported(0, {{tamberMembers[column], "x"}}));
    }
}

TEST_F(ImportedFields, AreKeptAsTheyAreInATamberFile) {
    EXPECT_EQ(tamber({" D ", "\xFC", "\t1\t", "", "", "", "", "", "", "", "", "0"}),
              imported(0, {{"lastName", " D "}, {"firstName", "\xFC"}, {"business1", "\t1\t"}}));
}

TEST_F(ImportedFields, TakeTheDefaultNumberWithBlanksAround) {
    for (int dial = 0; dial <= 4; ++dial) {
        EXPECT_EQ(numbers("1", "2", "3", "4", " \t" + std::to_string(dial) + "  "),
                  imported(dial, {{"business1", "1"}, {"business2", "2"}, {"mobile1", "3"}, {"private1", "4"}}));
    }
    EXPECT_EQ(numbers("1", "", "", "", "0003"), imported(3, {{"business1", "1"}}));
    EXPECT_EQ(numbers("1", "", "", "", ""), imported(0, {{"business1", "1"}}));
}

TEST_F(ImportedFields, MakeNoContactIfAllTextsAreEmpty) {
    EXPECT_EQ(numbers("", "", "", "", "2"), "none");
    EXPECT_EQ(outlook({}), "none");
    EXPECT_EQ(outlook({{0, "Mr"}, {2, "Middle"}, {91, "Web"}}), "none");
}

TEST_F(ImportedFields, AreEmptyWithoutAnyOfTheElevenTexts) {
    Probe importer;
    Contact contact;
    contact.defaultDial = 4;
    contact.source = static_cast<Contact::eOrderedContactSource>(8);
    contact.pictureClip = "picture";
    EXPECT_TRUE(importer.isEmpty(contact));
    std::string Contact::*const members[] = {&Contact::firstName, &Contact::lastName, &Contact::business1,
                                             &Contact::business2, &Contact::mobile1,  &Contact::private1,
                                             &Contact::email1,    &Contact::company1, &Contact::position,
                                             &Contact::address1,  &Contact::address2};
    for (const auto member : members) {
        Contact filled = contact;
        filled.*member = " ";
        EXPECT_FALSE(importer.isEmpty(filled));
    }
}

TEST_F(ImportedFields, FollowTheColumnMap) {
    Probe importer;
    importer.columnMap = {5, -1, 11, 0, 12, 0};
    importer.tokens = {"priv", "x", "4", "first", "y", "second"};
    Contact contact;
    contact.firstName = "kept";
    importer.parseTamberContactFields(contact);
    EXPECT_EQ(describe(contact), "dial=4 source=0 firstName=kept lastName=second private1=priv");
}

TEST_F(ImportedFields, OfColumnsThatARecordLacksAreEmpty) {
    Probe importer;
    importer.columnMap = {0, 1, 11};
    importer.tokens = {"Doe"};
    Contact contact;
    contact.firstName = "Jane";
    contact.defaultDial = 3;
    importer.parseTamberContactFields(contact);
    EXPECT_EQ(describe(contact), "dial=0 source=0 lastName=Doe");
    importer.tokens = {"", "Jane"};
    importer.parseOutlookContactFields(contact);
    EXPECT_EQ(describe(contact), "dial=0 source=0 firstName=Jane lastName=Doe");
}

TEST_F(ImportedFields, HaveNoDefaultNumberBeyondFour) {
    Probe importer;
    importer.columnMap = {11};
    // The last two are 2 and 1 to those who keep 32 bits of a longer number.
    for (const char* text : {"5", "-1", "2147483647", "-2147483648", "4294967298", "18446744073709551617"}) {
        importer.tokens = {text};
        Contact contact;
        importer.parseTamberContactFields(contact);
        EXPECT_EQ(contact.defaultDial, 0) << text;
    }
}

TEST_F(ImportedFields, DependOnTheLayout) {
    Probe importer;
    importer.columnMap = {2};
    importer.tokens = {"1", "Jane"};
    Contact contact;
    importer.csvType = 7;
    EXPECT_TRUE(importer.parseContact(contact));
    EXPECT_EQ(describe(contact), "dial=0 source=0 business1=1");
    importer.csvType = 8;
    EXPECT_TRUE(importer.parseContact(contact));
    EXPECT_EQ(describe(contact), "dial=2 source=0 firstName=Jane business1=1");
    EXPECT_EQ(fakePlatform().log.size(), 0U);
    for (const int type : {-1, 0, 1, 2, 3, 4, 5, 6, 9}) {
        importer.csvType = type;
        fakePlatform().log.clear();
        EXPECT_FALSE(importer.parseContact(contact));
        EXPECT_EQ(fakePlatform().logTexts(), Texts{invalidType});
        EXPECT_EQ(describe(contact), "dial=2 source=0 firstName=Jane business1=1");
    }
}

TEST_F(ImportedFields, AreTakenFromFixedOutlookColumns) {
    struct {
        std::size_t column;
        std::string member;
        int dial;
    } const rows[] = {
        {3, "lastName", 0}, {1, "firstName", 0}, {31, "business1", 2}, {44, "business1", 2}, {32, "business2", 3},
        {40, "mobile1", 4}, {34, "mobile1", 4},  {37, "private1", 1},  {5, "company1", 0},   {8, "address1", 0},
        {7, "position", 0}, {57, "email1", 0},   {11, "address2", 0},  {13, "address2", 0},  {14, "address2", 0},
    };
    std::map<std::size_t, std::string> all;
    for (std::size_t column = 0; column < 92; ++column) {
        std::string expected = "none";
        all[column] = std::to_string(column);
        for (const auto& row : rows) {
            if (row.column == column) {
                const std::string colons = column == 11 ? "::" : column == 13 ? ":" : "";
                expected = imported(row.dial, {{row.member, "text" + colons}});
            }
        }
        EXPECT_EQ(outlook({{column, "text"}}), expected) << column;
    }
    EXPECT_EQ(outlook(all), imported(2, {{"lastName", "3"},
                                         {"firstName", "1"},
                                         {"business1", "31"},
                                         {"business2", "32"},
                                         {"mobile1", "40"},
                                         {"private1", "37"},
                                         {"company1", "5"},
                                         {"address1", "8"},
                                         {"address2", "11:13:14"},
                                         {"position", "7"},
                                         {"email1", "57"}}));
}

TEST_F(ImportedFields, PreferTheFirstOfTwoOutlookColumns) {
    EXPECT_EQ(outlook({{31, "a"}, {44, "b"}}), imported(2, {{"business1", "a"}}));
    EXPECT_EQ(outlook({{44, "b"}}), imported(2, {{"business1", "b"}}));
    EXPECT_EQ(outlook({{40, "a"}, {34, "b"}}), imported(4, {{"mobile1", "a"}}));
    EXPECT_EQ(outlook({{34, "b"}}), imported(4, {{"mobile1", "b"}}));
}

TEST_F(ImportedFields, JoinTheOutlookAddress) {
    struct {
        const char* parts[3];
        const char* address;
    } const rows[] = {
        {{"A", "", ""}, "A::"},  {{"", "B", ""}, "B:"},    {{"", "", "C"}, "C"},       {{"A", "B", ""}, "A:B:"},
        {{"", "B", "C"}, "B:C"}, {{"A", "", "C"}, "A::C"}, {{"A", "B", "C"}, "A:B:C"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(outlook({{11, row.parts[0]}, {13, row.parts[1]}, {14, row.parts[2]}}),
                  imported(0, {{"address2", row.address}}));
    }
}

TEST_F(ImportedFields, DeriveTheOutlookDefaultNumber) {
    for (unsigned set = 0; set < 16; ++set) {
        std::map<std::size_t, std::string> columns = {{3, "Doe"}};
        std::vector<std::pair<std::string, std::string>> members = {{"lastName", "Doe"}};
        int dial = 0;
        struct {
            std::size_t column;
            const char* member;
            int code;
        } const numbers[] = {{37, "private1", 1}, {40, "mobile1", 4}, {32, "business2", 3}, {31, "business1", 2}};
        for (unsigned index = 0; index < 4; ++index) {
            if ((set >> index & 1) != 0) {
                columns[numbers[index].column] = "1";
                members.emplace_back(numbers[index].member, "1");
                dial = numbers[index].code;
            }
        }
        EXPECT_EQ(outlook(columns), imported(dial, members));
    }
}

TEST_F(ImportedFields, AreRepairedInAnOutlookFile) {
    for (const std::size_t column : {3U, 1U, 31U, 44U, 32U, 40U, 34U, 37U, 5U, 8U, 7U, 57U, 14U}) {
        const std::string contact = outlook({{column, "M\xFCller"}});
        EXPECT_NE(contact.find("=M\xC3\xBCller"), std::string::npos) << column;
    }
    EXPECT_EQ(outlook({{11, "\xE9"}, {13, "\xE8"}, {14, "\xC3\xA9"}}),
              imported(0, {{"address2", "\xC3\xA9:\xC3\xA8:\xC3\xA9"}}));
    EXPECT_EQ(outlook({{3, std::string("a\0\xFF", 3)}}), imported(0, {{"lastName", std::string("a\0\xFF", 3)}}));
    EXPECT_EQ(outlook({{3, std::string("\xFF\0\xFF", 3)}}),
              imported(0, {{"lastName", std::string("\xC3\xBF\0\xC3\xBF", 5)}}));
}

TEST_F(ImportedFields, LeaveTheColumnsOfTheRecordAlone) {
    Probe importer;
    importer.csvType = 8;
    importer.tokens = Texts(92, "\xFC");
    Contact contact;
    importer.parseContact(contact);
    EXPECT_EQ(importer.tokens, Texts(92, "\xFC"));
    EXPECT_EQ(contact.address2, "\xC3\xBC:\xC3\xBC:\xC3\xBC");
}

TEST_F(ImportedFields, OfAnOutlookRecordReplaceOnlyWhatTheyHold) {
    Probe importer;
    importer.tokens = Texts(92);
    importer.tokens[40] = "new";
    importer.tokens[44] = "new";
    Contact contact;
    contact.mobile1 = "old";
    contact.business1 = "old";
    contact.address2 = "old";
    contact.defaultDial = 1;
    importer.parseOutlookContactFields(contact);
    EXPECT_EQ(describe(contact), "dial=2 source=0 business1=old mobile1=new");
}

TEST_F(ImportedFields, KnowTheTq2Hardware) {
    const Probe importer;
    for (const int variant : {-1, 0, 1, 2, 3}) {
        fakePlatform().hardwareVariant = variant;
        EXPECT_EQ(importer.isTQ2(), variant == 1);
    }
}

TEST_F(ImportedFields, KeepTheirNumbersOnOrdinaryHardware) {
    EXPECT_EQ(numbers("", "", "3", "", "4"), imported(4, {{"mobile1", "3"}}));
    EXPECT_EQ(numbers("1", "", "3", "", "4"), imported(4, {{"business1", "1"}, {"mobile1", "3"}}));
}

TEST_F(ImportedFields, MoveTheDefaultNumberToTheFrontOnTq2) {
    fakePlatform().hardwareVariant = 1;
    // Nothing to move.
    EXPECT_EQ(numbers("1", "2", "3", "4", "2"),
              imported(2, {{"business1", "1"}, {"business2", "2"}, {"mobile1", "3"}, {"private1", "4"}}));
    EXPECT_EQ(numbers("1", "2", "", "", "0"), imported(0, {{"business1", "1"}, {"business2", "2"}}));
    EXPECT_EQ(numbers("1", "", "1", "", "4"), imported(4, {{"business1", "1"}, {"mobile1", "1"}}));
    // Exchanged with business1.
    EXPECT_EQ(numbers("111", "", "222", "", "4"), imported(2, {{"business1", "222"}, {"mobile1", "111"}}));
    EXPECT_EQ(numbers("1", "2", "", "", "3"), imported(2, {{"business1", "2"}, {"business2", "1"}}));
    EXPECT_EQ(numbers("1", "", "", "4", "1"), imported(2, {{"business1", "4"}, {"private1", "1"}}));
    // Copied to an empty business1: it stands twice, under its old code.
    EXPECT_EQ(numbers("", "", "3", "", "4"), imported(4, {{"business1", "3"}, {"mobile1", "3"}}));
    EXPECT_EQ(numbers("", "2", "3", "", "3"), imported(3, {{"business1", "2"}, {"business2", "2"}, {"mobile1", "3"}}));
    EXPECT_EQ(numbers("", "", "", "4", "1"), imported(1, {{"business1", "4"}, {"private1", "4"}}));
}

TEST_F(ImportedFields, ReplaceAnEmptyDefaultNumberOnTq2) {
    fakePlatform().hardwareVariant = 1;
    EXPECT_EQ(numbers("1", "2", "3", "", "1"), imported(2, {{"business1", "1"}, {"business2", "2"}, {"mobile1", "3"}}));
    EXPECT_EQ(numbers("", "2", "", "", "1"), imported(3, {{"business1", "2"}, {"business2", "2"}}));
    EXPECT_EQ(numbers("", "2", "3", "4", "2"),
              imported(3, {{"business1", "2"}, {"business2", "2"}, {"mobile1", "3"}, {"private1", "4"}}));
    EXPECT_EQ(numbers("", "", "3", "4", "3"), imported(4, {{"business1", "3"}, {"mobile1", "3"}, {"private1", "4"}}));
    EXPECT_EQ(numbers("", "", "", "4", "0"), imported(1, {{"business1", "4"}, {"private1", "4"}}));
    EXPECT_EQ(tamber({"Doe", "", "", "", "", "", "", "", "", "", "", "4"}), imported(0, {{"lastName", "Doe"}}));
}

TEST_F(ImportedFields, TakeAnUnknownDefaultForTheFirstNumber) {
    Probe importer;
    Contact contact;
    contact.business1 = "1";
    contact.mobile1 = "3";
    contact.defaultDial = 9;
    importer.setDefaultNumberForTQ2(contact);
    EXPECT_EQ(describe(contact), "dial=9 source=0 business1=1 mobile1=3");
}

TEST_F(ImportedFields, OfAnOutlookRecordStayWhereTheyAreOnTq2) {
    fakePlatform().hardwareVariant = 1;
    EXPECT_EQ(outlook({{40, "3"}}), imported(4, {{"mobile1", "3"}}));
}

}  // namespace
