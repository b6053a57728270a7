#include <cstdint>
#include <deque>
#include <gtest/gtest.h>
#include <string>

#include "ClientUtils.h"
#include "Kinds.h"
#include "WorkCounters.h"

namespace {

/// What `work` costs in basic blocks of the library and in allocations.
template <class Work>
WorkCounters costOf(const Work& work) {
    const WorkCounters before = workCounters();
    work();
    WorkCounters cost = workCounters();
    cost.blocks -= before.blocks;
    cost.allocations -= before.allocations;
    cost.allocatedBytes -= before.allocatedBytes;
    return cost;
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

/// An entry of ten calls in which every text is set, and too long to be kept inside a string object.
template <class Kind>
typename Kind::Item fullEntry() {
    typename Kind::Item item;
    for (const auto& member : Kind::itemMembers()) {
        member.set(item, member.form == rules::Form::text ? member.name + " of this entry" : "1");
    }
    typename Kind::Info call;
    for (const auto& member : Kind::infoMembers()) {
        member.set(call, member.form == rules::Form::text ? member.name + " of this call" : "1");
    }
    Kind::setCalls(item, {10, call});
    return item;
}

template <class Kind>
std::string servedBody(const typename Kind::Item& item) {
    std::string body = Kind::encode(item, false);
    for (const std::string& tag : {std::string("<Picture>"), std::string("</Picture>")}) {
        const std::size_t at = body.find(tag);
        if (at != std::string::npos) {
            body.insert(at + tag.size() - 1, "Clip");
        }
    }
    return body;
}

template <class Kind>
class CodecWork : public ::testing::Test {};
TYPED_TEST_SUITE(CodecWork, AllKinds, KindNames);

TYPED_TEST(CodecWork, EncodesABodyIntoOneAllocation) {
    const auto item = fullEntry<TypeParam>();
    std::string body;
    const WorkCounters escaping = costOf([&] {
        ClientUtils::escapeXMLString(item.getSurname());
        ClientUtils::escapeXMLString(item.getFirstname());
    });
    const WorkCounters cost = costOf([&] { body = TypeParam::encode(item, false); });
    EXPECT_EQ(cost.allocations, escaping.allocations + 1);
    EXPECT_LT(body.capacity(), body.size() * 5 / 4);
}

TYPED_TEST(CodecWork, EncodesInAFewStepsAnElement) {
    const auto item = fullEntry<TypeParam>();
    const auto elements = 10 * TypeParam::infoMembers().size();
    EXPECT_LT(costOf([&] { TypeParam::encode(item, false); }).blocks, 15 * elements);
}

TYPED_TEST(CodecWork, DecodesIntoWhatIsKeptOnly) {
    const std::string body = servedBody<TypeParam>(fullEntry<TypeParam>());
    typename TypeParam::Item item;
    const WorkCounters decoding = costOf([&] { TypeParam::decode(body.c_str(), item); });
    const WorkCounters copying = costOf([&] { const typename TypeParam::Item copy(item); });
    // The fields of the entry itself are set by copies.
    EXPECT_LE(decoding.allocations, copying.allocations + TypeParam::itemMembers().size());
}

TYPED_TEST(CodecWork, DecodesWhatIsJustAsItWasWrittenWithoutSearching) {
    const std::string body = servedBody<TypeParam>(fullEntry<TypeParam>());
    const std::string single = body.substr(body.find("<Item>") + 6, body.find("</Item>") - body.find("<Item>") - 6);
    const auto elements = TypeParam::infoMembers().size();
    typename TypeParam::Item item;
    typename TypeParam::Info call;
    EXPECT_LT(costOf([&] { TypeParam::decode(body.c_str(), item); }).blocks, 10 * 45 * elements);
    EXPECT_LT(costOf([&] { TypeParam::decodeCall(single.c_str(), call); }).blocks, 50 * elements);
}

TYPED_TEST(CodecWork, DecodesAnEntryOfNothingButCallsWithoutSearchingForItsFields) {
    const std::string body = servedBody<TypeParam>(fullEntry<TypeParam>());
    const std::string calls = body.substr(body.find("<LogList>"));
    typename TypeParam::Item item;
    const auto elements = TypeParam::infoMembers().size();
    EXPECT_LT(costOf([&] { TypeParam::decode(calls.c_str(), item); }).blocks, 10 * 45 * elements);
}

TYPED_TEST(CodecWork, DecodesInWorkThatGrowsWithTheTextOnly) {
    const std::string body = servedBody<TypeParam>(fullEntry<TypeParam>());
    const std::string call = body.substr(body.find("<Item>"), body.find("</Item>") + 7 - body.find("<Item>"));
    const auto cost = [&](const std::string& items) {
        typename TypeParam::Item item;
        const std::string text = "<LogList>" + items + "</LogList>";
        return costOf([&] { TypeParam::decode(text.c_str(), item); });
    };
    for (const std::string& part : {call, call + "junk", "<Item>&amp;</Item>" + call, std::string("<Item><</Item>"),
                                    std::string("<It<Item>a</Item>em>b</Item>")}) {
        SCOPED_TRACE(part.substr(0, 60));
        const WorkCounters once = cost(repeated(part, 100));
        const WorkCounters twice = cost(repeated(part, 200));
        EXPECT_LT(twice.blocks, once.blocks * 5 / 2);
        EXPECT_LT(twice.allocatedBytes, once.allocatedBytes * 5 / 2);
    }
}

TEST(ListWork, ReadsAListIntoWhatIsKeptOnly) {
    Helper::init();
    const std::string entry = "<Entry>" + servedBody<Missed>(fullEntry<Missed>()) + "</Entry>";
    const std::string reply = "<Schema name=\"CallLogMissedCalls\">" + repeated(entry, 100) + "</Schema>";
    std::deque<MissedCallItem> list;
    const WorkCounters reading = costOf([&] { Helper::parseXMLMissedCallList(reply, list); });
    const WorkCounters copying = costOf([&] { const std::deque<MissedCallItem> copy(list); });
    ASSERT_EQ(list.size(), 100U);
    EXPECT_LE(reading.allocations, copying.allocations + 100 * 7);
    EXPECT_LT(reading.blocks, 100 * 10 * 19 * 50U);
}

TEST(ListWork, SortsWithoutAnAllocationForEachEntry) {
    std::deque<MissedCallItem> list(1000, fullEntry<Missed>());
    for (std::size_t i = 0; i < list.size(); ++i) {
        auto calls = list[i].getMissedCallInfoList();
        calls.front().timeDate = std::to_string(i * 7919 % 1009);
        list[i].setMissedCallInfoList(calls);
    }
    CallListDatabaseAdapter adapter;
    const WorkCounters sorting = costOf([&] { adapter.normalizeMissedCallList(list); });
    const WorkCounters finding = costOf([&] { adapter.normalizeMissedCallList(list); });
    // What is left is the fake log's, which keeps the question for each entry.
    EXPECT_LE(sorting.allocations, finding.allocations + 20);
    EXPECT_EQ(list.front().getMissedCallInfoList().front().timeDate, "999");
}

TEST(ListWork, RemovesEntriesInWorkThatGrowsWithTheListOnly) {
    // Every other entry has no calls, and many stand on both sides of each.
    const MissedCallItem::MissedCallInfo call = fullEntry<Missed>().getMissedCallInfoList().front();
    const auto removing = [&call](std::size_t count) {
        std::deque<MissedCallItem> list(count);
        for (std::size_t i = 0; i < count; ++i) {
            list[i].setEntryId(std::to_string(100000 + i));
            if (i % 2 == 0) {
                list[i].appendCallInfoToList(call);
            }
        }
        CallListDatabaseAdapter adapter;
        const WorkCounters work = costOf([&] { adapter.normalizeMissedCallList(list); });
        EXPECT_EQ(list.size(), count / 2);
        return work;
    };
    const WorkCounters once = removing(2000);
    const WorkCounters twice = removing(4000);
    EXPECT_LT(twice.blocks, once.blocks * 5 / 2);
}

}  // namespace
