#include "NumberWriter.h"

#include <gtest/gtest.h>

namespace calljournal {
namespace {

struct Row {
    const char* number;
    const char* international;
    const char* dialable;
    const char* problem;
};

constexpr Row rows[] = {
    {"030 2345678", "+49 30 2345678", "+49302345678", ""},
    {"+44 20 7946 0123", "+44 20 7946 0123", "+442079460123", ""},
    {"0044 20 79460123", "+44 20 7946 0123", "+442079460123", ""},
    {"(030) 2345678 ext. 12", "+49 30 2345678 ext. 12", "+49302345678,12", ""},
    {"+1 202-555-0143 x9", "+1 202-555-0143 ext. 9", "+12025550143,9", ""},
    {"4711", "4711", "4711", ""},
    {"47-11", "47-11", "4711", ""},
    {"112", "112", "112", ""},
    {"*21*030 2345678#", "*21*030 2345678#", "*21*0302345678#", ""},
    {"+49 1", "+49 1", "+491", "is no valid number"},
    {"+999 12345678", "+999 12345678", "+99912345678", "is no valid number"},
    {"0000000000", "0000000000", "0000000000", "is no valid number"},
    {"n/a", "n/a", "n/a", "is no number"},
};

TEST(NumberWriter, WritesANumberInEachStyleAndTellsWhatIsWrongWithIt) {
    for (const Row& row : rows) {
        const WrittenNumber kept = NumberWriter(NumberStyle::keep, "DE")(row.number);
        EXPECT_EQ(kept.text, row.number);
        EXPECT_EQ(kept.problem, row.problem) << row.number;
        const WrittenNumber international = NumberWriter(NumberStyle::international, "DE")(row.number);
        EXPECT_EQ(international.text, row.international);
        EXPECT_EQ(international.problem, row.problem) << row.number;
        const WrittenNumber dialable = NumberWriter(NumberStyle::dialable, "DE")(row.number);
        EXPECT_EQ(dialable.text, row.dialable);
        EXPECT_EQ(dialable.problem, row.problem) << row.number;
    }
}

TEST(NumberWriter, KeepsWhatItCannotJudgeWithoutARegion) {
    const NumberWriter keep(NumberStyle::keep, "ZZ");
    EXPECT_EQ(keep("030 2345678").problem, "");
    EXPECT_EQ(keep("unknown").problem, "is no number");
    EXPECT_EQ(keep("123456789012345678901").problem, "has too many digits for a number");
    EXPECT_EQ(keep(std::string(251, '1')).problem, "is too long for a number");
    EXPECT_EQ(keep("０３０").problem, "");
}

TEST(NumberWriter, AsksForTheRegionOfANationalNumber) {
    const WrittenNumber written = NumberWriter(NumberStyle::international, "ZZ")("030 2345678");
    EXPECT_EQ(written.text, "030 2345678");
    EXPECT_EQ(written.problem, "has no country code, and no --region says where it is dialled");
    EXPECT_EQ(NumberWriter(NumberStyle::international, "ZZ")("+").problem, "is no number");
    EXPECT_EQ(NumberWriter(NumberStyle::international, "ZZ")("+9").problem, "is no valid number");
    EXPECT_EQ(NumberWriter(NumberStyle::international, "ZZ")("+49302345678").text, "+49 30 2345678");
}

}  // namespace
}  // namespace calljournal
