#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "FakePlatform.h"
#include "Kinds.h"
#include "ScriptedDataAccessService.h"

/// The order of the missed call list and the removal of entries without calls.
namespace {

using Texts = std::vector<std::string>;
using List = std::deque<MissedCallItem>;

MissedCallItem withCall(const std::string& id, const std::string& timeDate) {
    MissedCallItem item;
    item.setUniqueId(id);
    MissedCallItem::MissedCallInfo call;
    call.timeDate = timeDate;
    item.appendCallInfoToList(call);
    return item;
}

MissedCallItem withoutCalls(const std::string& id, const std::string& entryId) {
    MissedCallItem item;
    item.setUniqueId(id);
    item.setEntryId(entryId);
    return item;
}

Texts ids(const List& list) {
    Texts result;
    for (const MissedCallItem& item : list) {
        result.push_back(item.getUniqueId());
    }
    return result;
}

std::string deletion(const std::string& id) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
           "<ReasonForMessage>delete_request</ReasonForMessage><Entry><UniqueId>" +
           id + "</UniqueId></Entry></Schema>";
}

TEST(MissedCallOrder, PutsTheGreaterTimeFirst) {
    const MissedCallItem newer = withCall("1", "2024-05-01 10:15:01");
    const MissedCallItem older = withCall("2", "2024-05-01 10:15:00");

    EXPECT_TRUE(isMissedCallOrdered(newer, older));
    EXPECT_FALSE(isMissedCallOrdered(older, newer));
}

TEST(MissedCallOrder, PutsNeitherOfTwoEqualTimesFirst) {
    EXPECT_FALSE(isMissedCallOrdered(withCall("1", "now"), withCall("2", "now")));
    EXPECT_FALSE(isMissedCallOrdered(withCall("1", "now"), withCall("1", "now")));
    EXPECT_FALSE(isMissedCallOrdered(MissedCallItem(), MissedCallItem()));
}

TEST(MissedCallOrder, ComparesBytesAsUnsignedAndALongerTextAsGreater) {
    const Texts ascending = {
        std::string(), std::string(1, '\0'), std::string("\0a", 2), "0", "00", "1", "10", "9", "\x7F", "\x80", "\xFF",
        "\xFF\x01"};

    for (std::size_t first = 0; first < ascending.size(); ++first) {
        for (std::size_t second = 0; second < ascending.size(); ++second) {
            EXPECT_EQ(isMissedCallOrdered(withCall("", ascending[first]), withCall("", ascending[second])),
                      first > second)
                << first << " " << second;
        }
    }
}

TEST(MissedCallOrder, TakesTheFirstCallWhateverTheOthers) {
    MissedCallItem item = withCall("1", "b");
    MissedCallItem::MissedCallInfo later;
    later.timeDate = "z";
    item.appendCallInfoToList(later);
    item.setEntryId("y");

    EXPECT_FALSE(isMissedCallOrdered(item, withCall("2", "c")));
    EXPECT_TRUE(isMissedCallOrdered(item, withCall("2", "a")));
}

TEST(MissedCallOrder, TakesTheEntryIdOfAnEntryWithoutCalls) {
    EXPECT_TRUE(isMissedCallOrdered(withoutCalls("", "3"), withCall("", "2024")));
    EXPECT_FALSE(isMissedCallOrdered(withoutCalls("", "1"), withCall("", "2024")));
    EXPECT_TRUE(isMissedCallOrdered(withoutCalls("", "8"), withoutCalls("", "7")));
    EXPECT_FALSE(isMissedCallOrdered(withoutCalls("9", ""), withoutCalls("1", "7")));
    // A call without a time counts as one, whatever the entry id.
    MissedCallItem timeless = withCall("", "");
    timeless.setEntryId("9");
    EXPECT_FALSE(isMissedCallOrdered(timeless, withoutCalls("", "1")));
}

class NormalisationTest : public ::testing::Test {
protected:
    NormalisationTest() {
        fakePlatform().reset();
        adapter.init(&service);
    }

    void logEverything() {
        fakePlatform().switchOn("CallListDatabaseAdapter", 5);
        fakePlatform().switchOn("CallListDatabaseAdapter", 6);
    }

    calljournal::ScriptedDataAccessService service;
    CallListDatabaseAdapter adapter;
};

TEST_F(NormalisationTest, LogsTwoSizesForAnEmptyListAndDoesNothingElse) {
    logEverything();
    List list;

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(fakePlatform().logTexts(), (Texts{"before sort normalizeMissedCallList: missedCallList.size():0\n",
                                                "after sort normalizeMissedCallList: missedCallList.size():0\n"}));
    EXPECT_TRUE(service.transcript().empty());
    EXPECT_TRUE(list.empty());
}

TEST_F(NormalisationTest, SortsTheNewestFirst) {
    List list = {withCall("1", "2024-01-01"), withCall("2", "2024-03-01"), withCall("3", "2024-02-01")};
    List other = {withCall("2", "2024-03-01"), withCall("1", "2024-01-01")};

    adapter.normalizeMissedCallList(list);
    adapter.normalizeMissedCallList(other);

    EXPECT_EQ(ids(list), (Texts{"2", "3", "1"}));
    EXPECT_EQ(ids(other), (Texts{"2", "1"}));
    EXPECT_TRUE(service.transcript().empty());
}

TEST_F(NormalisationTest, SortsByAllBytesOfTimesOfAnyLength) {
    // Times that differ in one byte at any place, or in length only, the lowest and the highest bytes among them.
    List list;
    const std::string common = "2024-05-01 10:15:30.123456 +02:00";
    for (std::size_t length = 0; length <= common.size(); ++length) {
        for (const char byte : {'\0', '\x01', '\x7F', '\x80', '\xFF'}) {
            list.push_back(withCall("", common.substr(0, length)));
            list.push_back(withCall("", common.substr(0, length) + byte));
            list.push_back(withCall("", common.substr(0, length) + byte + byte + "0"));
        }
    }
    std::mt19937 random(1);
    for (int turn = 0; turn < 20; ++turn) {
        std::shuffle(list.begin(), list.end(), random);

        adapter.normalizeMissedCallList(list);

        EXPECT_TRUE(std::is_sorted(list.begin(), list.end(), isMissedCallOrdered)) << turn;
    }
}

TEST_F(NormalisationTest, MovesWholeEntries) {
    MissedCallItem first = filledItem<Missed>();
    List list = {withCall("1", "a"), first};

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(describeEntry<Missed>(list.front()), describeEntry<Missed>(first));
}

TEST_F(NormalisationTest, KeepsEntriesOfEqualTimes) {
    List list = {withCall("1", "now"), withCall("2", "now"), withCall("3", "now")};

    adapter.normalizeMissedCallList(list);

    Texts found = ids(list);
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (Texts{"1", "2", "3"}));
}

TEST_F(NormalisationTest, MergesNothing) {
    List list = {withCall("1", "now"), withCall("1", "now")};

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(ids(list), (Texts{"1", "1"}));
}

TEST_F(NormalisationTest, DeletesEntriesWithoutCallsInTheirSortedOrder) {
    List list = {withoutCalls("first", "1"), withCall("middle", "5"), withoutCalls("1a:b", "9")};

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(ids(list), Texts{"middle"});
    EXPECT_EQ(service.requests(), (Texts{deletion("1ab"), deletion("first")}));
}

TEST_F(NormalisationTest, EmptiesAListInWhichNoEntryHasCalls) {
    List list = {withoutCalls("1", "1"), withoutCalls("2", "2"), withoutCalls("3", "3")};

    adapter.normalizeMissedCallList(list);

    EXPECT_TRUE(list.empty());
    EXPECT_EQ(service.requests(), (Texts{deletion("3"), deletion("2"), deletion("1")}));
}

TEST_F(NormalisationTest, SendsADeletionWithoutAnEntryForAnEmptyUniqueId) {
    List list = {withoutCalls("", "1")};

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(service.requests(), Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
                                        "<ReasonForMessage>delete_request</ReasonForMessage></Schema>"});
    EXPECT_TRUE(list.empty());
}

TEST_F(NormalisationTest, RemovesAnEntryWhateverTheServiceAnswers) {
    service.otherwise("failed");
    List list = {withoutCalls("1", "1"), withCall("2", "2")};
    adapter.normalizeMissedCallList(list);
    EXPECT_EQ(ids(list), Texts{"2"});

    adapter.init(nullptr);
    list = {withoutCalls("1", "1"), withCall("2", "2")};
    adapter.normalizeMissedCallList(list);
    EXPECT_EQ(ids(list), Texts{"2"});
}

List listOfFive() {
    MissedCallItem grouped = withCall("D", "8");
    MissedCallItem::MissedCallInfo call;
    call.timeDate = "7";
    call.groupName = "Second";
    grouped.appendCallInfoToList(call);
    call.timeDate = "8";
    call.groupName = "Sales %s";
    call.groupNumber = "12";
    grouped.setMissedCallInfoList({call, MissedCallItem::MissedCallInfo()});
    return {withoutCalls("A", "1"), withCall("B", "6"), withoutCalls("C", "7"), grouped, withCall("E", "2")};
}

const char* const empty = "(*it).getMissedCallInfoList(): size:0, groupname:, groupNumber:\n";
const char* const one = "(*it).getMissedCallInfoList(): size:1, groupname:, groupNumber:\n";
const char* const two = "(*it).getMissedCallInfoList(): size:2, groupname:Sales %s, groupNumber:12\n";

TEST_F(NormalisationTest, LogsTheWalkAndItsRestartAfterEachRemoval) {
    logEverything();
    List list = listOfFive();

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(ids(list), (Texts{"D", "B", "E"}));
    EXPECT_EQ(fakePlatform().logTexts(),
              (Texts{"before sort normalizeMissedCallList: missedCallList.size():5\n",
                     "after sort normalizeMissedCallList: missedCallList.size():5\n",
                     two,    // D
                     empty,  // C
                     "CallListDatabaseAdapter::updateEntries msg: \n " + deletion("C") + "\n", "DAS resp ok \n",
                     two,    // D
                     one,    // B
                     one,    // E
                     empty,  // A
                     "CallListDatabaseAdapter::updateEntries msg: \n " + deletion("A") + "\n", "DAS resp ok \n",
                     two,  // D
                     one,  // B
                     one}));
    std::string levels;
    for (const LogLine& line : fakePlatform().log) {
        EXPECT_EQ(line.module, "CallListDatabaseAdapter");
        EXPECT_EQ(line.sourceFile, "CallListDatabaseAdapter");
        levels += std::to_string(line.level);
    }
    EXPECT_EQ(levels, "665555555555555");
}

TEST_F(NormalisationTest, LogsTheWalkWithoutTheSizesAtLevelFiveAlone) {
    fakePlatform().switchOn("CallListDatabaseAdapter", 5);
    List list = {withCall("1", "2"), withCall("2", "1")};

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(fakePlatform().logTexts(), (Texts{one, one}));
}

TEST_F(NormalisationTest, LogsTheSizesWithoutTheWalkAtLevelSixAlone) {
    fakePlatform().switchOn("CallListDatabaseAdapter", 6);
    List list = {withoutCalls("1", "2"), withCall("2", "1")};

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(fakePlatform().logTexts(), (Texts{"before sort normalizeMissedCallList: missedCallList.size():2\n",
                                                "after sort normalizeMissedCallList: missedCallList.size():2\n"}));
}

TEST_F(NormalisationTest, SendsTheSameRequestsWhetherItLogsOrNot) {
    List list = listOfFive();
    List logged = listOfFive();

    adapter.normalizeMissedCallList(list);
    const Texts requests = service.requests();
    EXPECT_TRUE(fakePlatform().log.empty());
    service.clearTranscript();
    logEverything();
    adapter.normalizeMissedCallList(logged);

    EXPECT_EQ(requests, (Texts{deletion("C"), deletion("A")}));
    EXPECT_EQ(service.requests(), requests);
    EXPECT_EQ(ids(list), ids(logged));
}

TEST_F(NormalisationTest, LogsTheRestWhenTheServiceSwitchesTheLogOn) {
    service.otherwise([this](const std::string&) {
        if (service.transcript().size() == 1) {
            fakePlatform().switchOn("CallListDatabaseAdapter", 5);
        }
        return std::string("ok");
    });
    List list = listOfFive();

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(fakePlatform().logTexts(),
              (Texts{"DAS resp ok \n", two, one, one, empty,
                     "CallListDatabaseAdapter::updateEntries msg: \n " + deletion("A") + "\n", "DAS resp ok \n", two,
                     one, one}));
}

TEST_F(NormalisationTest, LogsNothingMoreWhenTheServiceSwitchesTheLogOff) {
    logEverything();
    service.otherwise([this](const std::string&) {
        if (service.transcript().size() == 2) {
            fakePlatform().loggingOn.clear();
        }
        return std::string("ok");
    });
    List list = listOfFive();

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(ids(list), (Texts{"D", "B", "E"}));
    EXPECT_EQ(fakePlatform().logTexts().back(),
              "CallListDatabaseAdapter::updateEntries msg: \n " + deletion("A") + "\n");
}

/// The state of the list when the service throws at its n-th request.
void expectStateAfterThrow(bool logs, std::size_t at, const Texts& left) {
    fakePlatform().reset();
    if (logs) {
        fakePlatform().switchOn("CallListDatabaseAdapter", 5);
        fakePlatform().switchOn("CallListDatabaseAdapter", 6);
    }
    calljournal::ScriptedDataAccessService service;
    service.otherwise([&service, at](const std::string&) {
        if (service.transcript().size() == at) {
            throw std::runtime_error("down");
        }
        return std::string("ok");
    });
    CallListDatabaseAdapter adapter;
    adapter.init(&service);
    List list = {withoutCalls("1", "1"), withCall("2", "2"),     withoutCalls("3", "3"), withCall("4", "4"),
                 withoutCalls("5", "5"), withoutCalls("6", "6"), withCall("7", "7")};

    EXPECT_THROW(adapter.normalizeMissedCallList(list), std::runtime_error) << at;

    EXPECT_EQ(ids(list), left) << at;
    for (const MissedCallItem& item : list) {
        const bool hasCall = item.getUniqueId() == "2" || item.getUniqueId() == "4" || item.getUniqueId() == "7";
        EXPECT_EQ(item.getMissedCallInfoList().size(), hasCall ? 1u : 0u);
    }
    EXPECT_EQ(service.transcript().size(), at);
}

TEST_F(NormalisationTest, KeepsTheEntryAtHandAndThoseBehindItWhenTheServiceThrows) {
    for (const bool logs : {false, true}) {
        expectStateAfterThrow(logs, 1, {"7", "6", "5", "4", "3", "2", "1"});
        expectStateAfterThrow(logs, 2, {"7", "5", "4", "3", "2", "1"});
        expectStateAfterThrow(logs, 3, {"7", "4", "3", "2", "1"});
        expectStateAfterThrow(logs, 4, {"7", "4", "2", "1"});
    }
}

TEST_F(NormalisationTest, HasTheListInItsStateOfTheWalkWheneverTheServiceIsAsked) {
    for (const bool logs : {false, true}) {
        if (logs) {
            logEverything();
        }
        List list = {withoutCalls("1", "1"), withCall("2", "2"), withoutCalls("3", "3"), withoutCalls("4", "4")};
        std::vector<Texts> states;
        service.otherwise([&list, &states](const std::string&) {
            states.push_back(ids(list));
            return std::string("ok");
        });

        adapter.normalizeMissedCallList(list);

        EXPECT_EQ(states, (std::vector<Texts>{{"4", "3", "2", "1"}, {"3", "2", "1"}, {"2", "1"}})) << logs;
        EXPECT_EQ(ids(list), Texts{"2"});
    }
}

/// The ids of a long list, newest first, of which every second entry has no calls, without the first `removed` of
/// those.
Texts longListWithout(std::size_t size, std::size_t removed) {
    Texts left;
    for (std::size_t number = size; number-- > 0;) {
        const bool hasCall = number % 2 == 0;
        if (hasCall || removed == 0) {
            left.push_back(std::to_string(100000 + number));
        } else {
            --removed;
        }
    }
    return left;
}

TEST_F(NormalisationTest, LeavesALongListInOrderWhereverTheServiceThrows) {
    const std::size_t size = 1000;
    for (const std::size_t at : {1u, 2u, 60u, 100u, 101u, 250u, 400u, 499u, 500u, 501u}) {
        List list;
        for (std::size_t number = 0; number < size; ++number) {
            const std::string key = std::to_string(100000 + number);
            list.push_back(number % 2 == 0 ? withCall(key, key) : withoutCalls(key, key));
        }
        service.clearTranscript();
        service.otherwise([&](const std::string&) {
            if (service.transcript().size() == at) {
                throw std::runtime_error("down");
            }
            return std::string("ok");
        });

        if (at <= size / 2) {
            EXPECT_THROW(adapter.normalizeMissedCallList(list), std::runtime_error);
        } else {
            adapter.normalizeMissedCallList(list);
        }

        EXPECT_EQ(ids(list), longListWithout(size, at - 1)) << at;
    }
}

/// Switch questions while the log is off, for a list of which every second entry has no calls.
unsigned questionsFor(std::size_t size) {
    fakePlatform().reset();
    calljournal::ScriptedDataAccessService service;
    CallListDatabaseAdapter adapter;
    adapter.init(&service);
    List list;
    for (std::size_t number = 0; number < size; ++number) {
        const std::string key = std::to_string(100000 + number);
        list.push_back(number % 2 == 0 ? withCall(key, key) : withoutCalls(key, key));
    }
    adapter.normalizeMissedCallList(list);
    EXPECT_EQ(list.size(), size - size / 2);
    EXPECT_EQ(service.transcript().size(), size / 2);
    return fakePlatform().switchQuestions;
}

TEST_F(NormalisationTest, AsksForTheLogInProportionToTheListWhileItIsOff) {
    EXPECT_LE(questionsFor(1000), 10u * 1000u);
    EXPECT_LE(questionsFor(4000), 10u * 4000u);
}

TEST_F(NormalisationTest, SortsALongListOfEqualTimes) {
    List list;
    for (int number = 0; number < 5000; ++number) {
        list.push_back(withCall(std::to_string(number), "now"));
    }

    adapter.normalizeMissedCallList(list);

    EXPECT_EQ(list.size(), 5000u);
}

/// A list of entries with different keys, some without calls.
List randomList(std::mt19937& random) {
    std::vector<int> keys(random() % 30);
    for (std::size_t index = 0; index < keys.size(); ++index) {
        keys[index] = static_cast<int>(index);
    }
    std::shuffle(keys.begin(), keys.end(), random);
    List list;
    for (const int key : keys) {
        const std::string text = std::string(1, static_cast<char>(key * 8)) + std::string(random() % 3, ':');
        if (random() % 3 == 0) {
            list.push_back(withoutCalls("id:" + std::to_string(key), text));
        } else {
            list.push_back(withCall(std::to_string(key), text));
            list.back().appendCallInfoToList(filledCall<Missed>());
        }
    }
    return list;
}

std::vector<rules::Entry> describeList(const List& list) {
    std::vector<rules::Entry> entries;
    for (const MissedCallItem& item : list) {
        entries.push_back(describeEntry<Missed>(item));
    }
    return entries;
}

TEST_F(NormalisationTest, DoesWhatTheLiteralWalkDoesToRandomLists) {
    const unsigned seed = 20240501;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int round = 0; round < 1000; ++round) {
        List list = randomList(random);
        fakePlatform().reset();
        service.clearTranscript();
        if (round % 2 == 0) {
            logEverything();
        }
        const rules::Normalised expected = rules::normalise(describeList(list));

        adapter.normalizeMissedCallList(list);

        ASSERT_EQ(describeList(list), expected.list) << "seed " << seed << " round " << round;
        ASSERT_EQ(service.requests(), expected.requests) << "seed " << seed << " round " << round;
        ASSERT_EQ(fakePlatform().logTexts(), round % 2 == 0 ? expected.log : Texts{})
            << "seed " << seed << " round " << round;
    }
}

TEST_F(NormalisationTest, FollowsTheReadingOfAReply) {
    Helper::init();
    List list(3);
    const std::string reply =
        "<Schema name=\"CallLogMissedCalls\">"
        "<Entry><UniqueId>1</UniqueId><Item><TimeDate>2024-01-01</TimeDate></Item></Entry>"
        "<Entry><UniqueId>2</UniqueId><EntryId>5</EntryId></Entry>"
        "<Entry><UniqueId>3</UniqueId><Item><TimeDate>2024-02-01</TimeDate></Item></Entry>"
        "</Schema>";

    adapter.processMissedCallDbXml(reply, list);
    Helper::finit();

    EXPECT_EQ(ids(list), (Texts{"3", "1"}));
    EXPECT_EQ(service.requests(), Texts{deletion("2")});
}

TEST_F(NormalisationTest, LogsReadingAndThenNormalising) {
    Helper::init();
    logEverything();
    fakePlatform().switchOn("CallListDatabaseAdapterHelper", 6);
    List list(3);

    adapter.processMissedCallDbXml("failed", list);
    Helper::finit();

    EXPECT_TRUE(list.empty());
    EXPECT_EQ(fakePlatform().logTexts(), (Texts{"parseXMLMissedCallList IN\n", "parseXMLMissedCallList OUT\n",
                                                "before sort normalizeMissedCallList: missedCallList.size():0\n",
                                                "after sort normalizeMissedCallList: missedCallList.size():0\n"}));
}

}  // namespace
