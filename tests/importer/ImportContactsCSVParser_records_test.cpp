#include <gtest/gtest.h>

#include "ImportFixture.h"
#include "Probe.h"

namespace {

/// Outlook records that take more, or less, than a line. Last name is column 3, first name column 1, company column 5,
/// e-mail column 57.
class OutlookRecord : public ImportTest {
protected:
    static Outcome import(const std::string& lines, char separator = ',') {
        return importText(outlookHeader(separator) + lines);
    }

    static void expectContacts(const std::string& lines, const Texts& contacts) {
        const Outcome outcome = import(lines);
        EXPECT_EQ(outcome.code, 8) << lines;
        EXPECT_EQ(outcome.contacts, contacts);
        EXPECT_EQ(outcome.log, Texts{});
    }

    static void expectMismatch(const std::string& lines, std::size_t laterLines = 0) {
        const Outcome outcome = import(lines);
        EXPECT_EQ(outcome.code, 5) << lines;
        EXPECT_EQ(outcome.contacts, Texts{});
        Texts log = {columnMismatch};
        log.insert(log.end(), laterLines, invalidType);
        EXPECT_EQ(outcome.log, log);
    }

    /// Empty columns from `from` to the end of the record.
    static std::string rest(std::size_t from) { return std::string(92 - from, ','); }
};

std::string lastName(const std::string& text) {
    return imported(0, {{"lastName", text}});
}

TEST_F(OutlookRecord, OfOneLineIsComplete) {
    expectContacts(outlookColumns({{3, "Doe"}, {1, "Jane"}}) + "\n" + outlookColumns({{3, "Roe"}}) + "\n",
                   {imported(0, {{"lastName", "Doe"}, {"firstName", "Jane"}}), lastName("Roe")});
}

TEST_F(OutlookRecord, MayHaveMoreColumnsThanTheHeader) {
    expectContacts(outlookColumns({{3, "Doe"}}, 0, 93) + "\n" + outlookColumns({{3, "Roe"}}, 0, 200) + "x\n",
                   {lastName("Doe"), lastName("Roe")});
}

TEST_F(OutlookRecord, IsFilledUpBehindAComma) {
    expectContacts(",,,Doe,\n,,,Roe,,,,,\n", {lastName("Doe"), lastName("Roe")});
    expectContacts(outlookColumns({{3, "Doe"}}, 0, 91) + "\n", {lastName("Doe")});
    expectContacts(",\n", {});
}

TEST_F(OutlookRecord, IsFilledUpBehindAClosingQuote) {
    expectContacts(",,,\"Doe\"\n,,,\"Roe, Jane\"\n", {lastName("Doe"), lastName("Roe, Jane")});
    expectContacts(",,,a\"b\"\n", {lastName("ab")});
    // A doubled quote becomes an escaped one, which is no quote that opens.
    expectContacts(",,,\"\"\n", {lastName("\"")});
}

TEST_F(OutlookRecord, ThatEndsInPlainTextGoesOnInTheNextLine) {
    expectContacts(",,,Do\ne" + rest(4) + "\n", {lastName("Doe")});
    expectContacts(",,,Do\ne,,Comp\nany" + rest(6) + "\n",
                   {imported(0, {{"lastName", "Doe"}, {"company1", "Company"}})});
    expectContacts("x\n" + outlookColumns({{3, "Doe"}}) + "\n", {lastName("Doe")});
}

TEST_F(OutlookRecord, ThatEndsInAnOpeningQuoteGoesOnInTheNextLine) {
    expectContacts(",,,\"\nDoe, J.\"," + rest(5) + "\n", {lastName("Doe, J.")});
}

TEST_F(OutlookRecord, IsJoinedWithoutLineBreak) {
    expectContacts(",,,\"Do\ne\"," + rest(5) + "\n", {lastName("Doe")});
    expectContacts(",,,\"Do\r\ne\"," + rest(5) + "\r\n", {lastName("Doe")});
    expectContacts(",,,\"a,b\nc,d\n\ne\"," + rest(5) + "\n", {lastName("a,bc,de")});
}

TEST_F(OutlookRecord, StaysOpenUntilAQuoteCloses) {
    // The third line ends in a comma, which belongs to the field.
    expectContacts(",,,\"Doe\n, J.,\nx\n\", Comp," + rest(6) + "\n", {lastName("Doe, J.,x")});
    // Behind the closing quote the record goes on where its line ends inside the next field.
    expectContacts(",,,\"D\noe\",,Comp\nany," + rest(7) + "\n",
                   {imported(0, {{"lastName", "Doe"}, {"company1", "Company"}})});
}

TEST_F(OutlookRecord, IsFilledUpBehindAContinuationThatClosesItsField) {
    expectContacts(",,,\"D\noe\",\n,,,Roe,\n", {lastName("Doe"), lastName("Roe")});
    expectContacts(",,,\"D\noe\",\"\"x,\n,,,Roe,\n", {lastName("Doe"), lastName("Roe")});
}

TEST_F(OutlookRecord, LosesDoubledQuotesOfAContinuation) {
    expectContacts(",,,\"a \"\"b\"\" \nc \"\"d\"\" e\"," + rest(5) + "\n", {lastName("a \"b\" c d e")});
    // Three quotes and a comma leave one that closes.
    expectContacts(",,,\"a\nb\"\"\"," + rest(5) + "\n", {lastName("ab")});
    // Two quotes and a comma leave none.
    expectContacts(",,,\"a\nb\"\",c\nd\"," + rest(5) + "\n", {lastName("ab,cd")});
}

TEST_F(OutlookRecord, RefusesAStrayQuoteInAContinuation) {
    const std::string field = ",,,\"a\n";
    // A closing quote at the end of the line has no comma behind it.
    expectMismatch(field + "b\"\n");
    expectMismatch(field + "b\"\r\n" + rest(5) + "\n", 1);
    expectMismatch(field + "b\"c\"," + rest(5) + "\n");
    expectMismatch(field + "b\"c\n");
    expectMismatch(field + "\"\n");
    expectMismatch(field + "b\"\"\"\n");
    // Escaped or not.
    expectMismatch(field + "b\\\"c\"," + rest(5) + "\n");
}

TEST_F(OutlookRecord, TakesAnEscapedQuoteInFrontOfACommaForAClosingOne) {
    // So the line is taken, but its field stays open, and the comma at its end is filled up in vain.
    expectMismatch(",,,\"a\nb\\\",c,\n");
    expectContacts(",,,\"a\nb\\\",c\nd\"," + rest(5) + "\n", {lastName("ab\",cd")});
}

TEST_F(OutlookRecord, HasNotTooManyColumnsAfterAContinuation) {
    expectContacts(",,,\"D\noe\"," + outlookColumns({{57, "mail"}}, 4) + "\n",
                   {imported(0, {{"lastName", "Doe"}, {"email1", "mail"}})});
    expectMismatch(",,,\"D\noe\"," + outlookColumns({{57, "mail"}}, 4) + ",\n");
    expectMismatch(",,,D\noe" + std::string(200, ',') + "\n,,,Roe,\n", 1);
}

TEST_F(OutlookRecord, IsFilledUpAtTheEndOfTheFile) {
    for (const std::string& end : {std::string(""), std::string("\n")}) {
        expectContacts(",,,Doe" + end, {lastName("Doe")});
        expectContacts(",,,Do\ne" + end, {lastName("Doe")});
        expectContacts(",,,\"D\noe\",,x" + end, {imported(0, {{"lastName", "Doe"}, {"company1", "x"}})});
    }
}

TEST_F(OutlookRecord, IsRefusedInAnOpenQuoteAtTheEndOfTheFile) {
    for (const std::string& end : {std::string(""), std::string("\n")}) {
        expectMismatch(",,,\"Doe" + end);
        expectMismatch(",,,\"" + end);
        expectMismatch(",,,\"Do\ne" + end);
    }
}

TEST_F(OutlookRecord, IsRefusedWhereFillingUpAddsNoColumn) {
    expectMismatch(",,,\"Doe,\n,,,Roe,\n", 1);
    expectMismatch("\"\n");
    expectMismatch(",,,\"a\"\",\n");
    // Commas separate nothing here.
    const Outcome outcome = import("a;b,\n;;;Roe;\n", ';');
    EXPECT_EQ(outcome.code, 5);
    EXPECT_EQ(outcome.log, (Texts{columnMismatch, invalidType}));
}

TEST_F(OutlookRecord, IsRefusedIfItIsBlank) {
    expectMismatch("\n,,,Roe,\n", 1);
    expectMismatch("\r\n");
}

TEST_F(OutlookRecord, IsRefusedIfItBecomesBlank) {
    // The first line keeps a carriage return that the blank line behind it takes away.
    expectMismatch("\r\r\n\n,,,Roe,\n", 1);
    expectMismatch("\r\r\n\r\n\n,,,Roe,\n", 1);
}

TEST_F(OutlookRecord, LosesCarriageReturnsToBlankLines) {
    expectContacts(",,,\"Doe\r\r\r\n\n\n\"," + rest(5) + "\n", {lastName("Doe")});
    expectContacts(",,,\"Doe\r\r\r\n\n\"," + rest(5) + "\n", {lastName("Doe\r")});
    expectContacts(",,,\"Doe\r\r\n\r\n\"," + rest(5) + "\n", {lastName("Doe\r")});
    // What is left ends in a comma.
    expectContacts(",,,Doe,\r\r\n\n" + rest(5) + "\n", {lastName("Doe")});
    expectContacts(",,,Doe,,\r\r\n\n" + outlookColumns({{57, "mail"}}, 5) + "\n",
                   {imported(0, {{"lastName", "Doe"}, {"email1", "mail"}})});
}

TEST_F(OutlookRecord, OfOneCharacterHasNoneInFrontOfIt) {
    expectContacts(",\n,,,Roe,\n", {lastName("Roe")});
    expectMismatch("\"\n,,,Roe,\n", 1);
    expectContacts("x\n" + rest(1) + "\n", {});
}

TEST_F(OutlookRecord, SeparatedBySemicolonsGoesByCommasAllTheSame) {
    const Outcome complete = import(outlookColumns({{3, "Doe"}}, 0, 92, ';') + "\n", ';');
    EXPECT_EQ(complete.code, 8);
    EXPECT_EQ(complete.contacts, Texts{lastName("Doe")});
    // A semicolon at the end is plain text, so the next line is needed.
    const Outcome joined = import(";;;Doe;\n" + outlookColumns({{57, "mail"}}, 4, 92, ';') + "\n", ';');
    EXPECT_EQ(joined.code, 8);
    EXPECT_EQ(joined.contacts, Texts{imported(0, {{"lastName", "Doe"}, {"email1", "mail"}})});
    // A quote behind a semicolon opens none.
    const Outcome quoted = import(";;;\"\nDoe\";\n", ';');
    EXPECT_EQ(quoted.code, 5);
    EXPECT_EQ(quoted.log, (Texts{columnMismatch, invalidType}));
}

TEST_F(OutlookRecord, EndsTheImportWithABadEscapeInAnyOfItsLines) {
    for (const char* lines : {",,,a\\x\nb\n", ",,,a\nb\\x\n", ",,,\"a\nb\nc\\x\"\n,,,Roe,\n", ",,,\"a\n\\x\",\n"}) {
        const Outcome outcome = import(",,,Doe,\n" + std::string(lines));
        if (std::string(lines).find("x\"\n") != std::string::npos) {
            EXPECT_EQ(outcome.code, 5);  // The stray quote is seen first.
        } else {
            EXPECT_EQ(outcome.code, 6) << lines;
            EXPECT_EQ(outcome.log, Texts{"can't getCSVType: unknown escape sequence\n"});
        }
        EXPECT_EQ(outcome.contacts, Texts{lastName("Doe")});
    }
    for (const char* lines : {",,,a\\\n\",", ",,,a\nb\\\n,"}) {
        const Outcome outcome = import(lines);
        EXPECT_EQ(outcome.code, 6) << lines;
        EXPECT_EQ(outcome.log, Texts{"can't getCSVType: cannot end with escape\n"});
    }
}

TEST_F(OutlookRecord, IsCutAsAWhole) {
    const std::string most(249, 'a');
    expectContacts(",,,\"" + most.substr(0, 200) + "\n" + most.substr(200) + "\"," + rest(5) + "\n", {lastName(most)});
    expectContacts(",,,\"" + most + "a\na\"," + rest(5) + "\n", {lastName(most)});
    // What was cut for its weight is not followed by the next line.
    expectContacts(",,,\"" + most.substr(1) + "&\nb\"," + rest(5) + "\n", {lastName(most.substr(1))});
    // What fits only after a carriage return has gone.
    expectContacts(",,,\"" + most.substr(1) + "\r\r\n\nb\"," + rest(5) + "\n", {lastName(most.substr(1) + "b")});
}

TEST_F(OutlookRecord, LeavesTheJoinedLineInPlace) {
    const TemporaryFile file(outlookHeader() + ",\"\"\",a\nb\"\"c\"," + rest(3) + "\n");
    const Probe importer(file.path(), 0);
    EXPECT_EQ(importer.getCSVType(), 8);
    EXPECT_EQ(importer.nextLine, "bc\"," + rest(3));
    EXPECT_EQ(importer.line, "");
    ASSERT_EQ(importer.tokens.size(), 92U);
    EXPECT_EQ(importer.tokens[1], "\",abc");
}

TEST_F(OutlookRecord, LeavesItsColumnsAndTheTokenizerOnTheRecord) {
    const TemporaryFile file("c\",d");
    Probe importer;
    importer.separator = boost::escaped_list_separator<char>('\\', ',', '"');
    importer.csvType = 8;
    importer.headerCount = 4;
    importer.file.open(file.path());
    importer.line = "a,\"b,x";
    importer.lineContentParser();
    EXPECT_EQ(importer.line, "a,\"b,xc\",d,");
    EXPECT_EQ(importer.tokens, (Texts{"a", "b,xc", "d", ""}));
    EXPECT_EQ(importer.walkTokenizer(), importer.tokens);
    EXPECT_EQ(importer.nextLine, "c\",d");
}

TEST_F(OutlookRecord, KeepsTheColumnsInFrontOfABadEscapeInAContinuation) {
    struct {
        const char* nextLine;
        Texts columns;
    } const rows[] = {{"c\\x", {"a"}}, {"c\",d\\x", {"a", "b,xc"}}, {"c\",d,\\", {"a", "b,xc", "d"}}};
    for (const auto& row : rows) {
        const TemporaryFile file(row.nextLine);
        Probe importer;
        importer.separator = boost::escaped_list_separator<char>('\\', ',', '"');
        importer.csvType = 8;
        importer.headerCount = 9;
        importer.file.open(file.path());
        importer.line = "a,\"b,x";
        EXPECT_THROW(importer.lineContentParser(), boost::escaped_list_error);
        EXPECT_EQ(importer.tokens, row.columns);
    }
}

TEST_F(OutlookRecord, IsFilledUpWithoutAFile) {
    Probe importer;
    importer.separator = boost::escaped_list_separator<char>('\\', ',', '"');
    importer.csvType = 8;
    importer.headerCount = 3;
    importer.line = "a";
    importer.lineContentParser();
    EXPECT_EQ(importer.tokens, (Texts{"a", "", ""}));
}

}  // namespace
