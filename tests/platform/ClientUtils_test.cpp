#include "ClientUtils.h"

#include <climits>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

std::string everyByte() {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    return all;
}

}  // namespace

TEST(EscapeXmlString, WritesTheFivePredefinedEntities) {
    EXPECT_EQ(ClientUtils::escapeXMLString("<a href=\"x\">Tom & Jerry's</a>"),
              "&lt;a href=&quot;x&quot;&gt;Tom &amp; Jerry&apos;s&lt;/a&gt;");
}

TEST(EscapeXmlString, EscapesWhatIsEscapedAlreadyOnceMore) {
    EXPECT_EQ(ClientUtils::escapeXMLString("&amp;&lt;"), "&amp;amp;&amp;lt;");
}

TEST(EscapeXmlString, LeavesEveryOtherByteAsItIs) {
    std::string others;
    for (const char c : everyByte()) {
        if (std::string("&<>\"'").find(c) == std::string::npos) {
            others += c;
        }
    }
    EXPECT_EQ(others.size(), 251u);
    EXPECT_EQ(ClientUtils::escapeXMLString(others), others);
    EXPECT_EQ(ClientUtils::escapeXMLString(""), "");
}

TEST(UnescapeXmlString, ReadsTheFivePredefinedEntities) {
    EXPECT_EQ(ClientUtils::unescapeXMLString("&lt;&gt;&amp;&quot;&apos;"), "<>&\"'");
    EXPECT_EQ(ClientUtils::unescapeXMLString("Tom &amp; Jerry&apos;s"), "Tom & Jerry's");
}

TEST(UnescapeXmlString, GoesOverTheTextOnce) {
    EXPECT_EQ(ClientUtils::unescapeXMLString("&amp;lt;"), "&lt;");
    EXPECT_EQ(ClientUtils::unescapeXMLString("&amp;amp;amp;"), "&amp;amp;");
    EXPECT_EQ(ClientUtils::unescapeXMLString("&&lt;lt;"), "&<lt;");
}

TEST(UnescapeXmlString, LeavesAnythingElseAsItStands) {
    for (const std::string text : {"", "plain", "&", "&&", "& ", "&lt", "&LT;", "&l t;", "lt;", "&nbsp;", "&#60;",
                                   "&#x3c;", "Smith & Co", "&amp", "&;"}) {
        EXPECT_EQ(ClientUtils::unescapeXMLString(text), text);
    }
}

TEST(UnescapeXmlString, ReturnsATextWithoutAmpersandUnchanged) {
    std::string text = everyByte();
    text.erase(text.find('&'), 1);
    EXPECT_EQ(ClientUtils::unescapeXMLString(text), text);
}

TEST(UnescapeXmlString, UndoesEscapingForAnyText) {
    EXPECT_EQ(ClientUtils::unescapeXMLString(ClientUtils::escapeXMLString(everyByte())), everyByte());
    const unsigned seed = 20261121;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string pieces[] = {
        "&", "<", ">", "\"", "'", "amp;", "lt;", "gt;", "quot;", "apos;", "x", std::string(1, '\0'), "\xC3\xA9"};
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (std::size_t left = random() % 12; left > 0; --left) {
            text += pieces[random() % std::size(pieces)];
        }
        EXPECT_EQ(ClientUtils::unescapeXMLString(ClientUtils::escapeXMLString(text)), text);
    }
}

TEST(FixSpecialXmlCharactersToQuote, ReplacesControlCharactersAndNothingElse) {
    std::string expected = everyByte();
    for (std::size_t byte = 0; byte < 0x20; ++byte) {
        expected[byte] = '\'';
    }
    expected[0x09] = '\t';
    expected[0x0a] = '\n';
    expected[0x0d] = '\r';
    EXPECT_EQ(ClientUtils::fixSpecialXMLCharactersToQuote(everyByte()), expected);
    EXPECT_EQ(ClientUtils::fixSpecialXMLCharactersToQuote("<a>\x01\x1f&</a>"), "<a>''&</a>");
    EXPECT_EQ(ClientUtils::fixSpecialXMLCharactersToQuote(""), "");
}

TEST(Trim, RemovesBlanksAtBothEndsOnly) {
    EXPECT_EQ(ClientUtils::trim(" \t\n\r\v\f3 \t\n\r\v\f"), "3");
    EXPECT_EQ(ClientUtils::trim("  a  b "), "a  b");
    EXPECT_EQ(ClientUtils::trim("ab"), "ab");
}

TEST(Trim, LeavesNothingOfBlanks) {
    EXPECT_EQ(ClientUtils::trim(""), "");
    EXPECT_EQ(ClientUtils::trim(" \t\n\r\v\f"), "");
}

TEST(Trim, KnowsNoOtherBlanks) {
    for (const char c : everyByte()) {
        const bool isBlank = c == ' ' || (c >= '\t' && c <= '\r');
        EXPECT_EQ(ClientUtils::trim(std::string(1, c)), isBlank ? "" : std::string(1, c));
    }
}

TEST(IsAllDigits, AcceptsDigitsAndTheEmptyText) {
    EXPECT_TRUE(ClientUtils::isAllDigits("0123456789"));
    EXPECT_TRUE(ClientUtils::isAllDigits(std::string(100000, '7')));
    EXPECT_TRUE(ClientUtils::isAllDigits(""));
}

TEST(IsAllDigits, RefusesEveryOtherByte) {
    for (const char c : everyByte()) {
        EXPECT_EQ(ClientUtils::isAllDigits(std::string("1") + c + "2"), c >= '0' && c <= '9') << int{c};
    }
    EXPECT_FALSE(ClientUtils::isAllDigits("-1"));
    EXPECT_FALSE(ClientUtils::isAllDigits(" 1"));
}

TEST(Stoi, ReadsANumberUpToTheFirstOtherByte) {
    const struct {
        std::string text;
        int number;
    } rows[] = {
        {"0", 0},
        {"4", 4},
        {"007", 7},
        {" \t\n\r\v\f3 ", 3},
        {"-12", -12},
        {"+12", 12},
        {"12abc", 12},
        {"1 2", 1},
        {"3.9", 3},
        {std::string("5\0"
                     "6",
                     3),
         5},
        {" -7-", -7},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ClientUtils::stoi(row.text), row.number) << row.text;
    }
}

TEST(Stoi, TakesATextWithoutDigitsForZero) {
    for (const char* const text : {"", " ", "\t\n", "-", "+", "--1", "+-1", "- 1", "a1",
                                   "\xA0"
                                   "1",
                                   "0x10"}) {
        EXPECT_EQ(ClientUtils::stoi(text), 0) << text;
    }
}

TEST(Stoi, SaturatesAtTheLimits) {
    EXPECT_EQ(ClientUtils::stoi("2147483646"), 2147483646);
    EXPECT_EQ(ClientUtils::stoi("2147483647"), INT_MAX);
    EXPECT_EQ(ClientUtils::stoi("2147483648"), INT_MAX);
    EXPECT_EQ(ClientUtils::stoi("2147483650"), INT_MAX);
    EXPECT_EQ(ClientUtils::stoi("4294967296"), INT_MAX);
    EXPECT_EQ(ClientUtils::stoi("-2147483647"), -2147483647);
    EXPECT_EQ(ClientUtils::stoi("-2147483648"), INT_MIN);
    EXPECT_EQ(ClientUtils::stoi("-2147483649"), INT_MIN);
    EXPECT_EQ(ClientUtils::stoi(std::string(100000, '9')), INT_MAX);
    EXPECT_EQ(ClientUtils::stoi("-" + std::string(100000, '9')), INT_MIN);
    EXPECT_EQ(ClientUtils::stoi(std::string(100000, '0') + "8"), 8);
}

TEST(HandleCrAtEnd, DropsOneCarriageReturn) {
    const struct {
        std::string before;
        std::string after;
    } rows[] = {{"a\r", "a"}, {"\r", ""},       {"a\r\r", "a\r"}, {"a", "a"},
                {"", ""},     {"a\rb", "a\rb"}, {"a\n", "a\n"},   {"a\r\n", "a\r\n"}};
    for (const auto& row : rows) {
        std::string line = row.before;
        ClientUtils::handleCRatEnd(line);
        EXPECT_EQ(line, row.after);
    }
}
