#include "StoreReply.h"

#include <gtest/gtest.h>

using calljournal::readEntryBodies;
using calljournal::readStoreReply;

namespace {

TEST(StoreReply, AnAcknowledgementListsTheIdsInOrder) {
    const auto reply = readStoreReply(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\"><Result>ok</Result>"
        "<UniqueId>7</UniqueId><UniqueId>x&amp;y</UniqueId></Schema>");
    EXPECT_TRUE(reply.ok);
    EXPECT_EQ(reply.reason, "");
    EXPECT_EQ(reply.uniqueIds, (std::vector<std::string>{"7", "x&y"}));
}

TEST(StoreReply, ARefusalHasItsReason) {
    const auto reply = readStoreReply("<Result>failed</Result><Reason>disk &lt;full&gt;</Reason>");
    EXPECT_FALSE(reply.ok);
    EXPECT_EQ(reply.reason, "disk <full>");
    EXPECT_TRUE(reply.uniqueIds.empty());
}

TEST(StoreReply, AnyOtherTextIsARefusalThatQuotesIt) {
    EXPECT_FALSE(readStoreReply("failed").ok);
    EXPECT_EQ(readStoreReply("failed").reason, "unexpected reply of the data access service: failed");
}

TEST(EntryBodies, AreTakenOutInOrder) {
    EXPECT_EQ(readEntryBodies("<Schema name=\"X\"><Entry>a</Entry><Entry></Entry><Entry>b<c</Entry></Schema>"),
              (std::vector<std::string>{"a", "", "b<c"}));
    EXPECT_TRUE(readEntryBodies("<Schema name=\"X\"></Schema>").empty());
    EXPECT_EQ(readEntryBodies("<Entry>a</Entry><Entry>cut").size(), 1u);
}

}  // namespace
