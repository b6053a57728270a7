#include <climits>
#include <gtest/gtest.h>
#include <string>

#include "FakePlatform.h"
#include "Kinds.h"

namespace {

TEST(CountNotification, TellsTheNumberInSignedDecimal) {
    const std::string before =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><Method>missedCallsCountUpdate</Method><Value>";
    const struct {
        unsigned int count;
        const char* digits;
    } rows[] = {{0u, "0"},          {1u, "1"}, {500u, "500"}, {2147483647u, "2147483647"}, {2147483648u, "-2147483648"},
                {4294967295u, "-1"}};

    for (const auto& row : rows) {
        EXPECT_EQ(Helper::obsReqMissedCallsCountUpdate(row.count), before + row.digits + "</Value>") << row.count;
    }
}

template <class Kind>
class NotificationOfKind : public ::testing::Test {
protected:
    static std::string notify(const typename Kind::Item& item, const std::string& id, int action) {
        return Kind::notification(item, id, static_cast<JournalServiceObserverIfc::ActionType>(action));
    }
};

TYPED_TEST_SUITE(NotificationOfKind, AllKinds, KindNames);

TYPED_TEST(NotificationOfKind, HoldsMethodBodyUniqueIdToDeleteAndAction) {
    const auto item = filledItem<TypeParam>();

    EXPECT_EQ(this->notify(item, "12:34", 3),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Method>" + TypeParam::format().method + "</Method>" +
                  TypeParam::encode(item, false) +
                  "<UniqueIdToDelete>12:34</UniqueIdToDelete><ActionType>3</ActionType>");
}

TYPED_TEST(NotificationOfKind, LeavesOutAnEmptyUniqueIdToDelete) {
    const auto item = filledItem<TypeParam>();

    EXPECT_EQ(this->notify(item, "", 0), "<?xml version=\"1.0\" encoding=\"utf-8\"?><Method>" +
                                             TypeParam::format().method + "</Method>" + TypeParam::encode(item, false) +
                                             "<ActionType>0</ActionType>");
}

TYPED_TEST(NotificationOfKind, DoesNotEscapeTheUniqueIdToDelete) {
    EXPECT_NE(this->notify(typename TypeParam::Item(), "<&>:\"", 1)
                  .find("<UniqueIdToDelete><&>:\"</UniqueIdToDelete><ActionType>1</ActionType>"),
              std::string::npos);
}

TYPED_TEST(NotificationOfKind, WritesTheActionInDecimal) {
    for (const int action : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 99, INT_MAX, -1, INT_MIN}) {
        EXPECT_EQ(this->notify(typename TypeParam::Item(), "", action),
                  "<?xml version=\"1.0\" encoding=\"utf-8\"?><Method>" + TypeParam::format().method + "</Method>" +
                      TypeParam::encode(typename TypeParam::Item(), false) + "<ActionType>" + std::to_string(action) +
                      "</ActionType>");
    }
}

TYPED_TEST(NotificationOfKind, WritesNothingToTheLog) {
    fakePlatform().reset();

    this->notify(filledItem<TypeParam>(), "1", 1);

    EXPECT_EQ(fakePlatform().switchQuestions, 0u);
}

TEST(MissedNotification, IsOneWholeText) {
    MissedCallItem item;
    item.setUniqueId("1:2");
    item.setSurname("A&B");

    EXPECT_EQ(Missed::notification(item, "7", JournalServiceObserverIfc::DELETED),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Method>missedCallsUpdate</Method><UniqueId>12</UniqueId>"
              "<Surname>A&amp;B</Surname><Viewed>False</Viewed><LogList></LogList>"
              "<UniqueIdToDelete>7</UniqueIdToDelete><ActionType>3</ActionType>");
}

TEST(DialledNotification, IsOneWholeText) {
    DialledCallItem item;
    item.setJournalSeviceGroupBy("key");

    EXPECT_EQ(Dialled::notification(item, "", JournalServiceObserverIfc::ADDED),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Method>dialledCallsUpdate</Method>"
              "<JSGroupBy>key</JSGroupBy><LogList></LogList><ActionType>0</ActionType>");
}

TEST(ReceivedNotification, IsOneWholeText) {
    EXPECT_EQ(Received::notification(ReceivedCallItem(), "", JournalServiceObserverIfc::CHANGED),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Method>receivedCallsUpdate</Method><LogList></LogList>"
              "<ActionType>1</ActionType>");
}

TEST(ForwardedNotification, IsOneWholeText) {
    EXPECT_EQ(Forwarded::notification(ForwardedCallItem(), "", JournalServiceObserverIfc::VIEWED),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Method>forwardedCallsUpdate</Method><LogList></LogList>"
              "<ActionType>2</ActionType>");
}

}  // namespace
