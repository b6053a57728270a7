#include "ImportReplay.h"

#include <gtest/gtest.h>
#include <random>

#include "CSVType.h"
#include "HostPlatform.h"
#include "ImportFiles.h"
#include "RunCommand.h"
#include "ShownSentence.h"

namespace {

using calljournal::ImportReplay;

struct Row {
    const char* name;
    std::string file;
    unsigned existing;
    int outcome;
    const char* sentence;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

/// What the importer itself says of a file.
int outcomeOf(const TemporaryFolder& folder, const std::string& text, unsigned existing) {
    return ImportContactsCSVParser(folder.write("import.csv", text), existing).getCSVType();
}

class RefusedFile : public ::testing::TestWithParam<Row> {};

TEST_P(RefusedFile, HasASentenceWithThePlace) {
    const TemporaryFolder folder;
    ImportReplay replay(GetParam().existing);
    replay.replay(folder.write("contacts.csv", GetParam().file));
    ASSERT_FALSE(replay.faults().empty());
    EXPECT_EQ(replay.faults().back().outcome, GetParam().outcome);
    EXPECT_EQ(shown(replay.faults().back().sentence), GetParam().sentence);
    EXPECT_EQ(outcomeOf(folder, GetParam().file, GetParam().existing), GetParam().outcome);
}

const std::string outlook = headerOf(92);
const std::string good = tamberRow("Adams", "1");
/// A row of 41 columns that ends inside a text.
const std::string cutRow = std::string(40, ',') + "text\n";

const Row rows[] = {
    {"Empty", "", 0, CSV_FILE_ERROR, "the file is empty"},

    {"OneColumn", "Name\nAdams\n", 0, CSV_INVALID_DELIMITERS,
     "line 1: one column, \"Name\"; the names of a header are separated by semicolons or commas"},
    {"Tabs", "Last\tFirst\r\n", 0, CSV_INVALID_DELIMITERS,
     "line 1: one column, \"Last\\tFirst\"; the names of a header are separated by semicolons or commas, not by tabs"},
    {"TooManyHeaders", headerOf(101), 0, CSV_TOO_MANY_HEADERS, "line 1: 101 columns; a header has at most 100"},
    {"EmptyHeader", "\n" + good, 0, CSV_INVALID_HEADERS,
     "line 1: is empty where the names of the columns are expected"},
    {"HeaderOf81", headerOf(81), 0, CSV_INVALID_HEADERS,
     "line 1: 81 columns; an Outlook export needs 92, the Tamber layout 12 (Google Contacts wrote 81 and more); "
     "\"calljournal convert\" turns other exports into a file that fits"},
    {"HeaderOf89", headerOf(89), 0, CSV_INVALID_HEADERS,
     "line 1: 89 columns; an Outlook export needs 92, the Tamber layout 12 (an Outlook export lost some on its way, or "
     "it is another program's); \"calljournal convert\" turns other exports into a file that fits"},
    {"HeaderOf95", headerOf(95), 0, CSV_INVALID_HEADERS,
     "line 1: 95 columns; an Outlook export needs 92, the Tamber layout 12 (Outlook 2003, and any with phonetic names, "
     "writes 95); \"calljournal convert\" turns other exports into a file that fits"},
    {"HeaderOf13", headerOf(13), 0, CSV_INVALID_HEADERS,
     "line 1: 13 columns; an Outlook export needs 92, the Tamber layout 12; \"calljournal convert\" turns other "
     "exports into a file that fits"},
    {"WrongName",
     "LastName;FirstName;Business;Business2;Mobile1;Private1;Company1;Address1;Address2;Position;Email1;DefaultDial\n",
     0, CSV_INVALID_HEADERS, "line 1, column 3: \"Business\" where the Tamber layout has \"Business1\""},
    {"WrongOrder",
     "FirstName;LastName;Business1;Business2;Mobile1;Private1;Company1;Address1;Address2;Position;Email1;DefaultDial\n",
     0, CSV_INVALID_HEADERS,
     "line 1, column 1: \"FirstName\" where the Tamber layout has \"LastName\"; the names are right, but their order "
     "is "
     "fixed"},
    {"HeaderBackslash", "Last\\Name;First\n", 0, CSV_FILE_ERROR,
     "line 1: the backslash before \"N\" is not an escape the format knows; write two backslashes for one"},

    {"DefaultDial", tamberHeader + good + good + tamberRow("Brown", "2", "9"), 0, CSV_INVALID_DEFAULT_DIAL,
     "line 4, column 12 DefaultDial: \"9\" is not a number from 0 to 4"},
    {"DefaultDialText", tamberHeader + tamberRow("Brown", "2", "-1"), 0, CSV_INVALID_DEFAULT_DIAL,
     "line 2, column 12 DefaultDial: \"-1\" is not a number from 0 to 4"},
    {"DefaultDialLoneQuote", tamberHeader + tamberRow("Brown", "2", "\"\""), 0, CSV_INVALID_DEFAULT_DIAL,
     "line 2, column 12 DefaultDial: \"\"\" is not a number from 0 to 4; the format reads an empty quoted field that "
     "way"},
    {"LastColumnMissing", tamberHeader + repeated(good, 15) + "Brown;;;;;;;;;;\n", 0, CSV_COLUMN_MISMATCH,
     "line 17: 11 columns where the header has 12"},
    {"OneColumnTooMany", tamberHeader + "Brown;;;;;;;;;;;;0\n", 0, CSV_COLUMN_MISMATCH,
     "line 2: 13 columns where the header has 12"},
    {"TamberOneColumn", tamberHeader + "Brown\n", 0, CSV_COLUMN_MISMATCH, "line 2: 1 column where the header has 12"},
    {"TamberOpenQuote", tamberHeader + "\"Brown;;;\nmore\";;;;;;;;;;;0\n", 0, CSV_COLUMN_MISMATCH,
     "line 2: 1 column where the header has 12; a quoted text is not closed, and here it cannot go on in the next "
     "line"},
    {"TamberBlankLine", tamberHeader + good + "\r\n" + good, 0, CSV_COLUMN_MISMATCH, "line 3: is empty; take it out"},

    {"Escape", tamberHeader + repeated(good, 6) + "a;b;C:\\temp;;;;;;;;;0\n", 0, CSV_FILE_ERROR,
     "line 8, column 3 Business1: the backslash before \"t\" is not an escape the format knows; write two backslashes "
     "for one"},
    {"EscapeBehindSoundOnes", tamberHeader + "a\\\\b\\nc\\;d\\\"e\\ß;;;;;;;;;;;0\n", 0, CSV_FILE_ERROR,
     "line 2, column 1 LastName: the backslash before \"ß\" is not an escape the format knows; write two backslashes "
     "for one"},
    {"EscapeInLongText", tamberHeader + "a;" + std::string(3000, 'x') + "\\q" + std::string(3000, '\\') + ";\n", 0,
     CSV_FILE_ERROR,
     "line 2, column 2 FirstName: the backslash before \"q\" is not an escape the format knows; write two backslashes "
     "for one"},
    {"EscapeAtTheEnd", tamberHeader + "a;b\\\\;c\\", 0, CSV_FILE_ERROR,
     "line 2, column 3 Business1: the backslash at the end of the line has nothing to escape; write two for one"},
    {"EscapeOfAQuote", tamberHeader + "a;\"b\\\";c;;;;;;;;;\\0\n", 0, CSV_FILE_ERROR,
     "line 2, column 2 FirstName: the backslash before \"0\" is not an escape the format knows; write two backslashes "
     "for one"},
    {"EscapeInAContinuation", outlook + ",text\nmore\",\\x\n", 0, CSV_FILE_ERROR,
     "line 3, column 2 Column2: the backslash before \"x\" is not an escape the format knows; write two backslashes "
     "for "
     "one"},

    {"OutlookBlankLine", outlook + outlookRow({{1, "Ann"}}) + "\n", 0, CSV_COLUMN_MISMATCH,
     "line 3: is empty; take it out"},
    {"JoinedWithTheNextRow", outlook + cutRow + outlookRow({{1, "\"Ann\""}}), 0, CSV_COLUMN_MISMATCH,
     "line 2: 41 columns where the header has 92; it ends in a text without quotes, so line 3 was taken for its "
     "continuation"},
    {"JoinedWithTheRowsBehind", outlook + cutRow + cutRow + outlookRow({{1, "Ann"}, {9, "\""}}), 0, CSV_COLUMN_MISMATCH,
     "line 2: 41 columns where the header has 92; it ends in a text without quotes, so line 3 was taken for its "
     "continuation"},
    {"JoinedTooLong", outlook + ",\"Notes\nmore\"" + std::string(95, ',') + "\n", 0, CSV_COLUMN_MISMATCH,
     "lines 2 to 3: together 97 columns where the header has 92"},
    {"StrayQuote", outlook + ",\"Notes\nsaid \"yes\" and\nleft\",\n", 0, CSV_COLUMN_MISMATCH,
     "line 3: a double quote inside the text that line 2 began; the quote that ends such a text has a comma behind it"},
    {"StrayQuoteOnTheLastLine", outlook + ",\"Notes\nsaid\nmore\"", 0, CSV_COLUMN_MISMATCH,
     "line 4: a double quote inside the text that line 2 began; the quote that ends such a text has a comma behind it"},
    {"CommaInsideQuotesAtTheEnd", outlook + ",Ann,\"Unit 7,\nRiverside\",\n", 0, CSV_COLUMN_MISMATCH,
     "line 2: 3 columns where the header has 92; it ends in a comma inside a quoted text, which is not carried on to "
     "the "
     "next line"},
    {"NeverClosed", outlook + ",\"Notes\nmore\nand more\n", 0, CSV_COLUMN_MISMATCH,
     "lines 2 to 4: 2 columns where the header has 92; a quoted text is not closed before the file ends"},
    {"ShortRowOfSemicolons", headerOf(92, ';') + "a;b;\"c\"\n", 0, CSV_COLUMN_MISMATCH,
     "line 2: 3 columns where the header has 92; a row that is short is filled up only where commas separate the "
     "columns"},

    {"OneTooMany", tamberHeader + repeated(good, 101), 0, CSV_NO_CAPACITY,
     "the phonebook takes 100 contacts: 0 used, 101 in the file, 1 too many; the first that does not fit is on line "
     "102"},
    {"ManyTooMany", tamberHeader + repeated(good, 25), 90, CSV_NO_CAPACITY,
     "the phonebook takes 100 contacts: 90 used, 25 in the file, 15 too many; the first that does not fit is on line "
     "12"},
    {"Full", tamberHeader + good, 101, CSV_NO_CAPACITY, "the phonebook takes 100 contacts and is full with 101"},
    {"RecordsOfTwoLines", outlook + repeated(",\"Ann\nmore\",\n", 101), 0, CSV_NO_CAPACITY,
     "the phonebook takes 100 contacts: 0 used, 101 in the file, 1 too many; the first that does not fit is on line "
     "202"},
    {"EndsBeyondTheLimit", outlook + repeated("a,\n", 102) + "\\x\n" + repeated("a,\n", 3), 0, CSV_NO_CAPACITY,
     "the phonebook takes 100 contacts: 0 used, at least 103 in the file, 3 too many; the first that does not fit is "
     "on "
     "line 102"},
};

INSTANTIATE_TEST_SUITE_P(Each, RefusedFile, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ImportReplay, SaysNothingOfAFileThatIsImported) {
    const TemporaryFolder folder;
    for (const std::string& text : {tamberHeader, tamberHeader + repeated(good, 100), outlook + "a,\"b\"\n,text"}) {
        ImportReplay replay(0);
        replay.replay(folder.write("contacts.csv", text));
        EXPECT_TRUE(replay.faults().empty()) << shown(replay.faults().front().sentence);
    }
}

TEST(ImportReplay, KeepsTheFaultThatALaterOneCovers) {
    const TemporaryFolder folder;
    ImportReplay replay(0);
    replay.replay(folder.write("contacts.csv", headerOf(13) + repeated(good, 101)));
    ASSERT_EQ(replay.faults().size(), 2u);
    EXPECT_EQ(replay.faults()[0].outcome, CSV_INVALID_HEADERS);
    EXPECT_EQ(replay.faults()[1].outcome, CSV_NO_CAPACITY);
}

TEST(ImportReplay, KnowsTheLimitOfTheLargerPhone) {
    const TemporaryFolder folder;
    calljournal::setHardware(true, 0);
    ImportReplay replay(990);
    replay.replay(folder.write("contacts.csv", tamberHeader + repeated(good, 11)));
    calljournal::setHardware(false, 0);
    ASSERT_EQ(replay.faults().size(), 1u);
    EXPECT_EQ(
        shown(replay.faults()[0].sentence),
        "the phonebook takes 1000 contacts: 990 used, 11 in the file, 1 too many; the first that does not fit is on "
        "line 12");
}

TEST(ImportReplay, LeavesTheFileAndReportsHowFarItIs) {
    const TemporaryFolder folder;
    const std::string text = tamberHeader + good + good;
    const std::string path = folder.write("contacts.csv", text);
    std::vector<std::uint64_t> reported;
    ImportReplay replay(0);
    replay.replay(path, [&](std::uint64_t done) { reported.push_back(done); });
    EXPECT_EQ(readFile(path), text);
    ASSERT_EQ(reported.size(), 3u);
    EXPECT_EQ(reported.back(), text.size());
    EXPECT_EQ(reported.front(), tamberHeader.size());
}

TEST(ImportReplay, ComesToTheImportersOutcomeOnRandomFiles) {
    const TemporaryFolder folder;
    const std::vector<std::string> pieces = {"\"",  "\"\"", ",", ";", "\n", "\r\n",  "\\",         "\\n",           "a",
                                             "b c", "\xfc", "ä", "3", " 4", "\"x\"", ",,,,,,,,,,", ";;;;;;;;;;;0\n"};
    const std::vector<std::string> headers = {tamberHeader, headerOf(92), headerOf(92, ';'), headerOf(12), "", "a,b\n"};
    std::mt19937 random(20240501);
    const auto pick = [&](const std::vector<std::string>& from) { return from[random() % from.size()]; };
    for (int round = 0; round < 2000; ++round) {
        std::string text = pick(headers);
        for (std::size_t count = random() % 60; count > 0; --count) {
            text += pick(pieces);
        }
        const unsigned existing = random() % 8 == 0 ? 95 : 0;
        ImportReplay replay(existing);
        replay.replay(folder.write("contacts.csv", text));
        const int outcome = outcomeOf(folder, text, existing);
        const bool isSuccess = outcome == CSV_TAMBER || outcome == CSV_OUTLOOK;
        ASSERT_EQ(replay.faults().empty(), isSuccess) << "round " << round << '\n' << text;
        if (!isSuccess) {
            ASSERT_EQ(replay.faults().back().outcome, outcome) << "round " << round << '\n' << text;
            EXPECT_LE(replay.faults().size(), 2u);
        }
    }
}

}  // namespace
