#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "FaultyMemory.h"
#include "Kinds.h"

namespace {

/// A text that needs memory wherever it is copied to.
std::string longText(const std::string& start) {
    return start + " and as many letters as take it out of any small buffer";
}

template <class Kind>
typename Kind::Item longItem(int calls) {
    typename Kind::Item item = filledItem<Kind>();
    item.setUniqueId(longText("id"));
    item.setSurname(longText("Smith & <Sons>"));
    std::list<typename Kind::Info> infos;
    for (int i = 0; i < calls; ++i) {
        infos.push_back(filledCall<Kind>());
        infos.back().number = longText(std::to_string(i));
        infos.back().timeDate = longText("2024-05-01 10:15:0" + std::to_string(i % 10));
    }
    Kind::setCalls(item, infos);
    return item;
}

/// A service that needs no memory: it counts, and notes which of the ids that begin with "000" to "999" it is asked
/// for.
class CountingService : public DataAccessServiceIfc {
public:
    std::string processRequest(const std::string& request) override {
        ++requests;
        const char begin[] = "<UniqueId>";
        std::size_t at = request.find(begin);
        std::size_t number = 0;
        at = at == std::string::npos ? request.size() : at + sizeof begin - 1;
        for (int digit = 0; digit < 3 && request[at] >= '0' && request[at] <= '9'; ++digit, ++at) {
            number = number * 10 + static_cast<std::size_t>(request[at] - '0');
        }
        ++deletions[number];
        return "ok";
    }

    int requests = 0;
    int deletions[1000] = {};
};

template <class Kind>
class MemoryOfKind : public testing::Test {};
TYPED_TEST_SUITE(MemoryOfKind, AllKinds, KindNames);

TYPED_TEST(MemoryOfKind, MayBeMissingWhenAnEntryIsWritten) {
    const auto item = longItem<TypeParam>(3);
    const std::string whole = TypeParam::encode(item, false);
    const auto work = [&](std::string& out) { TypeParam::encodeTo(item, out, false); };
    const auto check = [&](std::string& out, bool hasThrown) {
        if (!hasThrown) {
            EXPECT_EQ(out, whole);
        }
        out.clear();
        TypeParam::encodeTo(item, out, false);
        EXPECT_EQ(out, whole);
    };
    EXPECT_TRUE(failAtEachPiece([] { return std::string(); }, work, check));
}

TYPED_TEST(MemoryOfKind, MayBeMissingWhenAnObserverIsNotified) {
    const auto item = longItem<TypeParam>(2);
    const std::string toDelete = longText("other");
    const auto notify = [&] { return TypeParam::notification(item, toDelete, JournalServiceObserverIfc::CHANGED); };
    const std::string whole = notify();
    const auto work = [&](std::string& out) { out = notify(); };
    const auto check = [&](const std::string& out, bool hasThrown) { EXPECT_EQ(out, hasThrown ? "" : whole); };
    EXPECT_TRUE(failAtEachPiece([] { return std::string(); }, work, check));
}

TYPED_TEST(MemoryOfKind, MayBeMissingWhenAnEntryIsRead) {
    const std::string body = TypeParam::encode(longItem<TypeParam>(12), false);
    typename TypeParam::Item read;
    TypeParam::decode(body.c_str(), read);
    const rules::Entry whole = describeEntry<TypeParam>(read);
    ASSERT_GE(whole.calls.size(), 10U);
    const auto work = [&](typename TypeParam::Item& item) { TypeParam::decode(body.c_str(), item); };
    const auto check = [&](typename TypeParam::Item& item, bool hasThrown) {
        if (hasThrown) {
            EXPECT_LE(TypeParam::calls(item).size(), whole.calls.size());
            const typename TypeParam::Item copy = item;
            EXPECT_TRUE(copy == item);
            item.reset();
            TypeParam::decode(body.c_str(), item);
        }
        EXPECT_EQ(describeEntry<TypeParam>(item), whole);
    };
    EXPECT_TRUE(failAtEachPiece([] { return typename TypeParam::Item(); }, work, check));
}

TYPED_TEST(MemoryOfKind, MayBeMissingWhenAnEntryIsCopied) {
    const auto item = longItem<TypeParam>(4);
    const auto work = [&](typename TypeParam::Item& copy) { copy = item; };
    const auto check = [&](typename TypeParam::Item& copy, bool hasThrown) {
        if (hasThrown) {
            EXPECT_LE(TypeParam::calls(copy).size(), 4U);
            copy = item;
        }
        EXPECT_TRUE(copy == item);
    };
    EXPECT_TRUE(failAtEachPiece([] { return longItem<TypeParam>(2); }, work, check));
    EXPECT_TRUE(failAtEachPiece([] { return typename TypeParam::Item(); }, work, check));
}

TYPED_TEST(MemoryOfKind, MayBeMissingWhenACallIsAdded) {
    const auto call = TypeParam::calls(longItem<TypeParam>(1)).front();
    const std::vector<std::string> before = numbers<TypeParam>(longItem<TypeParam>(10));
    std::vector<std::string> after = before;
    after.insert(after.begin(), call.number);
    after.pop_back();
    const auto work = [&](typename TypeParam::Item& item) { item.addCallInfoToList(call); };
    const auto check = [&](const typename TypeParam::Item& item, bool hasThrown) {
        EXPECT_EQ(numbers<TypeParam>(item), hasThrown ? before : after);
    };
    EXPECT_TRUE(failAtEachPiece([] { return longItem<TypeParam>(10); }, work, check));
}

TYPED_TEST(MemoryOfKind, MayBeMissingWhenAnEntryIsSentAndNothingIsSentTwice) {
    const auto item = longItem<TypeParam>(2);
    for (const char* reason : {Helper::WRITEREQUEST, Helper::DELETEREQUEST}) {
        const std::string reasonText = reason;
        const auto work = [&](CountingService& service) {
            CallListDatabaseAdapter adapter;
            adapter.init(&service);
            (adapter.*TypeParam::update)(item, reasonText);
        };
        const auto check = [](const CountingService& service, bool hasThrown) {
            EXPECT_EQ(service.requests, hasThrown ? 0 : 1);
        };
        EXPECT_TRUE(failAtEachPiece([] { return CountingService(); }, work, check));
    }
}

TEST(LibraryMemory, MayBeMissingWhenConversationsAreDeleted) {
    const std::string id = longText("7");
    const auto work = [&](CountingService& service) {
        CallListDatabaseAdapter adapter;
        adapter.init(&service);
        adapter.deleteFromConversationsTable(id);
    };
    const auto check = [](const CountingService& service, bool hasThrown) {
        EXPECT_EQ(service.requests, hasThrown ? 0 : 1);
    };
    EXPECT_TRUE(failAtEachPiece([] { return CountingService(); }, work, check));
}

/// A reply of the store with `entries` entries of eleven calls each.
std::string listReply(int entries) {
    std::string reply = Helper::XMLHEADER + std::string("<Schema name=\"CallLogMissedCalls\">");
    for (int i = 0; i < entries; ++i) {
        MissedCallItem item = longItem<Missed>(11);
        item.setUniqueId(longText(std::to_string(i)));
        reply += Helper::createXMLField(Helper::ENTRY, Helper::createXMLMissedCallItemBody(item, false));
    }
    return reply + "</Schema>";
}

std::vector<rules::Entry> describeList(const std::deque<MissedCallItem>& list) {
    std::vector<rules::Entry> entries;
    for (const MissedCallItem& item : list) {
        entries.push_back(describeEntry<Missed>(item));
    }
    return entries;
}

TEST(LibraryMemory, MayBeMissingWhenTheListIsRead) {
    Helper::init();
    const std::string reply = listReply(4);
    std::deque<MissedCallItem> list;
    Helper::parseXMLMissedCallList(reply, list);
    const std::vector<rules::Entry> all = describeList(list);
    ASSERT_EQ(all.size(), 4U);
    const auto work = [&](std::deque<MissedCallItem>& read) { Helper::parseXMLMissedCallList(reply, read); };
    const auto check = [&](std::deque<MissedCallItem>& read, bool hasThrown) {
        const std::vector<rules::Entry> entries = describeList(read);
        ASSERT_LE(entries.size(), all.size());
        EXPECT_TRUE(std::equal(entries.begin(), entries.end(), all.begin()));
        EXPECT_TRUE(hasThrown || entries.size() == all.size());
        Helper::parseXMLMissedCallList(reply, read);
        EXPECT_EQ(describeList(read), all);
    };
    EXPECT_TRUE(failAtEachPiece([] { return std::deque<MissedCallItem>(); }, work, check));
    Helper::finit();
}

/// A list of items "000", "001" and so on, every third without calls, in the order of a store.
std::deque<MissedCallItem> unsortedList(int count) {
    std::deque<MissedCallItem> list;
    for (int i = 0; i < count; ++i) {
        MissedCallItem item;
        std::string digits = "00" + std::to_string(i);
        item.setUniqueId(longText(digits.substr(digits.size() - 3)));
        item.setEntryId(longText("entry " + digits));
        if (i % 3 != 1) {
            MissedCallItem::MissedCallInfo call;
            call.timeDate = longText("2024-05-01 10:15:" + std::to_string(10 + i * 7 % 50));
            item.addCallInfoToList(call);
        }
        list.push_back(item);
    }
    return list;
}

std::multiset<std::string> idsOf(const std::deque<MissedCallItem>& list, bool withCalls) {
    std::multiset<std::string> ids;
    for (const MissedCallItem& item : list) {
        if (item.getMissedCallInfoList().empty() != withCalls) {
            ids.insert(item.getUniqueId());
        }
    }
    return ids;
}

struct Normalisation {
    std::deque<MissedCallItem> list;
    CountingService service;
};

void normalise(Normalisation& state) {
    CallListDatabaseAdapter adapter;
    adapter.init(&state.service);
    adapter.normalizeMissedCallList(state.list);
}

/// Each item without calls is either in the list or was deleted, once; those with calls are all there.
void expectNothingLost(const Normalisation& state, const std::deque<MissedCallItem>& before) {
    EXPECT_EQ(idsOf(state.list, true), idsOf(before, true));
    const std::multiset<std::string> left = idsOf(state.list, false);
    for (const std::string& id : idsOf(before, false)) {
        const int deletions = state.service.deletions[std::stoi(id.substr(0, 3))];
        EXPECT_EQ(deletions + static_cast<int>(left.count(id)), 1) << id;
    }
}

void expectNormalisationEndsOrderly(int count) {
    const std::deque<MissedCallItem> before = unsortedList(count);
    const auto check = [&](Normalisation& state, bool hasThrown) {
        expectNothingLost(state, before);
        if (hasThrown) {
            normalise(state);
            expectNothingLost(state, before);
        }
        EXPECT_TRUE(idsOf(state.list, false).empty());
        EXPECT_TRUE(std::is_sorted(state.list.begin(), state.list.end(), isMissedCallOrdered));
    };
    EXPECT_TRUE(failAtEachPiece([&] { return Normalisation{before, {}}; }, normalise, check));
}

TEST(LibraryMemory, MayBeMissingWhenTheListIsNormalised) {
    expectNormalisationEndsOrderly(6);
}

TEST(LibraryMemory, MayBeMissingWhenALongListIsNormalised) {
    expectNormalisationEndsOrderly(210);
}

TEST(FailAtEachPiece, NoticesWhatIsNotGivenBack) {
    struct Kept {
        std::unique_ptr<std::string> pieces[100];
        int count = 0;
    } kept;
    const auto work = [&](int&) {
        const std::vector<int> numbers(100);  // what fails
        kept.pieces[kept.count++] = std::make_unique<std::string>("x");
    };
    EXPECT_FALSE(failAtEachPiece([] { return 0; }, work, [](int, bool) {}));
    const auto cleanWork = [](int&) { const std::vector<int> numbers(100); };
    int thrown = 0;
    EXPECT_TRUE(
        failAtEachPiece([] { return 0; }, cleanWork, [&](int, bool hasThrown) { thrown += hasThrown ? 1 : 0; }));
    EXPECT_EQ(thrown, 2);  // one alone, one with all that follow
}

/// Tells at the end how many faults there were, for who runs all of this for long.
class CountOfFaults : public testing::Environment {
public:
    void TearDown() override { std::cout << "faults injected: " << refusedPieces() << std::endl; }
};

const testing::Environment* const countOfFaults = testing::AddGlobalTestEnvironment(new CountOfFaults);

}  // namespace
