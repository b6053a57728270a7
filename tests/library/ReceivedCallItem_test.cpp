#include "ReceivedCallItem.h"

#include <gtest/gtest.h>
#include <list>
#include <type_traits>

namespace {

using Info = ReceivedCallItem::ReceivedCallInfo;

struct InfoLayout : CallInfo, Duration, TimeFormat, Redirecting {};

struct ItemLayout : CallItemWithPicture {
    std::list<Info> list;
};

TEST(ReceivedCallInfo, HasItsPartsInTheirFixedOrderAndNothingElse) {
    const Info info;
    const void* const places[] = {static_cast<const CallInfo*>(&info), static_cast<const Duration*>(&info),
                                  static_cast<const TimeFormat*>(&info), static_cast<const Redirecting*>(&info)};

    EXPECT_EQ(places[0], static_cast<const void*>(&info));
    for (std::size_t index = 1; index < sizeof places / sizeof places[0]; ++index) {
        EXPECT_LT(places[index - 1], places[index]) << index;
    }
    EXPECT_EQ(sizeof(Info), sizeof(InfoLayout));
}

TEST(ReceivedCallItem, DiffersByTheDeflectingPartyOfACallAlone) {
    Info deflected;
    deflected.deflectNumber = "0301234";

    EXPECT_FALSE(ReceivedCallItem("7", "", "", {Info()}) == ReceivedCallItem("7", "", "", {deflected}));
}

TEST(ReceivedCallItem, DiffersByTheDurationOfACallAlone) {
    Info lasting;
    lasting.duration = "00:00:41";

    EXPECT_FALSE(ReceivedCallItem("7", "", "", {Info()}) == ReceivedCallItem("7", "", "", {lasting}));
}

TEST(ReceivedCallItem, HoldsItsListAndNothingElse) {
    const ReceivedCallItem item;

    EXPECT_EQ(reinterpret_cast<const char*>(&item.getReceivedCallInfoList()),
              reinterpret_cast<const char*>(&item) + sizeof(CallItemWithPicture));
    EXPECT_EQ(sizeof(ReceivedCallItem), sizeof(ItemLayout));
}

}  // namespace
