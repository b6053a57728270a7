#include "EntryIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallLogTypes.h"
#include "CarriedText.h"
#include "Kinds.h"

using namespace calljournal;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

template <class Item>
class IndexOfEachLog : public ::testing::Test {
protected:
    /// An entry with calls of these numbers, newest first.
    static Item entry(const std::vector<std::string>& numbers) {
        Item item;
        item.setFirstname("Zoë");
        item.setSurname("O'NEILL");
        int minute = 59;
        for (const std::string& number : numbers) {
            typename format::CallKind<Item>::Call call;
            call.number = number;
            call.timeDate = "2024-05-01 10:" + std::to_string(minute--) + ":00";
            item.appendCallInfoToList(call);
        }
        return item;
    }

    static EntryKeys keysOf(const Item& item, const std::string& region = "GB") {
        const std::string text = "<UniqueId>7</UniqueId>" + KindInterface<Item>::encode(carriedItem(item));
        return indexEntry(format::CallKind<Item>::schema, text, region);
    }
};

TYPED_TEST_SUITE(IndexOfEachLog, CallLogTypes, CallLogTypeNames);

TYPED_TEST(IndexOfEachLog, HasTheTimeOfTheNewestCallAndTheFoldedName) {
    const EntryKeys keys = this->keysOf(this->entry({"1", "2"}));
    EXPECT_EQ(keys.time, "2024-05-01 10:59:00");
    EXPECT_EQ(keys.name, "zoë o'neill");
}

TYPED_TEST(IndexOfEachLog, HasEachNumberOnceByItsKey) {
    EXPECT_THAT(this->keysOf(this->entry({"020 7946 0123", "", "4711", "+44 20 79460123", "A&B<c"})).numbers,
                ElementsAre("+442079460123", "4711", "A&B<c"));
}

TYPED_TEST(IndexOfEachLog, ReadsNumbersForTheStoresRegion) {
    EXPECT_THAT(this->keysOf(this->entry({"030 1234567"}), "DE").numbers, ElementsAre("+49301234567"));
    EXPECT_THAT(this->keysOf(this->entry({"030 1234567"}), "").numbers, ElementsAre("0301234567"));
}

TYPED_TEST(IndexOfEachLog, KeepsANumberInOneLine) {
    EXPECT_THAT(this->keysOf(this->entry({"a\nb\x1b"})).numbers, ElementsAre("a b "));
}

TYPED_TEST(IndexOfEachLog, WaitsToBeSeenOnlyIfItIsMissedAndWasNotViewed) {
    TypeParam item = this->entry({"1"});
    constexpr bool isMissed = std::is_same_v<TypeParam, MissedCallItem>;
    EXPECT_EQ(this->keysOf(item).isSeen, !isMissed);
    if constexpr (isMissed) {
        item.setViewed(true);
        EXPECT_TRUE(this->keysOf(item).isSeen);
    }
}

TYPED_TEST(IndexOfEachLog, SaysThatAnEntryWithoutCallsWasSeen) {
    const EntryKeys keys = this->keysOf(this->entry({}));
    EXPECT_TRUE(keys.isSeen);
    EXPECT_EQ(keys.time, "");
    EXPECT_THAT(keys.numbers, IsEmpty());
}

TYPED_TEST(IndexOfEachLog, TakesAnyText) {
    const std::string_view schema = format::CallKind<TypeParam>::schema;
    const std::string texts[] = {"", "<", "<UniqueId>1</UniqueId><LogList><Item><Number>1",
                                 std::string("\0\xff<Entry></Entry>&#x;", 20)};
    for (const std::string& text : texts) {
        EXPECT_TRUE(indexEntry(schema, text, "DE").isSeen);
    }
}

TEST(EntryIndex, OfACallBackHasItsNumberTimeAndName) {
    StoredCallBack callBack;
    callBack.setSurname("Smith");
    callBack.setNumber("030 1234567");
    callBack.setTimeDate("2024-05-01 10:00:00");
    const EntryKeys keys = indexEntry("CallBacks", KindInterface<StoredCallBack>::encode(callBack), "DE");
    EXPECT_TRUE(keys.isSeen);
    EXPECT_EQ(keys.time, "2024-05-01 10:00:00");
    EXPECT_EQ(keys.name, "smith");
    EXPECT_THAT(keys.numbers, ElementsAre("+49301234567"));
}

TEST(EntryIndex, KnowsNothingOfOtherSchemas) {
    const EntryKeys keys = indexEntry("Conversations", "<CallLogId>1</CallLogId><Surname>A</Surname>", "DE");
    EXPECT_TRUE(keys.isSeen);
    EXPECT_EQ(keys.time + keys.name, "");
    EXPECT_THAT(keys.numbers, IsEmpty());
}

}  // namespace
