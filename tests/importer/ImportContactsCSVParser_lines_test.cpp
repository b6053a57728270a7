#include <gtest/gtest.h>

#include "ImportFixture.h"
#include "Probe.h"

namespace {

class ImportedLine : public ImportTest {
protected:
    /// Returns what splitting `text` throws.
    std::string errorOf(const std::string& text) {
        try {
            importer.tokenizeLine(text);
        } catch (const boost::escaped_list_error& error) {
            return error.what();
        }
        return "nothing";
    }

    std::string replaced(std::string text, const std::string& search, const std::string& replacement) {
        importer.replaceAllInternal(text, search, replacement);
        return text;
    }

    Probe importer;
};

TEST_F(ImportedLine, IsSplitAtSeparators) {
    EXPECT_EQ(importer.split("a;b;c"), (Texts{"a", "b", "c"}));
    EXPECT_EQ(importer.split("a, b ;\tc"), (Texts{"a, b ", "\tc"}));
    EXPECT_EQ(importer.split("abc"), Texts{"abc"});
    EXPECT_EQ(importer.split(";;"), (Texts{"", "", ""}));
}

TEST_F(ImportedLine, HasAnEmptyColumnBehindALastSeparator) {
    EXPECT_EQ(importer.split("a;"), (Texts{"a", ""}));
    EXPECT_EQ(importer.split(";"), (Texts{"", ""}));
}

TEST_F(ImportedLine, HasNoColumnIfItIsEmpty) {
    importer.tokens = {"old"};
    EXPECT_EQ(importer.split(""), Texts{});
}

TEST_F(ImportedLine, KeepsASeparatorInsideQuotes) {
    EXPECT_EQ(importer.split("\"a;b\";c"), (Texts{"a;b", "c"}));
    EXPECT_EQ(importer.split("x\"a;b\"y;c"), (Texts{"xa;by", "c"}));
    EXPECT_EQ(importer.split("\"\";a"), (Texts{"", "a"}));
    EXPECT_EQ(importer.split("\"\""), Texts{""});
}

TEST_F(ImportedLine, RunsToItsEndInAnOpenQuote) {
    EXPECT_EQ(importer.split("a;\"b;c;"), (Texts{"a", "b;c;"}));
    EXPECT_EQ(importer.split("a;\""), (Texts{"a", ""}));
}

TEST_F(ImportedLine, TakesEscapedCharacters) {
    EXPECT_EQ(importer.split("a\\nb;\\\";\\;;\\\\"), (Texts{"a\nb", "\"", ";", "\\"}));
    EXPECT_EQ(importer.split("\"a\\\";b\";c"), (Texts{"a\";b", "c"}));
}

TEST_F(ImportedLine, RefusesUnknownEscapes) {
    EXPECT_EQ(errorOf("a;b\\tc"), "unknown escape sequence");
    EXPECT_EQ(errorOf("a\\,b"), "unknown escape sequence");
    EXPECT_EQ(errorOf("\\N"), "unknown escape sequence");
    EXPECT_EQ(errorOf("a;\\"), "cannot end with escape");
    EXPECT_EQ(errorOf("a;\"\\\\\\"), "cannot end with escape");
}

TEST_F(ImportedLine, KeepsTheColumnsInFrontOfABadEscape) {
    EXPECT_EQ(errorOf("a;b;c\\x;d"), "unknown escape sequence");
    EXPECT_EQ(importer.tokens, (Texts{"a", "b"}));
    EXPECT_EQ(errorOf("\\x"), "unknown escape sequence");
    EXPECT_EQ(importer.tokens, Texts{});
}

TEST_F(ImportedLine, IsSplitAtTheSeparatorThatIsSet) {
    importer.separator = boost::escaped_list_separator<char>('\\', ',', '"');
    EXPECT_EQ(importer.split("a,b;c\\,"), (Texts{"a", "b;c,"}));
    EXPECT_EQ(errorOf("a\\;b"), "unknown escape sequence");
}

TEST_F(ImportedLine, HasItsColumnsCut) {
    const std::string longText(300, 'a');
    EXPECT_EQ(importer.split(longText + ";b;" + longText), (Texts{std::string(249, 'a'), "b", std::string(249, 'a')}));
}

TEST_F(ImportedLine, IsWhatTheTokenizerIsBoundTo) {
    const std::string text = "a;\"b;c\";";
    importer.tokenizeLine(text);
    EXPECT_EQ(importer.walkTokenizer(), (Texts{"a", "b;c", ""}));
}

TEST_F(ImportedLine, HasTextReplacedFromTheLeft) {
    EXPECT_EQ(replaced("a\"\"b\"\"", "\"\"", "\\\""), "a\\\"b\\\"");
    EXPECT_EQ(replaced("\"\"\"", "\"\"", "\\\""), "\\\"\"");
    EXPECT_EQ(replaced("\"\"\"\"\"", "\"\"", ""), "\"");
    EXPECT_EQ(replaced("aaa", "a", "aa"), "aaaaaa");
    EXPECT_EQ(replaced("aXbbb", "Xb", ""), "abb");
    EXPECT_EQ(replaced("abab", "ab", "abab"), "abababab");
    EXPECT_EQ(replaced("abc", "x", "y"), "abc");
    EXPECT_EQ(replaced("aa", "a", ""), "");
}

TEST_F(ImportedLine, HasNothingReplacedIfTextOrSearchIsEmpty) {
    EXPECT_EQ(replaced("", "a", "b"), "");
    EXPECT_EQ(replaced("abc", "", "b"), "abc");
}

class ImportedHeader : public ImportTest {};

TEST_F(ImportedHeader, IsTamberWithEitherSeparatorQuotedOrNot) {
    Texts quoted;
    for (const std::string& name : tamberNames()) {
        quoted.push_back('"' + name + '"');
    }
    for (const char separator : {';', ','}) {
        EXPECT_EQ(importText(tamberHeader(separator)).code, 7);
        EXPECT_EQ(importText(join(quoted, separator)).code, 7);
        EXPECT_EQ(importText(tamberHeader(separator)).log, Texts{});
    }
    // Quotes go wherever they stand, so they protect nothing.
    EXPECT_EQ(importText("Last\"\"Name;\"FirstName;Business1;Business2;Mobile1;Private1;Company1;Address1;Address2;"
                         "Position;Email1;DefaultDial")
                  .code,
              7);
    EXPECT_EQ(importText("\"" + join(tamberNames(), ';') + "\"").code, 7);
}

TEST_F(ImportedHeader, IsOutlookWith92ColumnsOfAnyNames) {
    for (const char separator : {';', ','}) {
        const Outcome outcome = importText(outlookHeader(separator));
        EXPECT_EQ(outcome.code, 8);
        EXPECT_EQ(outcome.log, Texts{});
    }
    EXPECT_EQ(importText(std::string(91, ',')).code, 8);
    EXPECT_EQ(importText(std::string(91, ';')).code, 8);
}

TEST_F(ImportedHeader, NeedsMoreThanOneColumn) {
    for (const char* header : {"LastName", "LastName\n", "\"LastName\"\r\n", "a|b\tc", " "}) {
        const Outcome outcome = importText(header);
        EXPECT_EQ(outcome.code, 1) << header;
        EXPECT_EQ(outcome.log, Texts{"the csv file has invalid delimiters"});
    }
}

TEST_F(ImportedHeader, NeedsColumns) {
    for (const char* header : {"\n", "\r\n", "\"\"\n", "\"\n"}) {
        const Outcome outcome = importText(header);
        EXPECT_EQ(outcome.code, 3) << header;
        EXPECT_EQ(outcome.log, (Texts{"Header count is not matched with valid Outlook CSV file.",
                                      "the file has invalid headers, can't be a valid csv file"}));
    }
}

TEST_F(ImportedHeader, HasAtMost100Columns) {
    const Outcome most = importText(anyHeader(100, ';'));
    EXPECT_EQ(most.code, 3);
    EXPECT_EQ(most.log, (Texts{"Header count is not matched with valid Outlook CSV file.",
                               "the file has invalid headers, can't be a valid csv file"}));
    const Outcome tooMany = importText(anyHeader(101, ';'));
    EXPECT_EQ(tooMany.code, 2);
    EXPECT_EQ(tooMany.log, Texts{"too many headers, can't be a valid csv file"});
}

TEST_F(ImportedHeader, IsOfNeitherLayoutWithADifferentName) {
    for (std::size_t column = 0; column < 12; ++column) {
        for (const char* change : {"x", " ", ""}) {
            Texts names = tamberNames();
            names[column] = *change == '\0' ? names[column].substr(1) : names[column] + change;
            const Outcome outcome = importText(join(names, ';'));
            EXPECT_EQ(outcome.code, 3) << names[column];
            EXPECT_EQ(outcome.log.size(), 2U);
        }
    }
    Texts swapped = tamberNames();
    std::swap(swapped[0], swapped[1]);
    EXPECT_EQ(importText(join(swapped, ';')).code, 3);
    Texts lower = tamberNames();
    lower[0] = "lastName";
    EXPECT_EQ(importText(join(lower, ';')).code, 3);
    EXPECT_EQ(importText(join(tamberNames(), ';') + ";").code, 3);
    EXPECT_EQ(importText(anyHeader(91, ',')).code, 3);
    EXPECT_EQ(importText(anyHeader(93, ',')).code, 3);
}

TEST_F(ImportedHeader, LeavesWhatLaterLinesNeed) {
    Probe importer;
    importer.line = "\"" + join(tamberNames(), ',') + "\"";
    importer.headerLineParser();
    EXPECT_FALSE(importer.headerPending);
    EXPECT_EQ(importer.line, join(tamberNames(), ','));
    EXPECT_EQ(importer.tokens, tamberNames());
    EXPECT_EQ(importer.headerCount, 12U);
    EXPECT_EQ(importer.columnMap, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(importer.csvType, 7);
    EXPECT_EQ(importer.split("a,b;c"), (Texts{"a", "b;c"}));
}

TEST_F(ImportedHeader, CountsItsColumnsIfItIsNotRefusedBefore) {
    struct {
        std::string header;
        int code;
        unsigned count;
        std::size_t mapped;
    } const rows[] = {{"a", 1, 0, 0},
                      {"", 3, 0, 0},
                      {std::string(100, ';'), 2, 0, 0},
                      {std::string(99, ';'), 3, 100, 100},
                      {"a;b", 3, 2, 2},
                      {std::string(91, ';'), 8, 92, 92}};
    for (const auto& row : rows) {
        Probe importer;
        importer.line = row.header;
        importer.headerLineParser();
        EXPECT_EQ(importer.csvType, row.code);
        EXPECT_EQ(importer.headerCount, row.count);
        EXPECT_EQ(importer.columnMap, std::vector<int>(row.mapped, -1));
        EXPECT_FALSE(importer.headerPending);
    }
}

TEST_F(ImportedHeader, MapsTheTamberColumnsUpToTheFirstDifference) {
    Probe importer;
    EXPECT_TRUE(importer.isValidTamberHeader(tamberNames()));
    EXPECT_EQ(importer.columnMap, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    Texts names = tamberNames();
    names[2] = "Business";
    EXPECT_FALSE(importer.isValidTamberHeader(names));
    EXPECT_EQ(importer.columnMap, (std::vector<int>{0, 1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
    EXPECT_FALSE(importer.isValidTamberHeader({"LastName", "FirstName"}));
    EXPECT_EQ(importer.columnMap, (std::vector<int>{-1, -1}));
    EXPECT_FALSE(importer.isValidTamberHeader({}));
    EXPECT_EQ(importer.columnMap, std::vector<int>{});
    names = tamberNames();
    names.emplace_back("More");
    EXPECT_FALSE(importer.isValidTamberHeader(names));
    EXPECT_EQ(importer.columnMap, std::vector<int>(13, -1));
    EXPECT_EQ(fakePlatform().log.size(), 0U);
}

TEST_F(ImportedHeader, CountsTheOutlookColumns) {
    Probe importer;
    EXPECT_TRUE(importer.isValidOutlookHeader(Texts(92)));
    EXPECT_EQ(fakePlatform().log.size(), 0U);
    for (const std::size_t count : {0U, 12U, 91U, 93U}) {
        fakePlatform().log.clear();
        EXPECT_FALSE(importer.isValidOutlookHeader(Texts(count)));
        EXPECT_EQ(fakePlatform().logTexts(), Texts{"Header count is not matched with valid Outlook CSV file."});
    }
}

TEST_F(ImportedHeader, SplitsLaterLinesAtItsOwnSeparator) {
    const Outcome outcome = importText(tamberHeader(',') + "a;b,,,,,,,,,,,0\n");
    EXPECT_EQ(outcome.contacts, Texts{imported(0, {{"lastName", "a;b"}})});
}

class ImportedTamberLine : public ImportTest {};

TEST_F(ImportedTamberLine, HasExactlyTwelveColumns) {
    for (const char* line : {"", "a", "a;;;;;;;;;;0", "a;;;;;;;;;;;0;", "\"a;;;;;;;;;;;0"}) {
        const Outcome outcome = importText(tamberHeader() + line + "\nDoe;;;;;;;;;;;0\n");
        EXPECT_EQ(outcome.code, 5) << line;
        EXPECT_EQ(outcome.contacts, Texts{});
        EXPECT_EQ(outcome.log, (Texts{columnMismatch, invalidType}));
    }
}

TEST_F(ImportedTamberLine, HasADefaultNumberFromZeroToFour) {
    for (const char* dial : {"0", "4", " 3 ", "\t1", "00002", ""}) {
        EXPECT_EQ(importText(tamberHeader() + "Doe;;;;;;;;;;;" + dial).code, 7) << dial;
    }
    for (const char* dial : {"5", "-1", "x", "+1", "1.0", "1 2", "99999999999999999999", "3x"}) {
        const Outcome outcome = importText(tamberHeader() + "Doe;;;;;;;;;;;" + dial);
        EXPECT_EQ(outcome.code, 4) << dial;
        EXPECT_EQ(outcome.contacts, Texts{});
        EXPECT_EQ(outcome.log, Texts{"corrupt file: default dial has to be an integer between 0 and 4"});
    }
}

TEST_F(ImportedTamberLine, HasNoContinuation) {
    const Outcome outcome = importText(tamberHeader() + "\"a\nb\";;;;;;;;;;;0\n");
    EXPECT_EQ(outcome.code, 5);
    EXPECT_EQ(outcome.log, (Texts{columnMismatch, invalidType}));
}

TEST_F(ImportedTamberLine, TakesADoubledQuoteForAnEscapedOne) {
    EXPECT_EQ(importText(tamberHeader() + "\"a \"\"b\"\" c\";;;;;;;;;;;0\n").contacts,
              Texts{imported(0, {{"lastName", "a \"b\" c"}})});
    EXPECT_EQ(importText(tamberHeader() + "\"\";;;;;;;;;;;0\n").contacts, Texts{imported(0, {{"lastName", "\""}})});
    // The first two of three quotes, the third opens.
    EXPECT_EQ(importText(tamberHeader() + "\"\"\"a;b\";;;;;;;;;;;0\n").contacts,
              Texts{imported(0, {{"lastName", "\"a;b"}})});
    // A backslash in front of a doubled quote stands alone, and the quote that is left opens.
    EXPECT_EQ(importText(tamberHeader() + "\\\"\"a;b\";;;;;;;;;;;0\n").contacts,
              Texts{imported(0, {{"lastName", "\\a;b"}})});
}

TEST_F(ImportedTamberLine, MayBeTheHeaderAgain) {
    EXPECT_EQ(importText(tamberHeader() + tamberHeader()).code, 4);
}

TEST_F(ImportedTamberLine, LeavesItsColumnsInPlace) {
    Probe importer;
    importer.csvType = 7;
    importer.headerCount = 3;
    importer.line = "a;\"\";c";
    importer.lineContentParser();
    EXPECT_EQ(importer.line, "a;\\\";c");
    EXPECT_EQ(importer.tokens, (Texts{"a", "\"", "c"}));
    EXPECT_EQ(importer.csvType, 7);
    EXPECT_EQ(importer.walkTokenizer(), importer.tokens);
}

}  // namespace
