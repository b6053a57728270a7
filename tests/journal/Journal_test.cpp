#include "Journal.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallListDatabaseAdapterHelper.h"
#include "CallLogTypes.h"
#include "EntryIndex.h"
#include "ForwardingStore.h"
#include "KindInterface.h"
#include "RunCommand.h"
#include "ScriptedDataAccessService.h"
#include "Store.h"
#include "StoredEntry.h"

using namespace calljournal;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

using Helper = CallListDatabaseAdapterHelper;

class RecordingObserver : public JournalServiceObserverIfc {
public:
    void notify(const std::string& message) override { messages.push_back(message); }
    std::vector<std::string> messages;
};

/// Says why `work` was refused.
template <class Work>
std::string refusalOf(const Work& work) {
    try {
        work();
    } catch (const JournalError& error) {
        return error.what();
    }
    return "not refused";
}

/// The journal on a real store.
class JournalOnAStore : public ::testing::Test {
protected:
    template <class Item>
    static NewCall<Item> call(const std::string& number, const std::string& time, const std::string& surname = "") {
        NewCall<Item> one;
        one.party.setSurname(surname);
        one.call.number = number;
        one.call.timeDate = time;
        return one;
    }

    static NewCall<MissedCallItem> missed(const std::string& number, const std::string& time,
                                          const std::string& surname = "") {
        return call<MissedCallItem>(number, time, surname);
    }

    /// The numbers of each entry's calls, newest first, one text an entry.
    template <class Item>
    std::vector<std::string> numbers() {
        std::vector<std::string> all;
        for (const Item& entry : journal_.entries<Item>()) {
            all.emplace_back();
            for (const auto& one : (entry.*format::CallKind<Item>::calls)()) {
                all.back() += (all.back().empty() ? "" : " ") + one.number;
            }
        }
        return all;
    }

    const TemporaryFolder folder_;
    const std::unique_ptr<Store> store_ = openStore(folder_.file("journal.db"), indexEntry);
    Journal journal_{*store_};
};

TEST_F(JournalOnAStore, StartsEmpty) {
    EXPECT_TRUE(journal_.entries<MissedCallItem>().empty());
    EXPECT_TRUE(journal_.entries<DialledCallItem>().empty());
    EXPECT_TRUE(journal_.entries<StoredCallBack>().empty());
}

TEST_F(JournalOnAStore, GivesEachPartyOneEntryWithTheNewestCallInFront) {
    journal_.record<MissedCallItem>({missed("1", "2024-05-01 10:00:00"), missed("2", "2024-05-01 11:00:00")});
    const auto written = journal_.record<MissedCallItem>({missed("1", "2024-05-01 12:00:00")});
    ASSERT_EQ(written.size(), 1u);
    EXPECT_EQ(written[0].getUniqueId(), "1");
    EXPECT_THAT(numbers<MissedCallItem>(), ElementsAre("1 1", "2"));
}

TEST_F(JournalOnAStore, MatchesNumbersByTheirKey) {
    store_->setSetting(regionSetting, "GB");
    journal_.record<MissedCallItem>({missed("020 7946 0123", "1"), missed("+44 20 7946 0123", "2")});
    journal_.record<MissedCallItem>({missed("00442079460123", "3"), missed("0123", "4"), missed("70123", "5")});
    EXPECT_THAT(numbers<MissedCallItem>(),
                ElementsAre("70123", "0123", "00442079460123 +44 20 7946 0123 020 7946 0123"));
}

TEST_F(JournalOnAStore, FindsTheEntryByAnyOfItsNumbers) {
    journal_.record<MissedCallItem>({missed("1", "1"), missed("", "2", "Smith")});
    journal_.record<MissedCallItem>({missed("", "3", "Smith")});
    EXPECT_THAT(numbers<MissedCallItem>(), ElementsAre("", "1"));
    EXPECT_EQ(journal_.entries<MissedCallItem>()[0].getMissedCallInfoList().size(), 2u);
}

TEST_F(JournalOnAStore, NeverMatchesAWithheldOrUnknownCaller) {
    NewCall<MissedCallItem> withheld = missed("", "1", "Smith");
    withheld.call.numberPresentation = CallLogEntryEvent::NOT_ALLOWED;
    journal_.record<MissedCallItem>({withheld, withheld, missed("", "2"), missed("", "3")});
    EXPECT_EQ(journal_.entries<MissedCallItem>().size(), 4u);
}

TEST_F(JournalOnAStore, TakesOverTheNameThatComesWithACall) {
    journal_.record<MissedCallItem>({missed("1", "1")});
    journal_.record<MissedCallItem>({missed("1", "2", "Smith")});
    journal_.record<MissedCallItem>({missed("1", "3")});
    EXPECT_EQ(journal_.entries<MissedCallItem>()[0].getSurname(), "Smith");
}

TEST_F(JournalOnAStore, KeepsTenCallsOfAParty) {
    std::vector<NewCall<MissedCallItem>> calls;
    for (int i = 0; i < 25; ++i) {
        calls.push_back(missed("1", std::to_string(100 + i)));
    }
    journal_.record(calls);
    const auto entries = journal_.entries<MissedCallItem>();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].getMissedCallInfoList().size(), 10u);
    EXPECT_EQ(entries[0].getMissedCallInfoList().back().timeDate, "115");
}

TEST_F(JournalOnAStore, WritesABatchInRequestsOfFiveHundredEntries) {
    std::vector<NewCall<MissedCallItem>> calls;
    for (int i = 0; i < 1201; ++i) {
        calls.push_back(missed(std::to_string(10000 + i), std::to_string(10000 + i)));
    }
    std::vector<std::size_t> entriesOfRequest;
    journal_.setTrace([&](const std::string& request, const std::string&) {
        std::size_t count = 0;
        for (std::size_t at = request.find("<Entry>"); at != std::string::npos; at = request.find("<Entry>", at + 1)) {
            ++count;
        }
        entriesOfRequest.push_back(count);
    });
    journal_.record(calls);
    EXPECT_THAT(entriesOfRequest, ElementsAre(500, 500, 201));
    EXPECT_EQ(journal_.entries<MissedCallItem>().size(), 1201u);
}

TEST_F(JournalOnAStore, GroupsDialledCallsByTheNumberInInternationalForm) {
    store_->setSetting(regionSetting, "DE");
    journal_.record<DialledCallItem>({call<DialledCallItem>("030 1234567", "1")});
    EXPECT_EQ(journal_.entries<DialledCallItem>()[0].getJournalSeviceGroupBy(), "+49301234567");
}

TEST_F(JournalOnAStore, KeepsEachKindByItself) {
    journal_.record<MissedCallItem>({missed("1", "1")});
    journal_.record<DialledCallItem>({call<DialledCallItem>("2", "1")});
    journal_.record<ReceivedCallItem>({call<ReceivedCallItem>("3", "1")});
    journal_.record<ForwardedCallItem>({call<ForwardedCallItem>("4", "1"), call<ForwardedCallItem>("5", "2")});
    EXPECT_THAT(numbers<MissedCallItem>(), ElementsAre("1"));
    EXPECT_THAT(numbers<DialledCallItem>(), ElementsAre("2"));
    EXPECT_THAT(numbers<ReceivedCallItem>(), ElementsAre("3"));
    EXPECT_THAT(numbers<ForwardedCallItem>(), ElementsAre("5", "4"));
}

TEST_F(JournalOnAStore, BringsEveryTextBack) {
    NewCall<MissedCallItem> one = missed("<b>&amp;", "2024-05-01 10:00:00", "Smith & <Co>");
    one.party.setPictureClip("a<b&lt;.jpg");
    one.party.setEntryId("</Entry>");
    one.call.groupName = "</Item></LogList>";
    one.call.deflectName = "&amp;lt;";
    journal_.record<MissedCallItem>({one});
    const MissedCallItem read = journal_.entries<MissedCallItem>().at(0);
    EXPECT_EQ(read.getSurname(), "Smith & <Co>");
    EXPECT_EQ(read.getPictureClip(), "a<b&lt;.jpg");
    EXPECT_EQ(read.getEntryId(), "</Entry>");
    EXPECT_TRUE(read.getMissedCallInfoList().front() == one.call);
    EXPECT_EQ(read.getMissedCallInfoList().front().deflectName, "&amp;lt;");
}

TEST_F(JournalOnAStore, BringsAMarkedUpTextOfACallBack) {
    NewCall<MissedCallItem> one = missed("1", "1");
    one.call.groupName = "&amp;lt;";
    journal_.record<MissedCallItem>({one});
    EXPECT_EQ(journal_.entries<MissedCallItem>().at(0).getMissedCallInfoList().front().groupName, "&amp;lt;");
}

/// A text with every control character, and one that looks like what stands for them.
const std::string controls = [] {
    std::string text = "&#x1b;";
    for (char c = 0; c < 0x20; ++c) {
        text += c;
    }
    return text;
}();

template <class Item>
class JournalOfEachKind : public JournalOnAStore {};

TYPED_TEST_SUITE(JournalOfEachKind, CallLogTypes, CallLogTypeNames);

TYPED_TEST(JournalOfEachKind, BringsControlCharactersBack) {
    NewCall<TypeParam> one = this->template call<TypeParam>(controls, controls, controls);
    one.party.setFirstname(controls);
    one.party.setPictureClip(controls);
    one.party.setEntryId(controls);
    this->journal_.template record<TypeParam>({one});
    const TypeParam read = this->journal_.template entries<TypeParam>().at(0);
    EXPECT_EQ(read.getSurname(), controls);
    EXPECT_EQ(read.getFirstname(), controls);
    EXPECT_EQ(read.getPictureClip(), controls);
    EXPECT_EQ(read.getEntryId(), controls);
    const auto& calls = (read.*format::CallKind<TypeParam>::calls)();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls.front().number, controls);
    EXPECT_EQ(calls.front().timeDate, controls);
}

TYPED_TEST(JournalOfEachKind, DeletesAnEntryAndSaysWhichIsNotThere) {
    this->journal_.template record<TypeParam>({this->template call<TypeParam>("1", "1"),
                                               this->template call<TypeParam>("2", "2"),
                                               this->template call<TypeParam>("3", "3")});
    const TypeParam removed = this->journal_.template remove<TypeParam>("2");
    EXPECT_EQ((removed.*format::CallKind<TypeParam>::calls)().front().number, "2");
    EXPECT_THAT(this->template numbers<TypeParam>(), ElementsAre("3", "1"));
    try {
        this->journal_.template remove<TypeParam>("2");
        FAIL() << "deleted again";
    } catch (const JournalError& error) {
        EXPECT_EQ(error.what(),
                  "there is no " + std::string(KindInterface<TypeParam>::name) + " entry with the id \"2\"");
    }
}

TYPED_TEST(JournalOfEachKind, TellsObserversOfEachChange) {
    RecordingObserver observer;
    this->journal_.addObserver(observer);
    this->journal_.template record<TypeParam>({this->template call<TypeParam>("1", "1", "A<B")});
    this->journal_.template record<TypeParam>({this->template call<TypeParam>("1", "2")});
    this->journal_.template remove<TypeParam>("1");
    std::vector<std::string> updates;
    for (const std::string& message : observer.messages) {
        if (message.find("<ActionType>") != std::string::npos) {
            updates.push_back(message);
        }
    }
    EXPECT_THAT(updates, ElementsAre(HasSubstr("</LogList><ActionType>0</ActionType>"),
                                     HasSubstr("</LogList><ActionType>1</ActionType>"),
                                     HasSubstr("<UniqueIdToDelete>1</UniqueIdToDelete><ActionType>3</ActionType>")));
}

TYPED_TEST(JournalOfEachKind, GivesAPartyWithoutANumberTheEntryOfItsName) {
    const auto named = [this](const char* surname, const char* firstname, const char* time) {
        NewCall<TypeParam> one = this->template call<TypeParam>("", time, surname);
        one.party.setFirstname(firstname);
        return one;
    };
    this->journal_.template record<TypeParam>(
        {named("", "Ann", "6"), named("Smith", "", "8"), named("Smith", "Ann", "5")});
    this->journal_.template record<TypeParam>({named("", "Ann", "9"), named("Smith", "Ann", "7"), named("", "", "1")});
    std::vector<std::size_t> counts;
    for (const TypeParam& entry : this->journal_.template entries<TypeParam>()) {
        counts.push_back((entry.*format::CallKind<TypeParam>::calls)().size());
    }
    EXPECT_THAT(counts, ElementsAre(2, 1, 2, 1));
}

TYPED_TEST(JournalOfEachKind, TellsNumbersThatEndAlikeApart) {
    this->journal_.template record<TypeParam>(
        {this->template call<TypeParam>("10001", "1"), this->template call<TypeParam>("20001", "2")});
    this->journal_.template record<TypeParam>(
        {this->template call<TypeParam>("20001", "3"), this->template call<TypeParam>("30001", "4")});
    EXPECT_THAT(this->template numbers<TypeParam>(), ElementsAre("30001", "20001 20001", "10001"));
}

TEST_F(JournalOnAStore, ListsEntriesWithoutCallsLast) {
    const std::string dialled = "<Schema name=\"CallLogDialledCalls\">";
    const std::string header = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
    DialledCallItem withoutCalls;
    withoutCalls.setSurname("Nobody");
    const std::string entry = "<Entry>" + Helper::createXMLDialledCallItemBody(withoutCalls, false) + "</Entry>";
    store_->processRequest(header + dialled + "<ReasonForMessage>write_request</ReasonForMessage>" + entry + entry +
                           "</Schema>");
    journal_.record<DialledCallItem>({call<DialledCallItem>("1", "1"), call<DialledCallItem>("2", "2")});
    EXPECT_THAT(numbers<DialledCallItem>(), ElementsAre("2", "1", "", ""));
}

TEST_F(JournalOnAStore, ListsEachEntryOnceWhileOthersComeAndGo) {
    std::vector<NewCall<ReceivedCallItem>> calls;
    for (int i = 10000; i < 11300; ++i) {
        calls.push_back(call<ReceivedCallItem>(std::to_string(i), std::to_string(i)));
    }
    journal_.record(calls);
    std::vector<std::string> times;
    journal_.forEachEntry(queryOfKind<ReceivedCallItem>(), [&](const AnyEntry& entry) {
        times.push_back(newestTime(std::get<ReceivedCallItem>(entry)));
        if (times.size() == 500) {
            journal_.remove<ReceivedCallItem>(std::get<ReceivedCallItem>(entry).getUniqueId());
            journal_.record<ReceivedCallItem>({call<ReceivedCallItem>("new", "99999")});
        }
        return true;
    });
    ASSERT_EQ(times.size(), 1300u);
    EXPECT_EQ(times.front(), "11299");
    EXPECT_EQ(times.back(), "10000");
    EXPECT_TRUE(std::is_sorted(times.rbegin(), times.rend()));
}

TEST_F(JournalOnAStore, StopsReadingWhereNoMoreIsWanted) {
    journal_.record<MissedCallItem>({missed("1", "1"), missed("2", "2"), missed("3", "3")});
    EntryQuery query = queryOfKind<MissedCallItem>();
    query.limit = 1;
    int count = 0;
    journal_.forEachEntry(query, [&](const AnyEntry&) { return ++count < 2; });
    EXPECT_EQ(count, 2);
}

TEST_F(JournalOnAStore, DeletesMissedEntriesWithoutCallsAsItListsThem) {
    CallListDatabaseAdapter adapter;
    adapter.init(store_.get());
    adapter.updateMissedEntry(MissedCallItem(), Helper::WRITEREQUEST);
    journal_.record<MissedCallItem>({missed("1", "1")});
    journal_.record<DialledCallItem>({call<DialledCallItem>("2", "2")});
    EXPECT_EQ(store_->count("CallLogMissedCalls").all, 2u);
    EXPECT_EQ(refusalOf([&] { journal_.markViewed("1"); }), "there is no missed entry with the id \"1\"");
    EntryQuery query;
    query.schemas = {"CallLogMissedCalls", "CallLogDialledCalls"};
    int count = 0;
    journal_.forEachEntry(query, [&](const AnyEntry&) { return ++count > 0; });
    EXPECT_EQ(count, 2);
    EXPECT_EQ(store_->count("CallLogMissedCalls").all, 1u);
}

TEST_F(JournalOnAStore, PutsNoCallIntoAnEntryThatHasNone) {
    CallListDatabaseAdapter adapter;
    adapter.init(store_.get());
    DialledCallItem smith;
    smith.setSurname("Smith");
    adapter.updateDialledEntry(smith, Helper::WRITEREQUEST);
    journal_.record<DialledCallItem>({call<DialledCallItem>("", "1", "Smith")});
    EXPECT_EQ(journal_.entries<DialledCallItem>().size(), 2u);
}

TEST_F(JournalOnAStore, GivesACallOfABatchTheEntryThatTheStoreHasForItsName) {
    journal_.record<MissedCallItem>({missed("1", "1", "Smith")});
    journal_.record<MissedCallItem>({missed("2", "2", "Smith"), missed("", "3", "Smith")});
    EXPECT_THAT(numbers<MissedCallItem>(), ElementsAre("1", "2"));
    EXPECT_EQ(journal_.entries<MissedCallItem>()[0].getMissedCallInfoList().size(), 2u);
}

/// Puts entries of a number in front of those that a store finds.
class StoreWithAStranger : public ForwardingStore {
public:
    using ForwardingStore::ForwardingStore;

    std::vector<FoundEntry> find(const EntryQuery& query) override {
        EntryQuery other = query;
        other.numberKey = query.numberKey.empty() ? "" : "9";
        other.name = query.name.empty() ? "" : "stranger";
        std::vector<FoundEntry> found = ForwardingStore::find(other);
        for (FoundEntry& entry : ForwardingStore::find(query)) {
            found.push_back(std::move(entry));
        }
        return found;
    }
};

TEST_F(JournalOnAStore, TrustsTheEntryAndNotTheIndex) {
    journal_.record<MissedCallItem>({missed("9", "9", "Stranger"), missed("1", "1", "Smith")});
    StoreWithAStranger store(*store_);
    Journal journal(store);
    journal.record<MissedCallItem>({missed("1", "2"), missed("", "3", "Smith"), missed("2", "4")});
    EXPECT_THAT(numbers<MissedCallItem>(), ElementsAre("9", "2", "1 1"));
}

/// Counts what is looked up.
class CountingStore : public ForwardingStore {
public:
    using ForwardingStore::ForwardingStore;
    std::vector<FoundEntry> find(const EntryQuery& query) override {
        ++finds;
        return ForwardingStore::find(query);
    }
    int finds = 0;
};

TEST_F(JournalOnAStore, LooksEachPartyOfABatchUpOnce) {
    store_->setSetting(regionSetting, "GB");
    CountingStore store(*store_);
    Journal journal(store);
    journal.record<MissedCallItem>({missed("020 7946 0123", "1"), missed("+44 20 7946 0123", "2"),
                                    missed("", "3", "Smith"), missed("4711", "4"), missed("", "5", "Smith")});
    EXPECT_EQ(store.finds, 3);
    EXPECT_THAT(numbers<MissedCallItem>(), ElementsAre("", "4711", "+44 20 7946 0123 020 7946 0123"));
}

TEST_F(JournalOnAStore, IsNowhereUntilItsRegionIsSet) {
    EXPECT_EQ(journal_.region(), "ZZ");
    EXPECT_EQ(journal_.numberKey()("030 1234567"), "0301234567");
    journal_.changeRegion("DE");
    EXPECT_EQ(journal_.region(), "DE");
    EXPECT_EQ(journal_.numberKey()("030 1234567"), "+49301234567");
}

TYPED_TEST(JournalOfEachKind, JoinsEntriesThatAreOnePartysInTheNewRegion) {
    const auto call = [this](const char* number, const char* time, const char* surname) {
        return this->template call<TypeParam>(number, time, surname);
    };
    NewCall<TypeParam> pictured = call("030 1234567", "5", "Smith");
    pictured.party.setPictureClip("smith.jpg");
    this->journal_.template record<TypeParam>({call("+49 30 1234567", "3", "Old"), call("+49 30 1234567", "6", ""),
                                               call("4711", "4", "Other"), pictured, call("0049301234567", "7", "")});
    RecordingObserver observer;
    this->journal_.addObserver(observer);
    const std::vector<JoinedParty> joined = this->journal_.changeRegion("DE");
    ASSERT_EQ(joined.size(), 1u);
    EXPECT_THAT(joined[0].joinedIds, ElementsAre("1", "3"));

    EXPECT_THAT(this->template numbers<TypeParam>(),
                ElementsAre("0049301234567 +49 30 1234567 030 1234567 +49 30 1234567", "4711"));
    const TypeParam entry = this->journal_.template entries<TypeParam>()[0];
    EXPECT_EQ(entry.getUniqueId(), "4");
    EXPECT_EQ(entry.getUniqueId(), std::get<TypeParam>(joined[0].entry).getUniqueId());
    EXPECT_EQ(entry.getSurname(), "Old");
    EXPECT_EQ(entry.getPictureClip(), "smith.jpg");
    if constexpr (std::is_same_v<TypeParam, DialledCallItem>) {
        EXPECT_EQ(entry.getJournalSeviceGroupBy(), "+49301234567");
    }
    ASSERT_GE(observer.messages.size(), 3u);
    EXPECT_THAT(observer.messages[0], HasSubstr("<ActionType>1</ActionType>"));
    EXPECT_THAT(observer.messages[1], HasSubstr("<UniqueIdToDelete>1</UniqueIdToDelete><ActionType>3</ActionType>"));
    EXPECT_THAT(observer.messages[2], HasSubstr("<UniqueIdToDelete>3</UniqueIdToDelete><ActionType>3</ActionType>"));
    EXPECT_TRUE(this->journal_.changeRegion("DE").empty());
    EXPECT_TRUE(this->store_->checkIndex().empty());
}

TEST_F(JournalOnAStore, JoinsTenCallsThatWereSeenIfAllWere) {
    std::vector<NewCall<MissedCallItem>> calls;
    for (int i = 10; i < 18; ++i) {
        calls.push_back(missed(i % 2 == 0 ? "030 1234567" : "0049301234567", std::to_string(i)));
        calls.push_back(missed(i % 2 == 0 ? "030 7654321" : "0049307654321", std::to_string(i)));
    }
    journal_.record(calls);
    for (const char* id : {"1", "2", "3"}) {
        journal_.markViewed(id);
    }
    journal_.changeRegion("DE");
    const auto entries = journal_.entries<MissedCallItem>();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].getViewed() ? 1 : 0, entries[0].getMissedCallInfoList().front().number == "0049301234567");
    EXPECT_NE(entries[0].getViewed(), entries[1].getViewed());
    EXPECT_EQ(entries[0].getMissedCallInfoList().size(), 8u);
    EXPECT_EQ(entries[0].getMissedCallInfoList().front().timeDate, "17");
    EXPECT_EQ(entries[0].getMissedCallInfoList().back().timeDate, "10");
}

TEST_F(JournalOnAStore, KeepsTheNewestTenCallsOfJoinedEntries) {
    std::vector<NewCall<MissedCallItem>> calls;
    for (int i = 10; i < 26; ++i) {
        calls.push_back(missed(i % 2 == 0 ? "030 1234567" : "0049301234567", std::to_string(i)));
    }
    journal_.record(calls);
    journal_.changeRegion("DE");
    const auto list = journal_.entries<MissedCallItem>().at(0).getMissedCallInfoList();
    EXPECT_EQ(list.size(), 10u);
    EXPECT_EQ(list.front().timeDate, "25");
    EXPECT_EQ(list.back().timeDate, "16");
}

TEST_F(JournalOnAStore, JoinsEntriesThatAreConnectedByAnother) {
    CallListDatabaseAdapter adapter;
    adapter.init(store_.get());
    MissedCallItem both;
    both.appendCallInfoToList(missed("030 1234567", "2").call);
    both.appendCallInfoToList(missed("4711", "1").call);
    adapter.updateMissedEntry(both, Helper::WRITEREQUEST);
    both = MissedCallItem();
    both.appendCallInfoToList(missed("4711", "3").call);
    adapter.updateMissedEntry(both, Helper::WRITEREQUEST);
    journal_.record<MissedCallItem>({missed("+49 30 1234567", "4")});
    journal_.changeRegion("DE");
    EXPECT_THAT(numbers<MissedCallItem>(), ElementsAre("+49 30 1234567 4711 030 1234567 4711"));
}

TEST_F(JournalOnAStore, TellsObserversOfTheEntryAndOfTheNewCount) {
    RecordingObserver observer;
    journal_.addObserver(observer);
    journal_.record<MissedCallItem>({missed("1", "1")});
    ASSERT_EQ(observer.messages.size(), 2u);
    EXPECT_EQ(observer.messages[0], Helper::obsReqMissedCallsUpdate(journal_.entries<MissedCallItem>()[0], "",
                                                                    JournalServiceObserverIfc::ADDED));
    EXPECT_EQ(observer.messages[1], Helper::obsReqMissedCallsCountUpdate(1));

    observer.messages.clear();
    journal_.record<MissedCallItem>({missed("1", "2")});
    EXPECT_THAT(observer.messages[0], HasSubstr("<ActionType>1</ActionType>"));
    observer.messages.clear();
    journal_.markViewed("1");
    EXPECT_THAT(observer.messages[0], HasSubstr("<Viewed>True</Viewed>"));
    EXPECT_THAT(observer.messages[0], HasSubstr("<ActionType>2</ActionType>"));
    EXPECT_EQ(observer.messages[1], Helper::obsReqMissedCallsCountUpdate(0));
    observer.messages.clear();
    journal_.remove<MissedCallItem>("1");
    EXPECT_THAT(observer.messages[0], HasSubstr("<UniqueIdToDelete>1</UniqueIdToDelete><ActionType>3</ActionType>"));
}

TEST_F(JournalOnAStore, TellsOfOtherKindsWithoutACount) {
    RecordingObserver observer;
    journal_.addObserver(observer);
    journal_.record<ReceivedCallItem>({call<ReceivedCallItem>("1", "1")});
    ASSERT_EQ(observer.messages.size(), 1u);
    EXPECT_THAT(observer.messages[0], HasSubstr("<Method>receivedCallsUpdate</Method>"));
}

TEST_F(JournalOnAStore, DeletesAnEntryAndItsConversationRows) {
    journal_.record<MissedCallItem>({missed("1", "1"), missed("2", "2")});
    std::vector<std::string> requests;
    journal_.setTrace([&](const std::string& request, const std::string&) { requests.push_back(request); });
    journal_.remove<MissedCallItem>("1");
    const std::string header = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[0], header +
                               "<Schema name=\"CallLogMissedCalls\"><ReasonForMessage>delete_request"
                               "</ReasonForMessage><Entry><UniqueId>1</UniqueId></Entry></Schema>");
    EXPECT_EQ(requests[1], header +
                               "<Schema name=\"Conversations\"><ReasonForMessage>delete_request"
                               "</ReasonForMessage><Entry><CallLogId>1</CallLogId></Entry></Schema>");
    EXPECT_THAT(numbers<MissedCallItem>(), ElementsAre("2"));
}

/// Notes what is asked of a store, and where exclusive work begins and ends.
class SteppingStore : public ForwardingStore {
public:
    SteppingStore(Store& store, std::vector<std::string>& steps) : ForwardingStore(store), steps_(steps) {}

    std::string processRequest(const std::string& request) override {
        steps_.emplace_back("change");
        return ForwardingStore::processRequest(request);
    }
    std::vector<FoundEntry> find(const EntryQuery& query) override {
        steps_.emplace_back("read");
        return ForwardingStore::find(query);
    }
    void exclusively(const std::function<void()>& work) override {
        steps_.emplace_back("begin");
        ForwardingStore::exclusively(work);
        steps_.emplace_back("end");
    }

private:
    std::vector<std::string>& steps_;
};

TEST_F(JournalOnAStore, ReadsAndWritesWhatItChangesInOnePieceOfWork) {
    std::vector<std::string> steps;
    SteppingStore store(*store_, steps);
    Journal journal(store);
    journal.record<MissedCallItem>({missed("1", "1")});
    EXPECT_THAT(steps, ElementsAre("begin", "read", "change", "end"));
    steps.clear();
    journal.markViewed("1");
    EXPECT_THAT(steps, ElementsAre("begin", "read", "change", "end"));
    steps.clear();
    journal.remove<MissedCallItem>("1");
    EXPECT_THAT(steps, ElementsAre("begin", "read", "change", "change", "end"));
}

TEST_F(JournalOnAStore, SaysThatAnEntryIsNotThere) {
    EXPECT_THROW(journal_.markViewed("7"), JournalError);
    EXPECT_THROW(journal_.remove<ForwardedCallItem>("7"), JournalError);
    EXPECT_THROW(journal_.remove<StoredCallBack>("7"), JournalError);
}

TEST_F(JournalOnAStore, KeepsCallBacksByThemselves) {
    const CallBackItem item("7", "A<B", "Ann", "030&amp;", NumberType::MOBILE, "2024-05-01 10:15:00",
                            CallBackItem::BUSY, CallBackItem::SUSPENDED, "d");
    const CallBackItem newer("", "", "", "2", NumberType::NO_ICON, "2024-06-01 10:15:00", CallBackItem::NOTYPE,
                             CallBackItem::NOSTATE, "");
    const auto written = journal_.record<StoredCallBack>({{StoredCallBack(item)}, {StoredCallBack(newer)}});
    ASSERT_EQ(written.size(), 2u);
    EXPECT_EQ(written[0].getUniqueId(), "1");
    const auto stored = journal_.entries<StoredCallBack>();
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_EQ(stored[0].getUniqueId(), "2");
    EXPECT_TRUE(stored[1] == item);
    EXPECT_TRUE(static_cast<const CallItem&>(stored[1]) == item);
    EXPECT_TRUE(journal_.remove<StoredCallBack>("1") == item);
    EXPECT_EQ(journal_.entries<StoredCallBack>().size(), 1u);
}

/// The journal on a store that answers requests as a script says.
class JournalOnAScript : public JournalOnAStore {
protected:
    class ScriptedStore : public ForwardingStore {
    public:
        using ForwardingStore::ForwardingStore;
        std::string processRequest(const std::string& request) override { return script.processRequest(request); }
        ScriptedDataAccessService script;
    };

    ScriptedStore scripted_{*store_};
    Journal journal_{scripted_};
};

TEST_F(JournalOnAScript, TellsNobodyOfWhatTheStoreRefused) {
    scripted_.script.otherwise(
        "<Schema name=\"CallLogMissedCalls\"><Result>failed</Result><Reason>full</Reason></Schema>");
    RecordingObserver observer;
    journal_.addObserver(observer);
    NewCall<MissedCallItem> one;
    one.call.number = "1";
    try {
        journal_.record<MissedCallItem>({one});
        FAIL() << "nothing was thrown";
    } catch (const JournalError& error) {
        EXPECT_STREQ(error.what(), "full");
    }
    EXPECT_TRUE(observer.messages.empty());
}

const char* const refusal = "<Schema name=\"x\"><Result>failed</Result><Reason>full</Reason></Schema>";

TEST_F(JournalOnAScript, SaysWhyTheStoreRefused) {
    JournalOnAStore::journal_.record<ReceivedCallItem>({NewCall<ReceivedCallItem>()});
    scripted_.script.when("write_request", refusal).when("delete_request", refusal);
    RecordingObserver observer;
    journal_.addObserver(observer);
    EXPECT_EQ(refusalOf([&] { journal_.record<ReceivedCallItem>({NewCall<ReceivedCallItem>()}); }), "full");
    EXPECT_EQ(refusalOf([&] { journal_.remove<ReceivedCallItem>("1"); }), "full");
    EXPECT_EQ(refusalOf([&] { journal_.record<StoredCallBack>({{}}); }), "full");
    EXPECT_TRUE(observer.messages.empty());
}

TEST_F(JournalOnAScript, QuotesAReplyThatIsNoAcknowledgement) {
    scripted_.script.otherwise("what?");
    EXPECT_EQ(refusalOf([&] { journal_.record<ReceivedCallItem>({NewCall<ReceivedCallItem>()}); }),
              "unexpected reply of the data access service: what?");
}

TEST_F(JournalOnAScript, WantsAnIdForEveryEntry) {
    scripted_.script.when("write_request", "<Schema name=\"x\"><Result>ok</Result></Schema>");
    NewCall<MissedCallItem> one;
    one.call.number = "1";
    EXPECT_THROW(journal_.record<MissedCallItem>({one}), JournalError);
}

TEST_F(JournalOnAScript, LetsAnExceptionOfTheStorePass) {
    scripted_.script.next(ScriptedDataAccessService::failing(std::out_of_range("gone")));
    EXPECT_THROW(journal_.record<MissedCallItem>({missed("1", "1")}), std::out_of_range);
}

}  // namespace
