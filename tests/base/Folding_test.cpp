#include "Folding.h"

#include <gtest/gtest.h>

using namespace calljournal;

namespace {

TEST(Folding, MakesTextsEqualThatDifferInCase) {
    EXPECT_EQ(folded("Smith & CO 7"), "smith & co 7");
    EXPECT_EQ(folded("ÄRZTE"), folded("ärzte"));
    EXPECT_EQ(folded("Straße"), "strasse");
    EXPECT_EQ(folded("ПОЛИНА"), "полина");
    EXPECT_NE(folded("Muller"), folded("Müller"));
}

TEST(Folding, LeavesOneSpaceBetweenWords) {
    EXPECT_EQ(folded("  Ann \t\r\n Smith "), "ann smith");
    EXPECT_EQ(folded("Zoë\u00a0\u3000 Smith\u2003"), "zoë smith");
    EXPECT_EQ(folded("a\u2028b"), "a b");
    EXPECT_EQ(folded(""), "");
    EXPECT_EQ(folded(" \u00a0"), "");
}

TEST(Folding, TakesControlCharactersForBlanks) {
    EXPECT_EQ(folded(std::string_view("A\0\x1b\177B\x01", 6)), "a b");
    EXPECT_EQ(folded(std::string_view("Ä\0B", 4)), "ä b");
}

TEST(Folding, KeepsBytesThatAreNoUtf8) {
    EXPECT_EQ(folded("A\xff\xc3 \xe4\xbd Z"), "a\xff\xc3 \xe4\xbd z");
    EXPECT_EQ(folded("\xed\xa0\x80\xc0\x80"), "\xed\xa0\x80\xc0\x80");
}

}  // namespace
