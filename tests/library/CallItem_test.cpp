#include "CallItem.h"

#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "VirtualTable.h"

namespace {

struct CallItemLayout {
    virtual ~CallItemLayout() {}
    std::string texts[3];
};

TEST(CallItem, StartsWithEmptyTexts) {
    const CallItem item;

    EXPECT_EQ(item.getEntryId(), "");
    EXPECT_EQ(item.getSurname(), "");
    EXPECT_EQ(item.getFirstname(), "");
}

TEST(CallItem, KeepsTheTextsItIsBuiltFrom) {
    const CallItem item("7", "Smith", "Ann");

    EXPECT_EQ(item.getEntryId(), "7");
    EXPECT_EQ(item.getSurname(), "Smith");
    EXPECT_EQ(item.getFirstname(), "Ann");
}

TEST(CallItem, KeepsTheTextsItIsGivenByteForByte) {
    CallItem item;
    const std::string text(" a\0<\xC3\xBC ", 7);

    item.setEntryId(text);
    item.setSurname(text + "s");
    item.setFirstname(text + "f");

    EXPECT_EQ(item.getEntryId(), text);
    EXPECT_EQ(item.getSurname(), text + "s");
    EXPECT_EQ(item.getFirstname(), text + "f");
}

TEST(CallItem, StoresCopiesOfTheTextsItIsGiven) {
    std::string text = "before";
    CallItem item;
    item.setSurname(text);

    text = "after";

    EXPECT_EQ(item.getSurname(), "before");
}

TEST(CallItem, GivesReferencesToItsTextsNotCopies) {
    CallItem item("7", "Smith", "Ann");
    const std::string& surname = item.getSurname();

    item.setSurname("Jones");

    EXPECT_EQ(surname, "Jones");
    EXPECT_TRUE((std::is_same<decltype(item.getEntryId()), const std::string&>::value));
    EXPECT_TRUE((std::is_same<decltype(item.getSurname()), const std::string&>::value));
    EXPECT_TRUE((std::is_same<decltype(item.getFirstname()), const std::string&>::value));
}

TEST(CallItem, EqualsAnItemWithTheSameThreeTexts) {
    EXPECT_TRUE(CallItem() == CallItem());
    EXPECT_TRUE(CallItem("7", "Smith", "Ann") == CallItem("7", "Smith", "Ann"));
}

TEST(CallItem, DiffersWhenAnyTextDiffers) {
    const CallItem item("7", "Smith", "Ann");

    EXPECT_FALSE(item == CallItem("8", "Smith", "Ann"));
    EXPECT_FALSE(item == CallItem("7", "smith", "Ann"));
    EXPECT_FALSE(item == CallItem("7", "Smith", "Ann "));
    EXPECT_FALSE(item == CallItem("Smith", "7", "Ann"));
    EXPECT_FALSE(item == CallItem("7", std::string("Smith\0", 6), "Ann"));
}

TEST(CallItem, HasEmptyTextsOnceReset) {
    CallItem item("7", "Smith", "Ann");

    item.reset();

    EXPECT_TRUE(item == CallItem());
    EXPECT_EQ(item.getEntryId() + item.getSurname() + item.getFirstname(), "");
}

TEST(CallItem, IsCopiedDeeply) {
    CallItem item("7", "Smith", "Ann");
    const CallItem copy(item);
    CallItem assigned;
    assigned = item;

    item.reset();

    EXPECT_TRUE(copy == CallItem("7", "Smith", "Ann"));
    EXPECT_TRUE(assigned == copy);
}

TEST(CallItem, HoldsItsTextsInTheirFixedOrderAndNothingElse) {
    const CallItem item;

    EXPECT_EQ(static_cast<const void*>(&item.getEntryId()), reinterpret_cast<const char*>(&item) + sizeof(void*));
    EXPECT_EQ(&item.getSurname(), &item.getEntryId() + 1);
    EXPECT_EQ(&item.getFirstname(), &item.getSurname() + 1);
    EXPECT_EQ(sizeof(CallItem), sizeof(CallItemLayout));
}

class WithOwnDestructor : public CallItem {
public:
    explicit WithOwnDestructor(bool& gone) : gone_(gone) {}
    ~WithOwnDestructor() override { gone_ = true; }

private:
    bool& gone_;
};

class WithOwnComparison : public CallItem {
public:
    bool operator==(const CallItem&) const override { return false; }
};

class WithOwnReset : public CallItem {
public:
    void reset() override {}
};

TEST(CallItem, HasDestructorComparisonAndResetInItsSlotsInThisOrder) {
    const CallItem item;
    const WithOwnComparison comparison;
    const WithOwnReset reset;

    EXPECT_EQ((slotOfEquality<CallItem, CallItem>()), 2u);
    EXPECT_EQ(slotOf(&CallItem::reset), 3u);
    EXPECT_EQ(changedSlots(&item, &comparison, 4), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(changedSlots(&item, &reset, 4), (std::vector<std::size_t>{0, 1, 3}));
}

TEST(CallItem, IsDestroyedThroughAPointerToIt) {
    bool gone = false;
    const CallItem* item = new WithOwnDestructor(gone);

    delete item;

    EXPECT_TRUE(gone);
}

}  // namespace
