#include "ForwardedCallItem.h"

#include <gtest/gtest.h>
#include <list>
#include <type_traits>

#include "TimeFormat.h"

namespace {

using Info = ForwardedCallItem::ForwardedCallInfo;

struct InfoLayout : CallInfo, Duration, Redirecting {};

struct ItemLayout : CallItemWithPicture {
    std::list<Info> list;
};

TEST(ForwardedCallInfo, HasItsPartsInTheirFixedOrderAndNothingElse) {
    const Info info;
    const void* const places[] = {static_cast<const CallInfo*>(&info), static_cast<const Duration*>(&info),
                                  static_cast<const Redirecting*>(&info)};

    EXPECT_EQ(places[0], static_cast<const void*>(&info));
    EXPECT_LT(places[0], places[1]);
    EXPECT_LT(places[1], places[2]);
    EXPECT_EQ(sizeof(Info), sizeof(InfoLayout));
}

TEST(ForwardedCallInfo, HasNoTimeFormat) {
    EXPECT_FALSE((std::is_base_of<TimeFormat, Info>::value));
}

TEST(ForwardedCallInfo, EqualsOneOfAnotherTransferTypeOrDeflectNumber) {
    Info transferred;
    transferred.transferType = static_cast<TransferNumber::TransferNumberType>(1);
    Info deflected;
    deflected.deflectNumber = "0301234";

    EXPECT_TRUE(Info() == transferred);
    EXPECT_TRUE(Info() == deflected);
    EXPECT_TRUE(ForwardedCallItem("7", "", "", {transferred}) == ForwardedCallItem("7", "", "", {deflected}));
}

TEST(ForwardedCallInfo, DiffersByItsDurationAlone) {
    Info lasting;
    lasting.duration = "00:00:41";

    EXPECT_FALSE(Info() == lasting);
}

TEST(ForwardedCallItem, HoldsItsListAndNothingElse) {
    const ForwardedCallItem item;

    EXPECT_EQ(reinterpret_cast<const char*>(&item.getForwardedCallInfoList()),
              reinterpret_cast<const char*>(&item) + sizeof(CallItemWithPicture));
    EXPECT_EQ(sizeof(ForwardedCallItem), sizeof(ItemLayout));
}

}  // namespace
