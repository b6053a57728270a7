#include "CallBackItem.h"

#include <cstddef>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "CallItemWithPicture.h"
#include "VirtualTable.h"

namespace {

struct CallBackItemLayout : CallItem {
    std::string number;
    int numberType;
    std::string timeDate;
    int enumerations[2];
    std::string deviceId;
};

CallBackItem filledItem() {
    return CallBackItem("7", "Smith", "Ann", "0301234", static_cast<NumberType::NT>(4), "2024-05-01 10:15:00",
                        static_cast<CallBackItem::CallBackType>(2), static_cast<CallBackItem::CallBackState>(1),
                        "phone 5");
}

/// Changes of one own member each.
const std::vector<std::function<void(CallBackItem&)>>& changes() {
    static const std::vector<std::function<void(CallBackItem&)>> all = {
        [](CallBackItem& item) { item.setNumber("1"); },
        [](CallBackItem& item) { item.setNumberType(static_cast<NumberType::NT>(2)); },
        [](CallBackItem& item) { item.setTimeDate("now"); },
        [](CallBackItem& item) { item.setCallBackType(static_cast<CallBackItem::CallBackType>(1)); },
        [](CallBackItem& item) { item.setCallBackState(static_cast<CallBackItem::CallBackState>(2)); },
        [](CallBackItem& item) { item.setDeviceId("phone 6"); }};
    return all;
}

void expectOwnDefaults(const CallBackItem& item) {
    EXPECT_EQ(item.getNumber(), "");
    EXPECT_EQ(static_cast<int>(item.getNumberType()), 0);
    EXPECT_EQ(item.getTimeDate(), "");
    EXPECT_EQ(static_cast<int>(item.getCallBackType()), 0);
    EXPECT_EQ(static_cast<int>(item.getCallBackState()), 0);
    EXPECT_EQ(item.getDeviceId(), "");
}

TEST(CallBackItem, StartsWithEmptyTextsAndZeros) {
    const CallBackItem item;

    EXPECT_EQ(item.getEntryId() + item.getSurname() + item.getFirstname(), "");
    expectOwnDefaults(item);
}

TEST(CallBackItem, GivesBackTheNineValuesItIsBuiltFrom) {
    const CallBackItem item = filledItem();

    EXPECT_EQ(item.getEntryId(), "7");
    EXPECT_EQ(item.getSurname(), "Smith");
    EXPECT_EQ(item.getFirstname(), "Ann");
    EXPECT_EQ(item.getNumber(), "0301234");
    EXPECT_EQ(static_cast<int>(item.getNumberType()), 4);
    EXPECT_EQ(item.getTimeDate(), "2024-05-01 10:15:00");
    EXPECT_EQ(static_cast<int>(item.getCallBackType()), 2);
    EXPECT_EQ(static_cast<int>(item.getCallBackState()), 1);
    EXPECT_EQ(item.getDeviceId(), "phone 5");
}

TEST(CallBackItem, GivesBackWhatItIsGiven) {
    CallBackItem item;
    for (const auto& change : changes()) {
        change(item);
    }

    EXPECT_EQ(item.getNumber(), "1");
    EXPECT_EQ(static_cast<int>(item.getNumberType()), 2);
    EXPECT_EQ(item.getTimeDate(), "now");
    EXPECT_EQ(static_cast<int>(item.getCallBackType()), 1);
    EXPECT_EQ(static_cast<int>(item.getCallBackState()), 2);
    EXPECT_EQ(item.getDeviceId(), "phone 6");
}

TEST(CallBackItem, CountsItsTypesAndStatesFromNone) {
    EXPECT_EQ(static_cast<int>(CallBackItem::NOTYPE), 0);
    EXPECT_EQ(static_cast<int>(CallBackItem::NOREPLY), 1);
    EXPECT_EQ(static_cast<int>(CallBackItem::BUSY), 2);
    EXPECT_EQ(static_cast<int>(CallBackItem::NOSTATE), 0);
    EXPECT_EQ(static_cast<int>(CallBackItem::ACTIVE), 1);
    EXPECT_EQ(static_cast<int>(CallBackItem::SUSPENDED), 2);
}

TEST(CallBackItem, KeepsEntryIdAndNamesWhenReset) {
    CallBackItem item = filledItem();

    item.reset();

    EXPECT_EQ(item.getEntryId(), "7");
    EXPECT_EQ(item.getSurname(), "Smith");
    EXPECT_EQ(item.getFirstname(), "Ann");
    expectOwnDefaults(item);
}

TEST(CallBackItem, IsResetThroughItsBase) {
    CallBackItem item = filledItem();
    CallItem& base = item;

    base.reset();

    expectOwnDefaults(item);
    EXPECT_EQ(item.getSurname(), "Smith");
}

TEST(CallBackItem, DiffersByEachOfItsOwnMembers) {
    EXPECT_TRUE(filledItem() == filledItem());
    for (const auto& change : changes()) {
        CallBackItem changed = filledItem();
        change(changed);
        EXPECT_FALSE(changed == filledItem());
        EXPECT_FALSE(filledItem() == changed);
    }
}

TEST(CallBackItem, ComparesTextsByteForByte) {
    for (const auto setter : {&CallBackItem::setNumber, &CallBackItem::setTimeDate, &CallBackItem::setDeviceId}) {
        CallBackItem item;
        (item.*setter)("Text");
        for (const std::string& other : {std::string("text"), std::string("Text "), std::string("Text\0", 5)}) {
            CallBackItem changed;
            (changed.*setter)(other);
            EXPECT_FALSE(item == changed) << other;
        }
    }
}

TEST(CallBackItem, EqualsARequestOfAnotherName) {
    CallBackItem other = filledItem();
    other.setSurname("Jones");
    other.setFirstname("Bob");
    other.setEntryId("8");
    const CallBackItem item = filledItem();
    const CallItem& base = item;

    EXPECT_TRUE(item == other);
    EXPECT_FALSE(base == other);
}

TEST(CallBackItem, EqualsAsACallItemWhateverItsOwnMembers) {
    const CallBackItem item = filledItem();
    const CallItem& base = item;

    EXPECT_TRUE(base == CallItem("7", "Smith", "Ann"));
}

TEST(CallBackItem, HasNoUniqueIdNorPicture) {
    EXPECT_TRUE((std::is_base_of<CallItem, CallBackItem>::value));
    EXPECT_FALSE((std::is_base_of<CallItemWithPicture, CallBackItem>::value));
}

/// Where the object changes when `change` is done to it.
std::size_t offsetOfChange(void (*change)(CallBackItem&)) {
    CallBackItem item;
    const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(&item);
    const std::vector<unsigned char> before(bytes, bytes + sizeof item);
    change(item);
    std::size_t offset = 0;
    while (offset < sizeof item && bytes[offset] == before[offset]) {
        ++offset;
    }
    return offset;
}

TEST(CallBackItem, HoldsItsMembersInTheirFixedOrderAndNothingElse) {
    const CallBackItem item;
    const char* const start = reinterpret_cast<const char*>(&item);
    const auto offsetOf = [start](const std::string& text) {
        return static_cast<std::size_t>(reinterpret_cast<const char*>(&text) - start);
    };
    // All four bytes of a value change, so that the first one is found on any machine.
    const std::size_t offsets[] = {
        offsetOf(item.getNumber()),
        offsetOfChange([](CallBackItem& changed) { changed.setNumberType(static_cast<NumberType::NT>(0x01010101)); }),
        offsetOf(item.getTimeDate()),
        offsetOfChange([](CallBackItem& changed) {
            changed.setCallBackType(static_cast<CallBackItem::CallBackType>(0x01010101));
        }),
        offsetOfChange([](CallBackItem& changed) {
            changed.setCallBackState(static_cast<CallBackItem::CallBackState>(0x01010101));
        }),
        offsetOf(item.getDeviceId())};

    EXPECT_EQ(offsets[0], sizeof(CallItem));
    for (std::size_t index = 1; index < sizeof offsets / sizeof offsets[0]; ++index) {
        EXPECT_LT(offsets[index - 1], offsets[index]) << index;
    }
    EXPECT_EQ(sizeof(CallBackItem), sizeof(CallBackItemLayout));
}

class WithOwnComparison : public CallBackItem {
public:
    using CallBackItem::operator==;
    bool operator==(const CallBackItem&) const override { return false; }
};

TEST(CallBackItem, KeepsTheSlotsOfCallItemAndAddsItsOwnComparison) {
    const CallItem plain;
    const CallBackItem item;
    const WithOwnComparison other;

    EXPECT_EQ((slotOfEquality<CallBackItem, CallItem>()), 2u);
    EXPECT_EQ(slotOf(&CallBackItem::reset), 3u);
    EXPECT_EQ((slotOfEquality<CallBackItem, CallBackItem>()), 4u);
    EXPECT_EQ(changedSlots(&plain, &item, 4), (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_EQ(changedSlots(&item, &other, 5), (std::vector<std::size_t>{0, 1, 4}));
}

TEST(CallBackItem, GivesReferencesToItsTexts) {
    const CallBackItem item;

    EXPECT_TRUE((std::is_same<decltype(item.getNumber()), const std::string&>::value));
    EXPECT_TRUE((std::is_same<decltype(item.getTimeDate()), const std::string&>::value));
    EXPECT_TRUE((std::is_same<decltype(item.getDeviceId()), const std::string&>::value));
}

TEST(CallBackItem, IsCopiedDeeply) {
    CallBackItem item = filledItem();
    const CallBackItem copy(item);
    CallBackItem assigned;
    assigned = item;

    item.reset();

    EXPECT_TRUE(copy == filledItem());
    EXPECT_TRUE(assigned == filledItem());
    EXPECT_EQ(assigned.getSurname(), "Smith");
}

}  // namespace
