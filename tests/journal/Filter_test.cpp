#include "Filter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "NumberMatcher.h"
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
        journal_.setNumberKey(NumberMatcher("GB"));
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
        for (const AnyEntry& entry : wantedEntries(journal_, filter)) {
            names += std::visit([](const auto& item) { return item.getSurname(); }, entry);
        }
        return names;
    }

    const TemporaryFolder folder_;
    const std::unique_ptr<Store> store_ = openStore(folder_.file("journal.db"));
    Journal journal_{*store_};
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

TEST_F(FilteredEntries, HaveAPartOfTheNameInAnyCase) {
    EXPECT_EQ(wanted({{}, {}, {}, {}, "B", 0}), "b");
    EXPECT_EQ(wanted({{}, {}, {}, {}, "c C", 0}), "c");
}

TEST_F(FilteredEntries, AreTheNewestOnesUpToTheLimit) {
    EXPECT_EQ(wanted({{}, {}, {}, {}, {}, 2}), "dc");
    EXPECT_EQ(wanted({{"missed"}, {}, {}, {}, {}, 1}), "d");
    EXPECT_EQ(wanted({{}, {}, "2024-05-03", {}, {}, 2}), "cb");
}

TEST(Filter, RefusesWhatIsNoTime) {
    Filter filter;
    filter.until = "yesterday";
    EXPECT_THROW(filter.completeTimes(), ValueError);
}

}  // namespace
