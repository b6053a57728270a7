#include "TextPosition.h"

#include <gtest/gtest.h>

namespace {

TEST(TextPosition, CountsLinesAndBytesFromOne) {
    calljournal::TextPosition position("ab\n\n\xc3\xa4z");
    EXPECT_EQ(position.of(0), "line 1, column 1");
    EXPECT_EQ(position.of(2), "line 1, column 3");
    EXPECT_EQ(position.of(3), "line 2, column 1");
    EXPECT_EQ(position.of(6), "line 3, column 3");
    EXPECT_EQ(position.of(7), "line 3, column 4");
}

}  // namespace
