#include "Changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EntryIndex.h"
#include "RunCommand.h"

using namespace calljournal;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr char added[] = ": 0";
constexpr char changed[] = ": 1";
constexpr char viewed[] = ": 2";
constexpr char deleted[] = ": 3";

class Changes : public ::testing::Test {
protected:
    template <class Item>
    void record(const std::string& number, const std::string& surname) {
        NewCall<Item> one;
        one.party.setSurname(surname);
        one.call.number = number;
        one.call.timeDate = "2024-05-01 10:00:00";
        journal_.record<Item>({one});
    }

    /// "id surname: action" of each change since the last call.
    std::vector<std::string> changes() {
        const JournalChanges since = changesSince(journal_, number_);
        EXPECT_TRUE(since.isWhole);
        number_ = since.number;
        std::vector<std::string> all;
        for (const Change& change : since.entries) {
            all.push_back(std::visit([](const auto& entry) { return entry.getUniqueId() + " " + entry.getSurname(); },
                                     change.entry) +
                          ": " + std::to_string(change.action));
        }
        return all;
    }

    const TemporaryFolder folder_;
    const std::unique_ptr<Store> store_ = openStore(folder_.file("journal.db"), indexEntry);
    Journal journal_{*store_};
    std::uint64_t number_ = changesSince(journal_, 0).number;
};

TEST_F(Changes, AreNoneWhereNothingWasWritten) {
    record<MissedCallItem>("1", "a");
    EXPECT_THAT(changes(), ElementsAre(std::string("1 a") + added));
    EXPECT_THAT(changes(), IsEmpty());
    EXPECT_THAT(changesSince(journal_, 0).entries, IsEmpty());
}

TEST_F(Changes, ComeInTheOrderInWhichTheyWereMade) {
    record<ReceivedCallItem>("1", "a");
    record<ReceivedCallItem>("3", "c");
    changes();
    record<MissedCallItem>("2", "b");
    record<ReceivedCallItem>("3", "C");
    journal_.remove<ReceivedCallItem>("1");
    EXPECT_THAT(changes(),
                ElementsAre(std::string("3 b") + added, std::string("2 C") + changed, std::string("1 a") + deleted));
}

TEST_F(Changes, OfAnEntryThatWasOnlySeenSaySo) {
    record<MissedCallItem>("1", "a");
    changes();
    journal_.markViewed("1");
    EXPECT_THAT(changes(), ElementsAre(std::string("1 a") + viewed));
    record<MissedCallItem>("1", "b");
    journal_.markViewed("1");
    EXPECT_THAT(changes(), ElementsAre(std::string("1 b") + changed));
}

TEST_F(Changes, AreOfCallBacksToo) {
    NewCall<StoredCallBack> one;
    one.party.setSurname("a");
    one.party.setNumber("1");
    journal_.record<StoredCallBack>({one});
    EXPECT_THAT(changes(), ElementsAre(std::string("1 a") + added));
}

TEST_F(Changes, AreNotOfEntriesThatNoListShows) {
    CallListDatabaseAdapter adapter;
    adapter.init(store_.get());
    adapter.updateMissedEntry(MissedCallItem(), CallListDatabaseAdapterHelper::WRITEREQUEST);
    adapter.updateEntry("<CallLogId>1</CallLogId>", CallListDatabaseAdapterHelper::WRITEREQUEST, "Conversations");
    EXPECT_THAT(changes(), IsEmpty());
}

}  // namespace
