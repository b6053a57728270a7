#include "PrintableText.h"

#include <gtest/gtest.h>

using namespace calljournal;

namespace {

TEST(Printable, KeepsNamesOfAnyScript) {
    EXPECT_EQ(printable("Müller 山田 Þórsdóttir 😀"), "Müller 山田 Þórsdóttir 😀");
}

TEST(Printable, ShowsControlCharactersInsteadOfObeyingThem) {
    EXPECT_EQ(printable("a\x1b[31mb"), "a\\x1b[31mb");
    EXPECT_EQ(printable("a\nb\tc\rd"), "a\\nb\\tc\\x0dd");
    EXPECT_EQ(printable(std::string_view("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(printable("\x7f\xc2\x9b"), "\\x7f\\x9b");
}

TEST(Printable, ShowsCharactersThatTurnTheDirectionOfWriting) {
    EXPECT_EQ(printable("abc\u202edef"), "abc\\u202edef");
    EXPECT_EQ(printable("\u2066x\u2069\u200f\u2028"), "\\u2066x\\u2069\\u200f\\u2028");
}

TEST(Printable, ShowsCharactersThatNobodySees) {
    EXPECT_EQ(printable("A\u200bn\u00adn\u2060\u2064\ufeff"), "A\\u200bn\\u00adn\\u2060\\u2064\\ufeff");
    EXPECT_EQ(printable("Ann\U000e0041\U000e007f"), "Ann\\U000e0041\\U000e007f");
}

TEST(Printable, KeepsWhatJoinsAndParts) {
    for (const std::string text : {"می\u200cخواهم", "क्\u200dष", "\U0001f469\u200d\U0001f680", "\u00a0", "❤\ufe0f"}) {
        EXPECT_EQ(printable(text), text);
    }
}

TEST(Printable, ShowsEachRangeToItsEndsAndNoFurther) {
    struct {
        char32_t first;
        char32_t last;
    } const ranges[] = {{0x7f, 0x9f},     {0xad, 0xad},     {0x61c, 0x61c},   {0x200b, 0x200b},  {0x200e, 0x200f},
                        {0x2028, 0x202e}, {0x2060, 0x206f}, {0xfeff, 0xfeff}, {0xe0000, 0xe007f}};
    for (const auto& range : ranges) {
        EXPECT_TRUE(isShownAsEscape(range.first) && isShownAsEscape(range.last)) << std::hex << range.first;
        EXPECT_FALSE(isShownAsEscape(range.first - 1) || isShownAsEscape(range.last + 1)) << std::hex << range.first;
    }
}

TEST(Printable, ShowsBytesThatAreNotUtf8) {
    EXPECT_EQ(printable("\xfc"), "\\xfc");
    EXPECT_EQ(printable("\xc3"), "\\xc3");
    EXPECT_EQ(printable("\xc0\x80"), "\\xc0\\x80");
    EXPECT_EQ(printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");
    EXPECT_EQ(printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
    EXPECT_EQ(printable("\xe2\x82x"), "\\xe2\\x82x");
}

TEST(DisplayWidth, CountsColumnsNotBytes) {
    EXPECT_EQ(displayWidth("Müller"), 6u);
    EXPECT_EQ(displayWidth("山田"), 4u);
    EXPECT_EQ(displayWidth("e\u0301"), 1u);
    EXPECT_EQ(displayWidth(""), 0u);
}

TEST(Fitted, LeavesAShortTextAsItIs) {
    EXPECT_EQ(fitted("Müller", 6), "Müller");
}

TEST(Fitted, CutsAtACharacterAndShowsThatSomethingIsMissing) {
    EXPECT_EQ(fitted("Müllerin", 6), "Mülle…");
    EXPECT_EQ(fitted("山田花子", 6), "山田…");
    EXPECT_EQ(fitted("山田花子", 4), "山…");
}

}  // namespace
