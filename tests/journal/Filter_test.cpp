#include "Filter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "EntryIndex.h"
#include "ForwardingStore.h"
#include "RunCommand.h"
#include "ValueError.h"

using namespace calljournal;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Entries of three kinds, one for each letter.
class FilteredEntries : public ::testing::Test {
protected:
    FilteredEntries() {
        store_->setSetting(regionSetting, "GB");
        journal_.record<MissedCallItem>({call<MissedCallItem>("a", "020 7946 0123", "2024-05-01 10:00:00"),
                                         call<MissedCallItem>("d", "4", "2024-05-04 23:59:59")});
        journal_.record<DialledCallItem>({call<DialledCallItem>("b", "2", "2024-05-02 10:00:00")});
        StoredCallBack callBack;
        callBack.setFirstname("C");
        callBack.setSurname("c");
        callBack.setNumber("+44 20 79460123");
        callBack.setTimeDate("2024-05-03 00:00:00");
        journal_.record<StoredCallBack>({{callBack}});
    }

    template <class Item>
    static NewCall<Item> call(const std::string& surname, const std::string& number, const std::string& time) {
        NewCall<Item> one;
        one.party.setSurname(surname);
        one.call.number = number;
        one.call.timeDate = time;
        return one;
    }

    /// The surnames of the wanted entries.
    std::string wanted(Filter filter) {
        filter.completeTimes();
        std::string names;
        forEachWanted(journal_, filter, [&](const AnyEntry& entry) {
            names += std::visit([](const auto& item) { return item.getSurname(); }, entry);
            return names.size() < most_;
        });
        return names;
    }

    const TemporaryFolder folder_;
    const std::unique_ptr<Store> store_ = openStore(folder_.file("journal.db"), indexEntry);
    Journal journal_{*store_};
    std::size_t most_ = 100;  ///< So many are looked at.
};

TEST_F(FilteredEntries, AreAllNewestFirstWithoutAFilter) {
    EXPECT_EQ(wanted({}), "dcba");
}

TEST_F(FilteredEntries, AreOfTheWantedKinds) {
    EXPECT_EQ(wanted({{"missed"}, {}, {}, {}, {}, 0}), "da");
    EXPECT_EQ(wanted({{"callback"}, {}, {}, {}, {}, 0}), "c");
    EXPECT_EQ(wanted({{"callback", "missed"}, {}, {}, {}, {}, 0}), "dca");
    EXPECT_EQ(wanted({{"forwarded"}, {}, {}, {}, {}, 0}), "");
}

TEST_F(FilteredEntries, AreInTheTimeThatADateStandsFor) {
    EXPECT_EQ(wanted({{}, "2024-05-03", {}, {}, {}, 0}), "dc");
    EXPECT_EQ(wanted({{}, "2024-05-03 00:00:01", {}, {}, {}, 0}), "d");
    EXPECT_EQ(wanted({{}, {}, "2024-05-04", {}, {}, 0}), "dcba");
    EXPECT_EQ(wanted({{}, {}, "2024-05-04 23:59:58", {}, {}, 0}), "cba");
    EXPECT_EQ(wanted({{}, "2024-05-02", "2024-05-02", {}, {}, 0}), "b");
}

TEST_F(FilteredEntries, HaveACallOfTheNumberHoweverItIsWritten) {
    EXPECT_EQ(wanted({{}, {}, {}, "00442079460123", {}, 0}), "ca");
    EXPECT_EQ(wanted({{}, {}, {}, "3", {}, 0}), "");
}

TEST_F(FilteredEntries, HaveACallOfATextThatIsNoNumber) {
    journal_.record<ReceivedCallItem>({call<ReceivedCallItem>("e", "*1\n2", "2024-05-05 10:00:00"),
                                       call<ReceivedCallItem>("f", "a\nb", "2024-05-06 10:00:00")});
    EXPECT_EQ(wanted({{}, {}, {}, "a\nb", {}, 0}), "f");
    EXPECT_EQ(wanted({{}, {}, {}, "a b", {}, 0}), "");
    EXPECT_EQ(wanted({{}, {}, {}, "*12", {}, 0}), "e");
}

TEST_F(FilteredEntries, HaveAPartOfTheNameInAnyCase) {
    EXPECT_EQ(wanted({{}, {}, {}, {}, "B", 0}), "b");
    EXPECT_EQ(wanted({{}, {}, {}, {}, "c C", 0}), "c");
}

TEST_F(FilteredEntries, AreTheNewestOnesUpToTheLimit) {
    EXPECT_EQ(wanted({{}, {}, {}, {}, {}, 2}), "dc");
    EXPECT_EQ(wanted({{"missed"}, {}, {}, {}, {}, 1}), "d");
    EXPECT_EQ(wanted({{}, {}, "2024-05-03", {}, {}, 2}), "cb");
}

TEST_F(FilteredEntries, AreLookedAtUntilEnoughWereSeen) {
    most_ = 3;
    EXPECT_EQ(wanted({}), "dcb");
}

TEST_F(FilteredEntries, AreNoneOfAKindThatThereIsNot) {
    EXPECT_EQ(wanted({{"parked"}, {}, {}, {}, {}, 0}), "");
}

TEST_F(FilteredEntries, HaveANameInTheCaseOfAnyScript) {
    journal_.record<ReceivedCallItem>({call<ReceivedCallItem>("Мюллер  Äß", "5", "2024-05-05 10:00:00")});
    EXPECT_EQ(wanted({{}, {}, {}, {}, "мЮЛ", 0}), "Мюллер  Äß");
    EXPECT_EQ(wanted({{}, {}, {}, {}, "р ÄSS", 0}), "Мюллер  Äß");
}

/// A store whose index is wrong: it finds every entry.
class WrongIndex : public ForwardingStore {
public:
    using ForwardingStore::ForwardingStore;

    std::vector<FoundEntry> find(const EntryQuery& query) override {
        EntryQuery all;
        all.schemas = query.schemas;
        all.after = query.after;
        all.limit = query.limit;
        return ForwardingStore::find(all);
    }
};

TEST_F(FilteredEntries, AreCheckedAgainstTheirBodies) {
    WrongIndex store(*store_);
    Journal journal(store);
    const auto count = [&](const Filter& filter) {
        int wanted = 0;
        forEachWanted(journal, filter, [&](const AnyEntry&) { return ++wanted > 0; });
        return wanted;
    };
    EXPECT_EQ(count({{}, {}, {}, "00442079460123", {}, 0}), 2);
    EXPECT_EQ(count({{}, {}, {}, {}, "b", 0}), 1);
    EXPECT_EQ(count({{}, "2024-05-03", {}, {}, {}, 0}), 2);
    EXPECT_EQ(count({{}, {}, {}, "00442079460123", {}, 1}), 1);
    journal.record<MissedCallItem>({call<MissedCallItem>("e", "5", "2024-05-05 10:00:00")});
    EXPECT_EQ(count({{"missed"}, {}, {}, {}, {}, 0}), 3);
}

TEST(Filter, RefusesWhatIsNoTime) {
    Filter filter;
    filter.until = "yesterday";
    EXPECT_THROW(filter.completeTimes(), ValueError);
}

}  // namespace
