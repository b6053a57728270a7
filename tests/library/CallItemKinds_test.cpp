#include <gtest/gtest.h>
#include <list>
#include <string>
#include <type_traits>
#include <vector>

#include "FakePlatform.h"
#include "Kinds.h"
#include "VirtualTable.h"

/// What the entries of all four kinds have in common: the list of at most ten calls above all.
namespace {

using Texts = std::vector<std::string>;

template <class Kind>
class EntryOfKind : public ::testing::Test {
protected:
    EntryOfKind() { fakePlatform().reset(); }

    const std::vector<Member<typename Kind::Item>> members = Kind::itemMembers();
};

TYPED_TEST_SUITE(EntryOfKind, AllKinds, KindNames);

TYPED_TEST(EntryOfKind, StartsEmpty) {
    const typename TypeParam::Item item;

    for (const auto& row : this->members) {
        EXPECT_EQ(row.get(item), row.form == rules::Form::text ? "" : "0") << row.name;
    }
    EXPECT_TRUE(TypeParam::calls(item).empty());
}

TYPED_TEST(EntryOfKind, KeepsEachOfItsMembersApart) {
    const auto item = filled(this->members);

    for (const auto& row : this->members) {
        EXPECT_EQ(row.get(item), sample(row)) << row.name;
    }
}

TYPED_TEST(EntryOfKind, IsBuiltFromThreeTextsAndAListOfCalls) {
    const auto item = TypeParam::make("7", "Smith", "Ann", callsWithNumbers<TypeParam>(1, 3));

    EXPECT_EQ(item.getEntryId(), "7");
    EXPECT_EQ(item.getSurname(), "Smith");
    EXPECT_EQ(item.getFirstname(), "Ann");
    EXPECT_EQ(item.getUniqueId(), "");
    EXPECT_EQ(item.getPictureClip(), "");
    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"1", "2", "3"}));
}

TYPED_TEST(EntryOfKind, IsBuiltFromAnyNumberOfCalls) {
    const auto item = TypeParam::make("", "", "", callsWithNumbers<TypeParam>(1, 12));

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}));
}

TYPED_TEST(EntryOfKind, TakesOverAnyNumberOfCallsInPlaceOfItsOwn) {
    auto item = TypeParam::make("", "", "", callsWithNumbers<TypeParam>(50, 60));

    TypeParam::setCalls(item, callsWithNumbers<TypeParam>(1, 12));
    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}));

    TypeParam::setCalls(item, callsWithNumbers<TypeParam>(5, 6));
    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"5", "6"}));

    TypeParam::setCalls(item, {});
    EXPECT_TRUE(TypeParam::calls(item).empty());
}

TYPED_TEST(EntryOfKind, TakesWholeCallsOver) {
    typename TypeParam::Item item;

    TypeParam::setCalls(item, {filledCall<TypeParam>()});
    item.addCallInfoToList(filledCall<TypeParam>());
    item.appendCallInfoToList(filledCall<TypeParam>());

    for (const auto& call : TypeParam::calls(item)) {
        EXPECT_EQ(describeCall<TypeParam>(call), describeCall<TypeParam>(filledCall<TypeParam>()));
    }
    EXPECT_EQ(TypeParam::calls(item).size(), 3u);
}

TYPED_TEST(EntryOfKind, OwnsCopiesOfTheCallsItIsGiven) {
    auto infos = callsWithNumbers<TypeParam>(1, 2);
    typename TypeParam::Item item;
    TypeParam::setCalls(item, infos);

    infos.front().number = "changed";

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"1", "2"}));
}

TYPED_TEST(EntryOfKind, StaysAsItIsWhenGivenItsOwnList) {
    auto item = TypeParam::make("", "", "", callsWithNumbers<TypeParam>(1, 12));
    const auto* const first = &TypeParam::calls(item).front();

    TypeParam::setCalls(item, TypeParam::calls(item));

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}));
    EXPECT_EQ(&TypeParam::calls(item).front(), first);
}

TYPED_TEST(EntryOfKind, PutsANewCallInFront) {
    typename TypeParam::Item item;

    item.addCallInfoToList(callWithNumber<TypeParam>("1"));
    item.addCallInfoToList(callWithNumber<TypeParam>("2"));

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"2", "1"}));
}

TYPED_TEST(EntryOfKind, KeepsTheTenNewestOfElevenAddedCalls) {
    typename TypeParam::Item item;

    for (int number = 1; number <= 10; ++number) {
        item.addCallInfoToList(callWithNumber<TypeParam>(std::to_string(number)));
    }
    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"10", "9", "8", "7", "6", "5", "4", "3", "2", "1"}));

    item.addCallInfoToList(callWithNumber<TypeParam>("11"));
    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"11", "10", "9", "8", "7", "6", "5", "4", "3", "2"}));
}

TYPED_TEST(EntryOfKind, AppendsACallAtTheBack) {
    typename TypeParam::Item item;

    item.appendCallInfoToList(callWithNumber<TypeParam>("1"));
    item.appendCallInfoToList(callWithNumber<TypeParam>("2"));

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"1", "2"}));
}

TYPED_TEST(EntryOfKind, KeepsTheFirstTenOfElevenAppendedCalls) {
    typename TypeParam::Item item;

    for (int number = 1; number <= 11; ++number) {
        item.appendCallInfoToList(callWithNumber<TypeParam>(std::to_string(number)));
    }

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
}

TYPED_TEST(EntryOfKind, DropsOneCallOfALongerListForEachCallAdded) {
    auto item = TypeParam::make("", "", "", callsWithNumbers<TypeParam>(1, 12));

    item.addCallInfoToList(callWithNumber<TypeParam>("new"));

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"new", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"}));
}

TYPED_TEST(EntryOfKind, AppendsNothingToALongerList) {
    auto item = TypeParam::make("", "", "", callsWithNumbers<TypeParam>(1, 12));

    item.appendCallInfoToList(callWithNumber<TypeParam>("new"));

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}));
}

TYPED_TEST(EntryOfKind, KeepsEqualCallsAndDoesNotSort) {
    typename TypeParam::Item item;
    auto call = callWithNumber<TypeParam>("1");
    call.timeDate = "2024-05-01 10:15:00";
    auto older = callWithNumber<TypeParam>("2");
    older.timeDate = "2020-01-01 00:00:00";

    item.addCallInfoToList(call);
    item.addCallInfoToList(call);
    item.addCallInfoToList(older);
    item.appendCallInfoToList(call);

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"2", "1", "1", "1"}));
    EXPECT_TRUE(TypeParam::calls(item).back() == call);
}

TYPED_TEST(EntryOfKind, TakesACallFromItsOwnList) {
    typename TypeParam::Item item;
    TypeParam::setCalls(item, callsWithNumbers<TypeParam>(1, 10));

    item.addCallInfoToList(TypeParam::calls(item).back());

    EXPECT_EQ(numbers<TypeParam>(item), (Texts{"10", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));
}

TYPED_TEST(EntryOfKind, GivesAReferenceToItsListNotACopy) {
    typename TypeParam::Item item;
    const std::list<typename TypeParam::Info>& calls = TypeParam::calls(item);

    item.addCallInfoToList(callWithNumber<TypeParam>("1"));

    EXPECT_EQ(calls.size(), 1u);
}

TYPED_TEST(EntryOfKind, IsCopiedDeeply) {
    auto item = filledItem<TypeParam>();
    const auto before = describeEntry<TypeParam>(item);

    const typename TypeParam::Item copy(item);
    typename TypeParam::Item assigned = TypeParam::make("", "", "", callsWithNumbers<TypeParam>(1, 3));
    assigned = item;
    item.reset();

    EXPECT_EQ(describeEntry<TypeParam>(copy), before);
    EXPECT_EQ(describeEntry<TypeParam>(assigned), before);
    EXPECT_NE(&TypeParam::calls(copy).front(), &TypeParam::calls(assigned).front());
}

TYPED_TEST(EntryOfKind, GoesBackToItsFirstStateWhenReset) {
    auto item = filledItem<TypeParam>();

    item.reset();

    EXPECT_EQ(describeEntry<TypeParam>(item), describeEntry<TypeParam>(typename TypeParam::Item()));
    EXPECT_TRUE(item == typename TypeParam::Item());
}

TYPED_TEST(EntryOfKind, IsResetThroughItsBase) {
    auto item = filledItem<TypeParam>();
    CallItem& base = item;

    base.reset();

    EXPECT_TRUE(item == typename TypeParam::Item());
}

TYPED_TEST(EntryOfKind, EqualsAnEntryWithTheSameMembersAndCalls) {
    EXPECT_TRUE(typename TypeParam::Item() == typename TypeParam::Item());
    EXPECT_TRUE(filledItem<TypeParam>() == filledItem<TypeParam>());
}

TYPED_TEST(EntryOfKind, DiffersByEachOfItsMembers) {
    for (const auto& row : this->members) {
        typename TypeParam::Item changed;
        row.set(changed, sample(row));
        EXPECT_FALSE(changed == typename TypeParam::Item()) << row.name;
        EXPECT_FALSE(typename TypeParam::Item() == changed) << row.name;

        auto changedAgain = filledItem<TypeParam>();
        row.set(changedAgain, otherSample(row));
        EXPECT_FALSE(changedAgain == filledItem<TypeParam>()) << row.name;
    }
}

TYPED_TEST(EntryOfKind, ComparesTextsByteForByte) {
    for (const auto& row : this->members) {
        if (row.form != rules::Form::text) {
            continue;
        }
        typename TypeParam::Item item;
        row.set(item, "Name");
        for (const std::string& other :
             {std::string("name"), std::string("Name "), std::string("Nam"), std::string("Name\0", 5)}) {
            typename TypeParam::Item changed;
            row.set(changed, other);
            EXPECT_FALSE(item == changed) << row.name << " " << other;
        }
    }
}

TYPED_TEST(EntryOfKind, DiffersByTheNumberOfItsCalls) {
    auto item = TypeParam::make("7", "", "", callsWithNumbers<TypeParam>(1, 2));
    auto longer = TypeParam::make("7", "", "", callsWithNumbers<TypeParam>(1, 3));

    EXPECT_FALSE(item == longer);
    EXPECT_FALSE(longer == item);
    EXPECT_FALSE(item == TypeParam::make("7", "", "", {}));
}

TYPED_TEST(EntryOfKind, DiffersByTheOrderOfItsCalls) {
    auto calls = callsWithNumbers<TypeParam>(1, 2);
    const auto item = TypeParam::make("7", "", "", calls);
    calls.reverse();

    EXPECT_FALSE(item == TypeParam::make("7", "", "", calls));
}

TYPED_TEST(EntryOfKind, DiffersByAMemberOfACallExactlyWhenTheCallsDiffer) {
    for (const auto& row : TypeParam::infoMembers()) {
        typename TypeParam::Info changed;
        row.set(changed, sample(row));
        const auto item = TypeParam::make("7", "", "", {typename TypeParam::Info(), typename TypeParam::Info()});
        const auto other = TypeParam::make("7", "", "", {typename TypeParam::Info(), changed});

        EXPECT_EQ(item == other, typename TypeParam::Info() == changed) << row.name;
    }
}

TYPED_TEST(EntryOfKind, ComparesAsItsBasesToo) {
    auto item = filledItem<TypeParam>();
    auto other = filledItem<TypeParam>();
    TypeParam::setCalls(other, {});
    const CallItem& plain = item;
    const CallItemWithPicture& withPicture = item;

    EXPECT_FALSE(item == other);
    EXPECT_TRUE(plain == other);
    EXPECT_TRUE(withPicture == other);
    other.setPictureClip("another");
    EXPECT_TRUE(plain == other);
    EXPECT_FALSE(withPicture == other);
    other.setSurname("another");
    EXPECT_FALSE(plain == other);
}

template <class Item>
class WithOwnPictureComparison : public Item {
public:
    using Item::operator==;
    bool operator==(const CallItemWithPicture&) const override { return answer; }
    bool answer = true;
};

template <class Item>
class WithOwnItemComparison : public Item {
public:
    using Item::operator==;
    bool operator==(const CallItem&) const override { return answer; }
    bool answer = true;
};

template <class Item>
class WithOwnComparison : public Item {
public:
    using Item::operator==;
    bool operator==(const Item&) const override { return false; }
};

template <class Item>
class WithOwnReset : public Item {
public:
    void reset() override {}
};

TYPED_TEST(EntryOfKind, ComparesItsBaseThroughTheVirtualOperators) {
    using Item = typename TypeParam::Item;
    Item other;
    WithOwnPictureComparison<Item> withPicture;
    const Item& asItem = withPicture;
    WithOwnItemComparison<Item> withItem;
    const Item& alsoAsItem = withItem;

    withPicture.answer = false;
    EXPECT_FALSE(asItem == other);
    withPicture.answer = true;
    other.setPictureClip("is not looked at by the override");
    EXPECT_TRUE(asItem == other);

    other = Item();
    withItem.answer = false;
    EXPECT_FALSE(alsoAsItem == other);
    withItem.answer = true;
    other.setSurname("is not looked at by the override");
    EXPECT_TRUE(alsoAsItem == other);
}

TYPED_TEST(EntryOfKind, KeepsTheSlotsOfItsBasesAndAddsItsOwnComparison) {
    using Item = typename TypeParam::Item;
    const CallItemWithPicture base;
    const Item item;
    const WithOwnItemComparison<Item> withItem;
    const WithOwnReset<Item> withReset;
    const WithOwnPictureComparison<Item> withPicture;
    const WithOwnComparison<Item> withComparison;

    EXPECT_EQ((slotOfEquality<Item, CallItem>()), 2u);
    EXPECT_EQ(slotOf(&Item::reset), 3u);
    EXPECT_EQ((slotOfEquality<Item, CallItemWithPicture>()), 4u);
    EXPECT_EQ((slotOfEquality<Item, Item>()), 5u);
    EXPECT_EQ(changedSlots(&base, &item, 5), (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_EQ(changedSlots(&item, &withItem, 6), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(changedSlots(&item, &withReset, 6), (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_EQ(changedSlots(&item, &withPicture, 6), (std::vector<std::size_t>{0, 1, 4}));
    EXPECT_EQ(changedSlots(&item, &withComparison, 6), (std::vector<std::size_t>{0, 1, 5}));
}

TYPED_TEST(EntryOfKind, HasItsListBehindItsBaseAndAVirtualDestructor) {
    const typename TypeParam::Item item;

    EXPECT_GE(reinterpret_cast<const char*>(&TypeParam::calls(item)),
              reinterpret_cast<const char*>(&item) + sizeof(CallItemWithPicture));
    EXPECT_TRUE(std::has_virtual_destructor<typename TypeParam::Item>::value);
}

TYPED_TEST(EntryOfKind, WritesNothingToTheLogOtherThanReplacedUniqueIds) {
    fakePlatform().switchOn("Journal Service", 4);
    auto item = filledItem<TypeParam>();

    item.addCallInfoToList(typename TypeParam::Info());
    item.appendCallInfoToList(typename TypeParam::Info());
    const bool equal = item == filledItem<TypeParam>();
    item.reset();

    EXPECT_FALSE(equal);
    EXPECT_EQ(fakePlatform().logTexts(), Texts{});
}

}  // namespace
