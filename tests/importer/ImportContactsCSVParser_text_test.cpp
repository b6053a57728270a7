#include <climits>
#include <gtest/gtest.h>

#include "ImportFixture.h"
#include "Probe.h"
#include "ReferenceImporter.h"

namespace {

class ImportedText : public ImportTest {
protected:
    std::string trim(const std::string& field) { return importer.trimFieldLength(field); }
    bool isValid(const std::string& text) const { return importer.is_valid_utf8(text.c_str()); }
    std::string convert(std::string text) const {
        return importer.convertUnicodeANSIToUTF8(reinterpret_cast<unsigned char*>(&text[0]),
                                                 static_cast<int>(text.size()));
    }

    Probe importer;
};

std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += static_cast<char>(value);
    }
    return text;
}

TEST_F(ImportedText, IsCutBehind249Letters) {
    EXPECT_EQ(trim(""), "");
    EXPECT_EQ(trim("a"), "a");
    EXPECT_EQ(trim(std::string(249, 'a')), std::string(249, 'a'));
    EXPECT_EQ(trim(std::string(250, 'a')), std::string(249, 'a'));
    EXPECT_EQ(trim(std::string(100000, 'a')), std::string(249, 'a'));
}

TEST_F(ImportedText, CountsTheEntitiesOfMarkup) {
    struct {
        char character;
        std::size_t weight;
    } const rows[] = {{'"', 6}, {'\'', 6}, {'&', 5}, {'<', 4}, {'>', 4}, {'a', 1}, {'\0', 1}, {'\n', 1}, {'\xC3', 1}};
    for (const auto& row : rows) {
        const std::size_t most = 249 / row.weight;
        EXPECT_EQ(trim(std::string(most, row.character)), std::string(most, row.character));
        EXPECT_EQ(trim(std::string(most + 1, row.character)), std::string(most, row.character));
        const std::string fits = std::string(249 - row.weight, 'x') + row.character;
        EXPECT_EQ(trim(fits), fits);
        EXPECT_EQ(trim("x" + fits), "x" + fits.substr(0, 249 - row.weight));
    }
}

TEST_F(ImportedText, IsCutAtTheFirstByteThatDoesNotFit) {
    EXPECT_EQ(trim(std::string(41, '"') + "abc"), std::string(41, '"') + "abc");
    EXPECT_EQ(trim(std::string(41, '"') + "abcd"), std::string(41, '"') + "abc");
    EXPECT_EQ(trim(std::string(42, '"')), std::string(41, '"'));
    // What follows would fit again.
    EXPECT_EQ(trim(std::string(248, 'a') + "&b"), std::string(248, 'a'));
}

TEST_F(ImportedText, IsCutInsideACharacter) {
    EXPECT_EQ(trim(std::string(248, 'a') + "\xC3\xBC"), std::string(248, 'a') + "\xC3");
}

TEST_F(ImportedText, IsValidWhereItIsUtf8) {
    EXPECT_TRUE(importer.is_valid_utf8(nullptr));
    const std::string valid[] = {"",
                                 "plain",
                                 bytes({0xC3, 0xBC}),
                                 bytes({0xC2, 0x80}),
                                 bytes({0xDF, 0xBF}),
                                 bytes({0xE0, 0xA0, 0x80}),
                                 bytes({0xED, 0x9F, 0xBF}),
                                 bytes({0xEE, 0x80, 0x80}),
                                 bytes({0xEF, 0xBF, 0xBF}),
                                 bytes({0xF0, 0x90, 0x80, 0x80}),
                                 bytes({0xF0, 0x9F, 0x98, 0x80}),
                                 bytes({0xF4, 0x8F, 0xBF, 0xBF}),
                                 bytes({0x7F}),
                                 "a" + bytes({0xC3, 0xBC}) + "b" + bytes({0xE2, 0x82, 0xAC}) + "c"};
    for (const std::string& text : valid) {
        EXPECT_TRUE(isValid(text)) << testing::PrintToString(text);
    }
}

TEST_F(ImportedText, IsInvalidWhereItIsNotUtf8) {
    const std::string invalid[] = {
        bytes({0xC0, 0x80}),              // Overlong.
        bytes({0xC1, 0xBF}),              //
        bytes({0xE0, 0x9F, 0xBF}),        //
        bytes({0xF0, 0x8F, 0xBF, 0xBF}),  //
        bytes({0xED, 0xA0, 0x80}),        // A surrogate.
        bytes({0xED, 0xBF, 0xBF}),        //
        bytes({0xF4, 0x90, 0x80, 0x80}),  // Above the last code point.
        bytes({0xF7, 0xBF, 0xBF, 0xBF}),  //
        bytes({0xBC}),                    // A following byte alone.
        bytes({0xF8, 0x88, 0x80, 0x80, 0x80}),
        bytes({0xFE}),
        bytes({0xFF}),
        bytes({0xC3}),  // Cut short.
        bytes({0xE2, 0x82}),
        bytes({0xF0, 0x9F, 0x98}),
        bytes({0xC3, 'a'}),
        bytes({0xC3, 0xC3}),
        "a" + bytes({0xFC}) + "b",
    };
    for (const std::string& text : invalid) {
        EXPECT_FALSE(isValid(text)) << testing::PrintToString(text);
    }
}

TEST_F(ImportedText, IsLookedAtUpToTheFirstZeroByte) {
    EXPECT_TRUE(isValid(std::string("a\0\xFF", 3)));
    EXPECT_FALSE(isValid(std::string("\xC3\0\xBC", 3)));
}

TEST_F(ImportedText, IsJudgedAsByTheGrammarOfUtf8) {
    const unsigned char tails[] = {0x00, 0x7F, 0x80, 0xBF, 0xC0};
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            for (const int third : tails) {
                for (const int fourth : tails) {
                    const std::string text = bytes({first, second, third, fourth});
                    ASSERT_EQ(isValid(text), matchesUtf8Grammar(text.c_str())) << testing::PrintToString(text);
                }
            }
        }
    }
}

TEST_F(ImportedText, IsConvertedByteByByte) {
    EXPECT_EQ(convert("\xFC"), "\xC3\xBC");
    EXPECT_EQ(convert("A\xE9"), "A\xC3\xA9");
    EXPECT_EQ(convert("\x80\x9F"), "\xC2\x80\xC2\x9F");
    EXPECT_EQ(convert(std::string("\0a\0", 3)), std::string("\0a\0", 3));
    for (int byte = 0; byte < 256; ++byte) {
        const std::string expected = byte < 0x80 ? bytes({byte}) : bytes({byte < 0xC0 ? 0xC2 : 0xC3, 0x80 + byte % 64});
        EXPECT_EQ(convert(bytes({byte})), expected);
        EXPECT_TRUE(isValid(convert(bytes({byte, byte}))));
    }
}

TEST_F(ImportedText, IsConvertedToNothingWithoutLength) {
    unsigned char data[] = {'a'};
    EXPECT_EQ(importer.convertUnicodeANSIToUTF8(data, 0), "");
    EXPECT_EQ(importer.convertUnicodeANSIToUTF8(data, -1), "");
    EXPECT_EQ(importer.convertUnicodeANSIToUTF8(data, INT_MIN), "");
    EXPECT_EQ(importer.convertUnicodeANSIToUTF8(nullptr, 0), "");
}

TEST_F(ImportedText, IsConvertedUpToItsLength) {
    unsigned char data[] = {'a', 0xFC, 'b'};
    EXPECT_EQ(importer.convertUnicodeANSIToUTF8(data, 2), "a\xC3\xBC");
}

TEST_F(ImportedText, IsConvertedWithoutGrowing) {
    EXPECT_GE(convert(std::string(1000, '\xFC')).capacity(), 4000U);
    EXPECT_GE(convert(std::string(1000, 'a')).capacity(), 4000U);
}

TEST_F(ImportedText, IsCutInEveryColumn) {
    const std::string field(300, '<');
    std::string line;
    for (int column = 0; column < 11; ++column) {
        line += field + ";";
    }
    const Outcome outcome = importText(tamberHeader() + line + "0\n");
    const std::string cut(62, '<');
    EXPECT_EQ(outcome.contacts, Texts{imported(0, {{"lastName", cut},
                                                   {"firstName", cut},
                                                   {"business1", cut},
                                                   {"business2", cut},
                                                   {"mobile1", cut},
                                                   {"private1", cut},
                                                   {"company1", cut},
                                                   {"address1", cut},
                                                   {"address2", cut},
                                                   {"position", cut},
                                                   {"email1", cut}})});
}

TEST_F(ImportedText, IsEncodedTwiceWhereTheCutSplitACharacter) {
    const std::string start = std::string(246, 'a') + "\xC3\xBC";
    const Outcome outcome = importText(outlookHeader() + outlookColumns({{3, start + "\xC3\xBC"}}) + "\n");
    EXPECT_EQ(outcome.contacts, Texts{imported(0, {{"lastName", std::string(246, 'a') + "\xC3\x83\xC2\xBC\xC3\x83"}})});
}

TEST_F(ImportedText, IsNotCutAgainOnceConverted) {
    const Outcome outcome = importText(outlookHeader() + outlookColumns({{3, std::string(300, '\xFC')}}) + "\n");
    std::string converted;
    for (int count = 0; count < 249; ++count) {
        converted += "\xC3\xBC";
    }
    EXPECT_EQ(outcome.contacts, Texts{imported(0, {{"lastName", converted}})});
}

}  // namespace
