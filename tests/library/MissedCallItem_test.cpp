#include "MissedCallItem.h"

#include <gtest/gtest.h>
#include <list>
#include <string>
#include <type_traits>

#include "Duration.h"

namespace {

using Info = MissedCallItem::MissedCallInfo;

/// What a missed call adds to its parts.
struct InfoLayout : CallInfo, TimeFormat, Redirecting {
    bool flag;
    std::string texts[2];
};

struct ItemLayout : CallItemWithPicture {
    std::list<Info> list;
    bool flag;
};

TEST(MissedCallInfo, HasItsPartsAndMembersInTheirFixedOrder) {
    const Info info;
    const void* const places[] = {static_cast<const CallInfo*>(&info),
                                  static_cast<const TimeFormat*>(&info),
                                  static_cast<const Redirecting*>(&info),
                                  &info.completedElsewhere,
                                  &info.groupName,
                                  &info.groupNumber};

    EXPECT_EQ(places[0], static_cast<const void*>(&info));
    for (std::size_t index = 1; index < sizeof places / sizeof places[0]; ++index) {
        EXPECT_LT(places[index - 1], places[index]) << index;
    }
    EXPECT_EQ(sizeof(Info), sizeof(InfoLayout));
}

TEST(MissedCallInfo, HasNoDuration) {
    EXPECT_FALSE((std::is_base_of<Duration, Info>::value));
}

TEST(MissedCallInfo, EqualsOneThatDiffersOnlyInTheDeflectingParty) {
    Info first;
    Info second;
    second.deflectNumber = "0301234";
    second.deflectName = "Smith";
    second.deflectNumberType = static_cast<NumberType::NT>(1);
    second.deflectNumberPresentation = static_cast<CallLogEntryEvent::_PresentationValue>(1);
    second.deflectNamePresentation = static_cast<CallLogEntryEvent::_PresentationValue>(2);
    second.transferType = static_cast<TransferNumber::TransferNumberType>(2);

    EXPECT_TRUE(first == second);
}

TEST(MissedCallInfo, DiffersFromOneThatWasCompletedElsewhereOrHasAnotherGroup) {
    Info elsewhere;
    elsewhere.completedElsewhere = true;
    Info groupName;
    groupName.groupName = "Sales";
    Info groupNumber;
    groupNumber.groupNumber = "12";

    EXPECT_FALSE(Info() == elsewhere);
    EXPECT_FALSE(Info() == groupName);
    EXPECT_FALSE(Info() == groupNumber);
    groupNumber.groupName = "12";
    groupNumber.groupNumber.clear();
    groupName.groupName = "12";
    EXPECT_TRUE(groupName == groupNumber);
}

TEST(MissedCallItem, TakesItsListByReferenceWithoutChangingIt) {
    std::list<Info> infos(3);
    infos.front().number = "1";

    const MissedCallItem item("7", "Smith", "Ann", infos, true);

    EXPECT_EQ(infos.size(), 3u);
    EXPECT_EQ(infos.front().number, "1");
    EXPECT_EQ(item.getMissedCallInfoList().size(), 3u);
    EXPECT_NE(&item.getMissedCallInfoList(), &infos);
}

TEST(MissedCallItem, IsViewedAsItIsBuilt) {
    std::list<Info> infos;

    EXPECT_TRUE(MissedCallItem("7", "Smith", "Ann", infos, true).getViewed());
    EXPECT_FALSE(MissedCallItem("7", "Smith", "Ann", infos, false).getViewed());
    EXPECT_FALSE(MissedCallItem().getViewed());
}

TEST(MissedCallItem, IsNotViewedOnceReset) {
    MissedCallItem item;
    item.setViewed(true);
    EXPECT_TRUE(item.getViewed());

    item.reset();

    EXPECT_FALSE(item.getViewed());
    EXPECT_TRUE(item == MissedCallItem());
}

TEST(MissedCallItem, DiffersFromOneThatWasViewed) {
    MissedCallItem viewed;
    viewed.setViewed(true);

    EXPECT_FALSE(viewed == MissedCallItem());
    viewed.setViewed(false);
    EXPECT_TRUE(viewed == MissedCallItem());
}

TEST(MissedCallItem, HoldsItsListAndThenTheViewedFlagAndNothingElse) {
    MissedCallItem item;
    const std::size_t listOffset = static_cast<std::size_t>(
        reinterpret_cast<const char*>(&item.getMissedCallInfoList()) - reinterpret_cast<const char*>(&item));
    const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(&item);

    EXPECT_EQ(listOffset, sizeof(CallItemWithPicture));
    EXPECT_EQ(sizeof(MissedCallItem), sizeof(ItemLayout));
    EXPECT_EQ(bytes[listOffset + sizeof(std::list<Info>)], 0);
    item.setViewed(true);
    EXPECT_EQ(bytes[listOffset + sizeof(std::list<Info>)], 1);
}

}  // namespace
