#include "DialledCallItem.h"

#include <climits>
#include <gtest/gtest.h>
#include <list>
#include <string>
#include <type_traits>

namespace {

using Info = DialledCallItem::DialledCallInfo;

struct InfoLayout : CallInfo, Duration, TimeFormat, Redirecting {
    std::string text;
    bool flags[2];
};

struct ItemLayout : CallItemWithPicture {
    std::string text;
    std::list<Info> list;
};

Info callWithNumber(const std::string& number) {
    Info info;
    info.number = number;
    return info;
}

TEST(DialledCallInfo, HasItsPartsAndMembersInTheirFixedOrder) {
    const Info info;
    const void* const places[] = {static_cast<const CallInfo*>(&info),
                                  static_cast<const Duration*>(&info),
                                  static_cast<const TimeFormat*>(&info),
                                  static_cast<const Redirecting*>(&info),
                                  &info.resolvedNumber,
                                  &info.connectedNumberPriority,
                                  &info.isBluetoothCall};

    EXPECT_EQ(places[0], static_cast<const void*>(&info));
    for (std::size_t index = 1; index < sizeof places / sizeof places[0]; ++index) {
        EXPECT_LT(places[index - 1], places[index]) << index;
    }
    EXPECT_EQ(sizeof(Info), sizeof(InfoLayout));
}

TEST(DialledCallInfo, DiffersByBluetoothButNotByTheDeflectingParty) {
    Info bluetooth;
    bluetooth.isBluetoothCall = true;
    Info deflected;
    deflected.deflectName = "Smith";

    EXPECT_FALSE(DialledCallItem("7", "", "", {Info()}) == DialledCallItem("7", "", "", {bluetooth}));
    EXPECT_TRUE(DialledCallItem("7", "", "", {Info()}) == DialledCallItem("7", "", "", {deflected}));
}

TEST(DialledCallItem, KeepsTheGroupByKeyEmptyWhenBuilt) {
    EXPECT_EQ(DialledCallItem("7", "Smith", "Ann", {Info()}).getJournalSeviceGroupBy(), "");
    EXPECT_EQ(DialledCallItem().getJournalSeviceGroupBy(), "");
}

TEST(DialledCallItem, DiffersByTheGroupByKeyAlone) {
    DialledCallItem item;
    item.setJournalSeviceGroupBy("key");

    EXPECT_FALSE(item == DialledCallItem());
    EXPECT_EQ(item.getJournalSeviceGroupBy(), "key");
    item.reset();
    EXPECT_EQ(item.getJournalSeviceGroupBy(), "");
    EXPECT_TRUE(item == DialledCallItem());
}

TEST(DialledCallItem, GivesTheNewestCallForIndexZeroAndBelow) {
    const DialledCallItem item("", "", "", {callWithNumber("newest"), callWithNumber("older")});

    EXPECT_EQ(item.getDialledCallInfo(0).number, "newest");
    EXPECT_EQ(item.getDialledCallInfo(-1).number, "newest");
    EXPECT_EQ(item.getDialledCallInfo(-5).number, "newest");
    EXPECT_EQ(item.getDialledCallInfo(INT_MIN).number, "newest");
}

TEST(DialledCallItem, CountsCallsFromTheNewest) {
    DialledCallItem item;
    for (int number = 1; number <= 11; ++number) {
        item.addCallInfoToList(callWithNumber(std::to_string(number)));
    }

    for (int index = 0; index < 10; ++index) {
        EXPECT_EQ(item.getDialledCallInfo(index).number, std::to_string(11 - index));
    }
    EXPECT_EQ(item.getDialledCallInfo(9).number, "2");
}

TEST(DialledCallItem, ReachesEveryCallOfALongerList) {
    std::list<Info> infos;
    for (int number = 0; number < 12; ++number) {
        infos.push_back(callWithNumber(std::to_string(number)));
    }
    const DialledCallItem item("", "", "", infos);

    EXPECT_EQ(item.getDialledCallInfo(11).number, "11");
    EXPECT_EQ(item.getDialledCallInfo(12).number, "");
}

TEST(DialledCallItem, GivesADefaultCallBeyondTheListAndOnAnEmptyOne) {
    const DialledCallItem item("", "", "", {callWithNumber("1")});

    EXPECT_TRUE(item.getDialledCallInfo(1) == Info());
    EXPECT_TRUE(item.getDialledCallInfo(INT_MAX) == Info());
    EXPECT_TRUE(DialledCallItem().getDialledCallInfo(0) == Info());
    EXPECT_TRUE(DialledCallItem().getDialledCallInfo(-1) == Info());
}

TEST(DialledCallItem, GivesACopyOfTheCall) {
    DialledCallItem item("", "", "", {callWithNumber("1")});

    Info copy = item.getDialledCallInfo(0);
    copy.number = "changed";

    EXPECT_EQ(item.getDialledCallInfo(0).number, "1");
    EXPECT_TRUE((std::is_same<decltype(item.getDialledCallInfo(0)), Info>::value));
}

TEST(DialledCallItem, HoldsTheGroupByKeyThenItsListAndNothingElse) {
    const DialledCallItem item;
    const char* const start = reinterpret_cast<const char*>(&item);

    EXPECT_EQ(reinterpret_cast<const char*>(&item.getJournalSeviceGroupBy()), start + sizeof(CallItemWithPicture));
    EXPECT_EQ(reinterpret_cast<const char*>(&item.getDialledCallInfoList()),
              start + sizeof(CallItemWithPicture) + sizeof(std::string));
    EXPECT_EQ(sizeof(DialledCallItem), sizeof(ItemLayout));
}

}  // namespace
