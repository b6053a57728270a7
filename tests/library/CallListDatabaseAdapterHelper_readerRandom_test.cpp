#include <algorithm>
#include <cstddef>
#include <deque>
#include <gtest/gtest.h>
#include <iostream>
#include <string>
#include <vector>

#include "FakePlatform.h"
#include "HostileTexts.h"
#include "Kinds.h"
#include "LiteralReading.h"
#include "ReaderEvents.h"
#include "Rounds.h"
#include "ScriptedDataAccessService.h"

/// The missed call list reader and what follows it, compared with the literal rules on random events and texts.
namespace {

constexpr unsigned seed = 815;

class RandomReaderTest : public ::testing::Test {
protected:
    RandomReaderTest() : texts(seed, rules::missedFormat()) {
        std::cout << "seed " << seed << '\n';
        fakePlatform().reset();
        fakePlatform().switchOn("CallListDatabaseAdapterHelper", 6);
        Helper::init();
    }
    ~RandomReaderTest() override { Helper::finit(); }

    const std::string& pick(const std::vector<std::string>& from) { return from[texts.below(from.size())]; }

    HostileTexts texts;
};

const std::vector<std::string>& elementNames() {
    static const std::vector<std::string> names = {"Entry",
                                                   "Entry",
                                                   "Entry",
                                                   "Item",
                                                   "Item",
                                                   "Item",
                                                   "Schema",
                                                   "Method",
                                                   "Category",
                                                   "Category",
                                                   "UniqueId",
                                                   "UniqueId",
                                                   "EntryId",
                                                   "Surname",
                                                   "Firstname",
                                                   "PictureClip",
                                                   "Picture",
                                                   "JSGroupBy",
                                                   "Viewed",
                                                   "CallBackNumber",
                                                   "Number",
                                                   "NumberType",
                                                   "ResolvedNumber",
                                                   "ConnectedNumberPriority",
                                                   "ConnectedNumber",
                                                   "ConnectedNumberType",
                                                   "ConnectedSurname",
                                                   "ConnectedFirstName",
                                                   "IsBluetoothCall",
                                                   "TimeDate",
                                                   "Duration",
                                                   "CompletedElsewhere",
                                                   "TargetLog",
                                                   "NumberPresentation",
                                                   "NamePresentation",
                                                   "TimeFormat",
                                                   "DeflectNumberPresentation",
                                                   "DeflectNumber",
                                                   "DeflectNumberType",
                                                   "DeflectNamePresentation",
                                                   "DeflectName",
                                                   "GroupName",
                                                   "GroupNumber",
                                                   "TransferType",
                                                   "UniqueID",
                                                   "Office",
                                                   "ContactSource",
                                                   "LogList",
                                                   "NoSuchTag",
                                                   ""};
    return names;
}

const std::vector<std::string>& dataTexts() {
    static const std::vector<std::string> data = {"Missed",  "Missed",        "getMissedCallList",
                                                  "True",    "False",         "",
                                                  "1",       "2024-05-01",    "\n",
                                                  "&amp;",   "&lt;x",         "MOBILE",
                                                  "PRIVATE", "FORM_AM",       "ALLOWED",
                                                  "IN_BUSY", "IN_GROUP_BUSY", "x",
                                                  "Dialled"};
    return data;
}

const std::vector<std::string>& schemaNames() {
    static const std::vector<std::string> names = {"CallLogMissedCalls",
                                                   "CallLogMissedCalls",
                                                   "CallLogMissedCalls",
                                                   "CallLog",
                                                   "CallLogPhoneBook",
                                                   "Conversations",
                                                   "",
                                                   "CallLogDialledCalls"};
    return names;
}

rules::Entry describeParser(const Helper::MissedCallParser& parser) {
    return describeEntry<Missed>(parser.currentEntry);
}

TEST_F(RandomReaderTest, FollowsTheLiteralRulesEventByEvent) {
    std::size_t entries = 0;
    for (unsigned round = 0; round < rounds(1500); ++round) {
        std::deque<MissedCallItem> output;
        Helper::MissedCallParser parser(output);
        ReaderEvents events(parser);
        rules::ListReader expected;
        fakePlatform().log.clear();
        std::string history;
        if (texts.below(4) != 0) {
            events.schema("CallLogMissedCalls");
            expected.begin("Schema", {"name", "CallLogMissedCalls"});
        }
        for (std::size_t count = texts.below(80); count > 0; --count) {
            const std::string name = pick(elementNames());
            const std::string text = name == "Category" && texts.below(4) != 0 ? "Missed" : pick(dataTexts());
            switch (texts.below(4)) {
                case 0: {
                    std::vector<std::string> attributes;
                    if (texts.below(8) != 0) {
                        attributes = {"name", pick(schemaNames())};
                    }
                    history += "<" + name + "(" + (attributes.empty() ? "" : attributes[1]) + ")>";
                    events.begin(name, attributes);
                    expected.begin(name, attributes);
                    break;
                }
                case 1:
                    history += "</" + name + ">";
                    events.end(name);
                    expected.end(name);
                    break;
                default:
                    history += "<" + name + ">" + text;
                    events.begin(name).data(text);
                    expected.begin(name, {});
                    expected.data(text);
                    break;
            }
            ASSERT_EQ(describeParser(parser), expected.entry) << "seed " << seed << "\n" << history;
            ASSERT_EQ(describeCall<Missed>(parser.currentCall), expected.call) << "seed " << seed << "\n" << history;
            ASSERT_EQ(static_cast<int>(parser.currentTag), expected.tag) << "seed " << seed << "\n" << history;
            ASSERT_EQ(parser.currentTagName, expected.tagName) << "seed " << seed << "\n" << history;
            ASSERT_EQ(parser.schemaName, expected.schemaName) << "seed " << seed << "\n" << history;
            ASSERT_EQ(parser.callLogType, expected.callLogType) << "seed " << seed << "\n" << history;
            ASSERT_EQ(output.size(), expected.output.size()) << "seed " << seed << "\n" << history;
        }
        for (std::size_t index = 0; index < output.size(); ++index) {
            ASSERT_EQ(describeEntry<Missed>(output[index]), expected.output[index]) << "seed " << seed << "\n"
                                                                                    << history;
        }
        ASSERT_EQ(fakePlatform().logTexts(), expected.log) << "seed " << seed << "\n" << history;
        entries += output.size();
    }
    EXPECT_GT(entries, rounds(500));
}

/// A reply with entries whose bodies are more or less spoilt. Each entry has a time of its own.
std::string randomReply(HostileTexts& texts) {
    std::string text;
    for (std::size_t count = texts.below(6); count > 0; --count) {
        rules::Entry entry = {texts.members(rules::emptyMissedItem()), {}};
        for (std::size_t calls = texts.below(3); calls > 0; --calls) {
            rules::Members call = texts.members(rules::emptyMissedCall());
            call["TimeDate"] = "2024-05-0" + std::to_string(count) + " " + std::to_string(texts.below(1000000));
            entry.calls.push_back(call);
        }
        entry.item["EntryId"] = std::to_string(2000 + texts.below(50)) + "-" + std::to_string(count);
        text += "<Entry>" + rules::encodeItem(rules::missedFormat(), entry, false) + "</Entry>";
    }
    text = "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">" + text + "</Schema>";
    for (std::size_t count = texts.below(3); count > 0; --count) {
        text = texts.spoil(text);
    }
    return text;
}

TEST_F(RandomReaderTest, ReadsRepliesByTheLiteralRules) {
    fakePlatform().reset();
    std::size_t entries = 0;
    for (unsigned round = 0; round < rounds(5000); ++round) {
        const std::string reply = randomReply(texts);
        std::deque<MissedCallItem> list(2);
        ASSERT_TRUE(Helper::parseXMLMissedCallList(reply, list));
        ASSERT_EQ(describeList(list), readLiterally(reply)) << "seed " << seed << " round " << round << "\n" << reply;
        entries += list.size();
    }
    EXPECT_GT(entries, rounds(3000));
}

TEST_F(RandomReaderTest, ReadsAndNormalisesRepliesByTheLiteralRules) {
    calljournal::ScriptedDataAccessService service;
    CallListDatabaseAdapter adapter;
    adapter.init(&service);
    std::size_t deletions = 0;
    std::size_t certain = 0;
    for (unsigned round = 0; round < rounds(4000); ++round) {
        const std::string reply = randomReply(texts);
        const std::vector<rules::Entry> read = readLiterally(reply);
        const rules::Normalised expected = rules::normalise(read);
        fakePlatform().reset();
        if (round % 2 == 0) {
            fakePlatform().switchOn("CallListDatabaseAdapter", 5);
            fakePlatform().switchOn("CallListDatabaseAdapter", 6);
        }
        service.clearTranscript();
        std::deque<MissedCallItem> list;

        adapter.processMissedCallDbXml(reply, list);

        ASSERT_EQ(list.size(), expected.list.size()) << "seed " << seed << " round " << round << "\n" << reply;
        ASSERT_EQ(service.transcript().size(), expected.requests.size()) << "seed " << seed << " round " << round;
        ASSERT_TRUE(std::is_sorted(list.begin(), list.end(), isMissedCallOrdered)) << "seed " << seed << "\n" << reply;
        deletions += service.transcript().size();
        if (!hasOneOrder(read)) {
            continue;
        }
        ++certain;
        ASSERT_EQ(describeList(list), expected.list) << "seed " << seed << " round " << round << "\n" << reply;
        ASSERT_EQ(service.requests(), expected.requests) << "seed " << seed << " round " << round << "\n" << reply;
        ASSERT_EQ(fakePlatform().logTexts(), round % 2 == 0 ? expected.log : std::vector<std::string>{})
            << "seed " << seed << " round " << round << "\n"
            << reply;
    }
    EXPECT_GT(deletions, rounds(500));
    EXPECT_GT(certain, rounds(2000));
}

}  // namespace
