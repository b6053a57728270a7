#include <climits>
#include <cstddef>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "Kinds.h"

// Where 32-bit machines could differ from 64-bit ones, these tests say that they do not, or how they do.

namespace {

constexpr bool isNarrow = sizeof(std::size_t) == 4;

template <class Kind>
class WordSizeOfKind : public ::testing::Test {};

TYPED_TEST_SUITE(WordSizeOfKind, AllKinds, KindNames);

TYPED_TEST(WordSizeOfKind, LeavesNumbersThatAreTextsAlone) {
    // The first numbers that 31, 32, 63 and 64 bits do not hold.
    for (const std::string number : {"2147483648", "4294967296", "9223372036854775808", "18446744073709551616"}) {
        typename TypeParam::Info call;
        call.number = number;
        call.timeDate = number;
        typename TypeParam::Item item;
        item.setUniqueId(number);
        item.setEntryId(number);
        TypeParam::setCalls(item, {call});

        const std::string body = TypeParam::encode(item, false);
        typename TypeParam::Item copy;
        TypeParam::decode(body.c_str(), copy);

        EXPECT_EQ(body.find("<UniqueId>" + number + "</UniqueId><EntryId>" + number + "</EntryId>"), 0u) << body;
        EXPECT_NE(body.find("<Number>" + number + "</Number>"), std::string::npos) << body;
        EXPECT_NE(body.find("<TimeDate>" + number + "</TimeDate>"), std::string::npos) << body;
        EXPECT_EQ(copy.getUniqueId() + copy.getEntryId(), number + number);
        EXPECT_EQ(TypeParam::encode(copy, false), body);
    }
}

TEST(WordSize, LetsAnIntHoldEveryPositionOnANarrowMachine) {
    // Elements are cut out at positions kept as int: there, no text is long enough for one that is not.
    EXPECT_EQ(std::string().max_size() <= static_cast<std::size_t>(INT_MAX), isNarrow);
}

TEST(WordSize, LetsATextGrowBeyondHalfOfTheLongest) {
    // Room is made by doubling, which may not ask for more than there can be.
    const std::size_t length = isNarrow ? std::string().max_size() / 2 + 1 : 1000000;
    MissedCallItem item;
    Missed::setCalls(item, {Missed::Info()});
    std::string list;
    Helper::createXMLMissedCallInfoList(item, list);
    std::string out(length, 'x');

    Helper::createXMLMissedCallInfoList(item, out);

    EXPECT_EQ(out.size(), length + list.size());
    EXPECT_EQ(out.compare(length, std::string::npos, list), 0);
}

#if __SIZEOF_SIZE_T__ == 4
TEST(WordSize, RefusesAnElementThatTheLongestTextHasNoRoomFor) {
    std::string out;
    out.reserve(out.max_size());
    out.assign(out.max_size() - 8, 'x');
    Helper::createXMLField("A", std::string("1"), out);
    ASSERT_EQ(out.size(), out.max_size());

    EXPECT_THROW(Helper::createXMLField("A", std::string("1"), out), std::length_error);

    EXPECT_EQ(out.size(), out.max_size());
    EXPECT_EQ(out.compare(out.size() - 8, 8, "<A>1</A>"), 0);
}
#endif

}  // namespace
