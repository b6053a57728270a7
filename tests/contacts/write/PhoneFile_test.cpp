#include "PhoneFile.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

#include "ContactFields.h"
#include "RoundTripCheck.h"
#include "RunCommand.h"

namespace calljournal {
namespace {

const std::string header =
    "LastName;FirstName;Business1;Business2;Mobile1;Private1;Company1;Address1;Address2;Position;Email1;DefaultDial\n";

std::string lineOf(const Contact& contact) {
    std::string line;
    appendPhoneLine(line, contact);
    return line;
}

Contact called(const std::string& lastName) {
    Contact contact;
    contact.lastName = lastName;
    return contact;
}

std::string place(const ContactOrigin& origin) {
    return "contact " + std::to_string(origin.record);
}

/// What the check says of a file that should hold the contacts.
std::string differenceIn(const std::string& file, const std::vector<Contact>& expected, unsigned limit = 100,
                         unsigned existing = 0) {
    RoundTripCheck check(limit, existing, place);
    SpooledContact spooled;
    for (const Contact& contact : expected) {
        spooled.contact = contact;
        check.note(spooled);
        ++spooled.record;
    }
    check.check(file);
    const std::string difference = check.finish();
    EXPECT_EQ(check.finish(), difference);
    return difference;
}

/// What the check says of `contacts` once they are in a file.
std::string differenceOf(const std::vector<Contact>& contacts, const std::vector<Contact>& expected,
                         unsigned limit = 100, unsigned existing = 0) {
    std::string text = phoneFileHeader();
    for (const Contact& contact : contacts) {
        appendPhoneLine(text, contact);
    }
    const ::TemporaryFolder folder;
    const std::string file = folder.write("contacts.csv", text);
    std::string difference = differenceIn(file, expected, limit, existing);
    EXPECT_EQ(readFile(file), text) << "the check works on a copy";
    return difference;
}

std::string differenceOf(const std::vector<Contact>& contacts) {
    return differenceOf(contacts, contacts);
}

TEST(PhoneFile, HasTheColumnsOfThePhonesOwnLayout) {
    EXPECT_EQ(phoneFileHeader(), header);
}

TEST(PhoneFile, WritesEachFieldIntoItsColumn) {
    Contact contact;
    contact.firstName = "first";
    contact.lastName = "last";
    contact.business1 = "b1";
    contact.business2 = "b2";
    contact.mobile1 = "m1";
    contact.private1 = "p1";
    contact.email1 = "e1";
    contact.company1 = "c1";
    contact.position = "pos";
    contact.address1 = "a1";
    contact.address2 = "a2";
    contact.defaultDial = 4;
    EXPECT_EQ(lineOf(contact), "last;first;b1;b2;m1;p1;c1;a1;a2;pos;e1;4\n");
    EXPECT_EQ(differenceOf({contact}), "");
}

TEST(PhoneFile, QuotesASemicolonAndEscapesWhatQuotesCannotHold) {
    const std::string rest = ";;;;;;;;;;;0\n";
    EXPECT_EQ(lineOf(called("a;b")), "\"a;b\"" + rest);
    EXPECT_EQ(lineOf(called(";")), "\";\"" + rest);
    EXPECT_EQ(lineOf(called("a\"b")), "a\\\"b" + rest);
    EXPECT_EQ(lineOf(called("a\"b;c")), "a\\\"b\\;c" + rest);
    EXPECT_EQ(lineOf(called("C:\\temp")), "C:\\\\temp" + rest);
    EXPECT_EQ(lineOf(called("two\nlines")), "two\\nlines" + rest);
    EXPECT_EQ(lineOf(called("a, b")), "a, b" + rest);
}

TEST(PhoneFile, IsReadBackWhateverTheTextsAre) {
    for (const char* text :
         {"\"", "\"\"", "\"\"\"", "\\", "\\\\", "\\n",  "\\\"",  ";",  ";;",   "\";\"", "\\;", " ",   " a ",
          "\t", "a\r",  "\r",     "'",  "ü",    "日本", "\"a\"", "\n", "a\nb", "n",     "\";", ";\"", "\\\";"}) {
        Contact contact = called(text);
        contact.firstName = text;
        contact.email1 = text;
        EXPECT_EQ(differenceOf({contact}), "") << text;
    }
    EXPECT_EQ(differenceOf({called(std::string("a\0b", 3))}), "");
}

TEST(PhoneFile, HoldsRandomContactsWithoutLoss) {
    const unsigned seed = 20260921;
    std::mt19937 random(seed);
    const std::string letters[] = {"a",  "Z", "\"", "\\", ";", ",",  "n", " ", "\n",
                                   "\t", "'", "&",  "<",  "é", "日", "0", "+"};
    for (int round = 0; round < 100; ++round) {
        std::vector<Contact> contacts(1 + random() % 100);
        for (Contact& contact : contacts) {
            contact.lastName = "x";
            for (const ContactText& text : contactTexts) {
                for (auto length = random() % 12; length != 0; --length) {
                    contact.*text.member += letters[random() % std::size(letters)];
                }
            }
            contact.defaultDial = static_cast<int>(random() % 5);
        }
        ASSERT_EQ(differenceOf(contacts), "") << "seed " << seed << ", round " << round;
    }
}

TEST(StorableLength, IsWhatTheImporterKeepsUpToTheEndOfACharacter) {
    EXPECT_EQ(storableLength(""), 0u);
    EXPECT_EQ(storableLength(std::string(249, 'a')), 249u);
    EXPECT_EQ(storableLength(std::string(250, 'a')), 249u);
    EXPECT_EQ(storableLength(std::string(42, '"')), 41u);
    EXPECT_EQ(storableLength(std::string(248, 'a') + '&'), 248u);
    EXPECT_EQ(storableLength(std::string(248, 'a') + "ü"), 248u);
    EXPECT_EQ(storableLength(std::string(247, 'a') + "日"), 247u);
    EXPECT_EQ(storableLength(std::string(246, 'a') + "日"), 249u);
    EXPECT_EQ(storableLength(std::string(246, 'a') + "😀"), 246u);
    EXPECT_EQ(storableLength(std::string(300, '\x80')), 249u) << "bytes that are no characters are cut where they are";
}

TEST(RoundTripCheck, NamesRecordAndFieldOfADifference) {
    Contact one = called("Adams");
    Contact other = one;
    other.company1 = "Smith";
    EXPECT_EQ(differenceOf({one, other}, {one, one}),
              "contact 1: field company1 was written as \"\" and is read as \"Smith\"");
    other = one;
    other.defaultDial = 2;
    EXPECT_EQ(differenceOf({one}, {other}), "contact 0: field defaultDial was written as 2 and is read as 0");
    EXPECT_EQ(differenceOf({one}, {one, other}), "contact 1: is not read back at all");
    EXPECT_EQ(differenceOf({one, one}, {one}), "one more contact is read back than was written");
}

TEST(RoundTripCheck, TakesAFileFromAnotherFileSystem) {
    const std::vector<Contact> contacts = {called("Adams")};
    const ::TemporaryFolder folder;
    const int file = ::open(folder.write("contacts.csv", phoneFileHeader() + lineOf(contacts[0])).c_str(), O_RDONLY);
    // A name in there cannot have a second one elsewhere.
    EXPECT_EQ(differenceIn("/proc/self/fd/" + std::to_string(file), contacts), "");
    ::close(file);
}

TEST(RoundTripCheck, ReportsThatTheImporterRefusesAFile) {
    EXPECT_EQ(differenceOf(std::vector<Contact>(101, called("a"))), "the importer refuses the file with outcome 0");
    const std::vector<Contact> thousand(1000, called("a"));
    EXPECT_EQ(differenceOf(thousand, thousand, 1000), "");
    EXPECT_EQ(differenceOf(thousand, thousand, 1000, 1), "the importer refuses the file with outcome 0");
}

}  // namespace
}  // namespace calljournal
