#include "ImportCheck.h"

#include <gtest/gtest.h>

#include "ImportFiles.h"
#include "RunCommand.h"
#include "ShownSentence.h"

namespace {

/// What the check says of a file.
std::string reportOn(const std::string& text) {
    const TemporaryFolder folder;
    calljournal::ImportCheck check(0);
    check.replay(folder.write("contacts.csv", text));
    std::string lines;
    for (const calljournal::Sentence& line : check.report()) {
        lines += "  " + shown(line) + '\n';
    }
    return lines;
}

const std::string outlook = headerOf(92);
const std::string outlookLine = "  Outlook layout, 92 columns separated by commas, ";

TEST(ImportCheck, NamesLayoutSeparatorAndContacts) {
    EXPECT_EQ(reportOn(tamberHeader + tamberRow("Adams", "1") + tamberRow("Brown", "2")),
              "  Tamber layout, 12 columns separated by semicolons, 2 contacts\n");
    EXPECT_EQ(reportOn(outlook + outlookRow({{1, "Ann"}})), outlookLine + "1 contact\n");
    EXPECT_EQ(reportOn(headerOf(92, ';') + outlookRow({{1, "Ann"}}, ';')),
              "  Outlook layout, 92 columns separated by semicolons, 1 contact\n");
}

TEST(ImportCheck, SaysNothingOfAFileWithoutALayout) {
    EXPECT_EQ(reportOn(""), "");
    EXPECT_EQ(reportOn(headerOf(13)), "");
}

TEST(ImportCheck, NamesLinesThatGiveNoContact) {
    EXPECT_EQ(reportOn(tamberHeader + tamberRow("", "", "3") + tamberRow("Adams", "1")),
              "  Tamber layout, 12 columns separated by semicolons, 1 contact\n"
              "  1 line gives no contact: line 2\n");
    EXPECT_EQ(reportOn(outlook + repeated(outlookRow({{0, "\"Dr\nDr\""}}), 7)),
              outlookLine +
                  "0 contacts\n"
                  "  7 lines give no contact: lines 2 to 3; lines 4 to 5; lines 6 to 7; lines 8 to 9; lines 10 to "
                  "11; and 2 more\n");
}

TEST(ImportCheck, NamesTextsThatAreCut) {
    EXPECT_EQ(
        reportOn(tamberHeader + tamberRow(std::string(250, 'x'), "1") + tamberRow(std::string(249, 'x'), "1") +
                 tamberRow(repeated("&", 50), "1")),
        "  Tamber layout, 12 columns separated by semicolons, 3 contacts\n"
        "  2 texts are cut to 249 bytes of XML: line 2, column 1 LastName (250 bytes); line 4, column 1 LastName (50 "
        "bytes)\n");
}

TEST(ImportCheck, NamesTextsThatAreCutInsideACharacter) {
    const std::string name = std::string(248, 'x') + "ü";
    const std::string finding =
        "  1 text is cut to 249 bytes of XML: line 2, column 2 Column2 (250 bytes)\n"
        "  1 text is cut inside a UTF-8 character, which garbles it: line 2, column 2 Column2\n";
    EXPECT_EQ(reportOn(outlook + outlookRow({{1, name}})), outlookLine + "1 contact\n" + finding);
    EXPECT_NE(reportOn(tamberHeader + tamberRow(name, "1")).find("1 text is cut inside a UTF-8 character"),
              std::string::npos);
}

TEST(ImportCheck, NamesTextsOfIso8859) {
    EXPECT_EQ(reportOn(outlook + outlookRow({{1, "J\xfcrgen"}, {3, "Weiß"}})),
              outlookLine + "1 contact\n  1 text is converted from ISO 8859-1: line 2, column 2 Column2\n");
    EXPECT_EQ(reportOn(tamberHeader + tamberRow("M\xfcller", "1")),
              "  Tamber layout, 12 columns separated by semicolons, 1 contact\n"
              "  1 text is not UTF-8 and stays as it is; --from-latin1 converts it: line 2, column 1 LastName\n");
}

TEST(ImportCheck, ShowsColumnNamesOfIso8859AsUtf8) {
    std::string header = headerOf(92);
    header.replace(header.find("Column2,"), 7, "Pr\xe9nom");
    EXPECT_NE(reportOn(header + outlookRow({{1, "\"\""}, {3, "x"}})).find("column 2 Prénom"), std::string::npos);
}

TEST(ImportCheck, NamesLoneQuotes) {
    EXPECT_EQ(reportOn(outlook + outlookRow({{0, "\"\""}, {1, "\"Ann\""}, {3, "\"\""}})),
              outlookLine +
                  "1 contact\n"
                  "  1 empty quoted field (\"\") becomes a lone double quote: line 2, column 4 Column4\n");
}

TEST(ImportCheck, NamesAMailColumnWithoutMail) {
    EXPECT_EQ(reportOn(outlook + outlookRow({{1, "Ann"}, {56, "ann@example.com"}, {57, "SMTP"}}) +
                       outlookRow({{1, "Ben"}, {56, "ben@example.com"}, {57, "SMTP"}})),
              outlookLine +
                  "2 contacts\n"
                  "  column 58 Column58 is taken for the mail address, but 2 records have something else there: "
                  "\"SMTP\" on line 2; mail addresses stand in column 57 Column57\n"
                  "  not taken over: column 57 Column57 (2 records)\n");
    EXPECT_EQ(reportOn(outlook + outlookRow({{1, "Ann"}, {57, "1/5/1970"}}) + outlookRow({{57, "ann@example.com"}})),
              outlookLine +
                  "2 contacts\n"
                  "  column 58 Column58 is taken for the mail address, but 1 record has something else there: "
                  "\"1/5/1970\" on line 2\n");
}

TEST(ImportCheck, NamesColumnsThatAreNotTakenOver) {
    // The primary phone (45) and the car phone (35) only stand in for a missing business or mobile number.
    EXPECT_EQ(reportOn(outlook + outlookRow({{1, "Ann"}, {31, "1"}, {40, "2"}, {44, "3"}, {34, "4"}, {77, "Notes"}}) +
                       outlookRow({{1, "Ben"}, {44, "3"}, {34, "4"}, {77, "Notes"}}) +
                       outlookRow({{1, "Cleo"}, {31, "1"}, {44, "1"}})),
              outlookLine +
                  "3 contacts\n"
                  "  not taken over: column 35 Column35 (1 record); column 45 Column45 (1 record); column 78 "
                  "Column78 (2 records)\n");
}

TEST(ImportCheck, StopsAtTheFault) {
    EXPECT_EQ(reportOn(tamberHeader + tamberRow("Adams", "1") + tamberRow("Brown", "2", "9") + tamberRow("", "")),
              "  Tamber layout, 12 columns separated by semicolons, 1 contact\n");
}

}  // namespace
