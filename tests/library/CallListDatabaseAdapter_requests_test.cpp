#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "FakePlatform.h"
#include "Kinds.h"
#include "ScriptedDataAccessService.h"
#include "VirtualTable.h"

/// The requests that the adapter sends and the lines it logs on the way.
namespace {

using Texts = std::vector<std::string>;

const char* const header = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";

class AdapterTest : public ::testing::Test {
protected:
    AdapterTest() {
        fakePlatform().reset();
        adapter.init(&service);
    }

    calljournal::ScriptedDataAccessService service;
    CallListDatabaseAdapter adapter;
};

struct AdapterLayout {
    virtual ~AdapterLayout() {}
    DataAccessServiceIfc* service;
};

class DerivedAdapter : public CallListDatabaseAdapter {};

TEST_F(AdapterTest, HoldsOneFieldAndHasNothingVirtualButItsDestructor) {
    const DerivedAdapter derived;

    EXPECT_EQ(sizeof(CallListDatabaseAdapter), sizeof(AdapterLayout));
    EXPECT_TRUE(std::has_virtual_destructor<CallListDatabaseAdapter>::value);
    EXPECT_EQ(changedSlots(&adapter, &derived, 2), (std::vector<std::size_t>{0, 1}));
}

TEST_F(AdapterTest, UsesTheThirdVirtualSlotOfTheService) {
    EXPECT_EQ(slotOf(&DataAccessServiceIfc::processRequest), 2u);
}

TEST_F(AdapterTest, AnswersFailedWithoutAService) {
    CallListDatabaseAdapter lonely;

    EXPECT_EQ(lonely.processRequest("<A>1</A>"), "failed");
    EXPECT_EQ(lonely.processRequest(""), "failed");
    EXPECT_EQ(lonely.updateEntries("<A>1</A>", "write_request", "CallLog"), "failed");
}

TEST_F(AdapterTest, SwallowsTheFailureOfItsEntryWriters) {
    CallListDatabaseAdapter lonely;

    lonely.updateEntry("x", "write_request", "CallLog");
    lonely.updateMissedEntry(MissedCallItem(), "write_request");
    lonely.updateDialledEntry(DialledCallItem(), "write_request");
    lonely.updateReceivedEntry(ReceivedCallItem(), "write_request");
    lonely.updateForwardedEntry(ForwardedCallItem(), "write_request");
    lonely.deleteFromConversationsTable("1");

    EXPECT_TRUE(fakePlatform().log.empty());
}

TEST_F(AdapterTest, AnswersFailedAgainOnceTheServiceIsTakenAway) {
    adapter.init(nullptr);

    EXPECT_EQ(adapter.processRequest("x"), "failed");
    EXPECT_TRUE(service.transcript().empty());
}

TEST_F(AdapterTest, HandsRequestAndReplyThroughUnchanged) {
    const std::string request("any <text> & \0", 14);
    const std::string reply("its \0 reply", 11);
    service.otherwise(reply);

    EXPECT_EQ(adapter.processRequest(request), reply);

    EXPECT_EQ(service.requests(), Texts{request});
    EXPECT_EQ(fakePlatform().switchQuestions, 0u);
}

TEST_F(AdapterTest, UsesTheLastServiceItWasGiven) {
    calljournal::ScriptedDataAccessService other;
    adapter.init(&other);

    adapter.processRequest("x");

    EXPECT_TRUE(service.transcript().empty());
    EXPECT_EQ(other.requests(), Texts{"x"});
}

TEST_F(AdapterTest, LeavesTheServiceAloneWhenDestroyed) {
    { CallListDatabaseAdapter().init(&service); }

    EXPECT_EQ(adapter.processRequest("x"), "ok");
}

TEST_F(AdapterTest, KnowsADeleteRequestByItsExactWord) {
    EXPECT_TRUE(adapter.isDeleteRequest("delete_request"));
    for (const char* const reason : {"Delete_request", "delete_request ", " delete_request", "", "write_request",
                                     "read_request", "delete_reques", "delete_requests", "DELETE_REQUEST"}) {
        EXPECT_FALSE(adapter.isDeleteRequest(reason)) << reason;
    }
    EXPECT_FALSE(adapter.isDeleteRequest(std::string("delete_request\0", 15)));
}

TEST_F(AdapterTest, WrapsEntriesIntoARequest) {
    const struct {
        const char* entries;
        const char* reason;
        const char* schema;
        const char* request;
    } rows[] = {
        {"<Entry>1</Entry>", "write_request", "CallLog",
         "<Schema name=\"CallLog\"><ReasonForMessage>write_request</ReasonForMessage><Entry>1</Entry></Schema>"},
        {"<Entry>1</Entry>", "", "CallLog", "<Schema name=\"CallLog\"><Entry>1</Entry></Schema>"},
        {"<Entry>1</Entry>", "write_request", "", "<ReasonForMessage>write_request</ReasonForMessage><Entry>1</Entry>"},
        {"", "read_request", "CallLog",
         "<Schema name=\"CallLog\"><ReasonForMessage>read_request</ReasonForMessage></Schema>"},
        {"", "", "", ""},
        {"", "", "CallLog", "<Schema name=\"CallLog\"></Schema>"},
        {"a & b <c", "<&>", "\"<&>",
         "<Schema name=\"\"<&>\"><ReasonForMessage><&></ReasonForMessage>a & b <c</Schema>"},
    };

    for (const auto& row : rows) {
        service.clearTranscript();
        EXPECT_EQ(adapter.updateEntries(row.entries, row.reason, row.schema), "ok");
        EXPECT_EQ(service.requests(), Texts{std::string(header) + row.request});
    }
}

TEST_F(AdapterTest, ReturnsTheReplyToItsEntriesUnchanged) {
    service.otherwise("<Result>failed</Result>");

    EXPECT_EQ(adapter.updateEntries("", "", ""), "<Result>failed</Result>");
}

TEST_F(AdapterTest, LogsRequestAndReplyAtLevelFive) {
    fakePlatform().switchOn("CallListDatabaseAdapter", 5);
    std::size_t linesBefore = 99;
    service.otherwise([&linesBefore](const std::string&) {
        linesBefore = fakePlatform().log.size();
        return std::string("100%s");
    });

    adapter.updateEntries("50%n", "write_request", "CallLog");

    EXPECT_EQ(fakePlatform().logTexts(), (Texts{"CallListDatabaseAdapter::updateEntries msg: \n "
                                                "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLog\">"
                                                "<ReasonForMessage>write_request</ReasonForMessage>50%n</Schema>\n",
                                                "DAS resp 100%s \n"}));
    EXPECT_EQ(linesBefore, 1u);
    for (const LogLine& line : fakePlatform().log) {
        EXPECT_EQ(line.module, "CallListDatabaseAdapter");
        EXPECT_EQ(line.sourceFile, "CallListDatabaseAdapter");
        EXPECT_EQ(line.level, 5);
    }
}

TEST_F(AdapterTest, LogsTheReplyFailedWithoutAService) {
    fakePlatform().switchOn("CallListDatabaseAdapter", 5);
    adapter.init(nullptr);

    adapter.updateEntry("", "", "");

    EXPECT_EQ(fakePlatform().logTexts(),
              (Texts{"CallListDatabaseAdapter::updateEntries msg: \n <?xml version=\"1.0\" encoding=\"utf-8\"?>\n",
                     "DAS resp failed \n"}));
}

TEST_F(AdapterTest, AsksTheSwitchAgainForTheReply) {
    service.otherwise([](const std::string&) {
        fakePlatform().switchOn("CallListDatabaseAdapter", 5);
        return std::string("ok");
    });

    adapter.updateEntries("", "", "");

    EXPECT_EQ(fakePlatform().logTexts(), Texts{"DAS resp ok \n"});
    EXPECT_EQ(fakePlatform().switchQuestions, 2u);
}

TEST_F(AdapterTest, LogsNoRequestAtAnyOtherLevel) {
    for (const int level : {1, 2, 3, 4, 6, 7}) {
        fakePlatform().switchOn("CallListDatabaseAdapter", level);
        fakePlatform().switchOn("CallListDatabaseAdapterHelper", 5);
    }

    adapter.updateEntries("x", "write_request", "CallLog");

    EXPECT_TRUE(fakePlatform().log.empty());
}

TEST_F(AdapterTest, SendsOneEntry) {
    adapter.updateEntry("<A>1</A>", "write_request", "CallLog");
    adapter.updateEntry("a & <b", "", "");

    EXPECT_EQ(service.requests(),
              (Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLog\">"
                     "<ReasonForMessage>write_request</ReasonForMessage><Entry><A>1</A></Entry></Schema>",
                     "<?xml version=\"1.0\" encoding=\"utf-8\"?><Entry>a & <b</Entry>"}));
}

TEST_F(AdapterTest, SendsNoEntryElementForAnEmptyBody) {
    adapter.updateEntry("", "write_request", "CallLog");

    EXPECT_EQ(service.requests(), Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLog\">"
                                        "<ReasonForMessage>write_request</ReasonForMessage></Schema>"});
}

TEST_F(AdapterTest, DeletesTheConversationsOfACallLogEntry) {
    adapter.deleteFromConversationsTable("12:34<&>");

    EXPECT_EQ(service.requests(), Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"Conversations\">"
                                        "<ReasonForMessage>delete_request</ReasonForMessage>"
                                        "<Entry><CallLogId>12:34<&></CallLogId></Entry></Schema>"});
}

TEST_F(AdapterTest, DeletesConversationsWithoutAnIdToo) {
    adapter.deleteFromConversationsTable("");

    EXPECT_EQ(service.requests(), Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"Conversations\">"
                                        "<ReasonForMessage>delete_request</ReasonForMessage></Schema>"});
}

TEST_F(AdapterTest, LogsTheDeletionOfConversationsAtLevelSix) {
    fakePlatform().switchOn("CallListDatabaseAdapter", 6);
    std::size_t linesBefore = 99;
    service.otherwise([&linesBefore](const std::string&) {
        linesBefore = fakePlatform().log.size();
        return std::string("50%s");
    });

    adapter.deleteFromConversationsTable("%d");

    EXPECT_EQ(fakePlatform().logTexts(),
              (Texts{"CallListDatabaseAdapter::deleteFromConversationsTable() - DAS req "
                     "'<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"Conversations\">"
                     "<ReasonForMessage>delete_request</ReasonForMessage>"
                     "<Entry><CallLogId>%d</CallLogId></Entry></Schema>'",
                     "CallListDatabaseAdapter::deleteFromConversationsTable() - DAS resp '50%s'"}));
    EXPECT_EQ(linesBefore, 1u);
    for (const LogLine& line : fakePlatform().log) {
        EXPECT_EQ(line.module, "CallListDatabaseAdapter");
        EXPECT_EQ(line.sourceFile, "CallListDatabaseAdapter");
        EXPECT_EQ(line.level, 6);
    }
}

TEST_F(AdapterTest, LogsNoDeletionOfConversationsAtAnyOtherLevel) {
    for (const int level : {1, 2, 3, 4, 5, 7}) {
        fakePlatform().switchOn("CallListDatabaseAdapter", level);
    }

    adapter.deleteFromConversationsTable("1");

    EXPECT_TRUE(fakePlatform().log.empty());
    EXPECT_EQ(fakePlatform().switchQuestions, 2u);
}

TEST_F(AdapterTest, LetsAnExceptionOfTheServicePass) {
    service.otherwise(calljournal::ScriptedDataAccessService::failing(std::runtime_error("down")));

    EXPECT_THROW(adapter.processRequest("x"), std::runtime_error);
    EXPECT_THROW(adapter.updateEntries("x", "", ""), std::runtime_error);
    EXPECT_THROW(adapter.updateMissedEntry(MissedCallItem(), "write_request"), std::runtime_error);
    EXPECT_THROW(adapter.deleteFromConversationsTable("1"), std::runtime_error);
}

TEST_F(AdapterTest, WritesAMissedEntry) {
    MissedCallItem item;
    item.setUniqueId("12:34");
    item.setSurname("A&B");

    adapter.updateMissedEntry(item, "write_request");
    adapter.updateMissedEntry(item, "delete_request");

    EXPECT_EQ(service.requests(),
              (Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
                     "<ReasonForMessage>write_request</ReasonForMessage><Entry><UniqueId>1234</UniqueId>"
                     "<Surname>A&amp;B</Surname><Viewed>False</Viewed><LogList></LogList></Entry></Schema>",
                     "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
                     "<ReasonForMessage>delete_request</ReasonForMessage><Entry><UniqueId>1234</UniqueId></Entry>"
                     "</Schema>"}));
}

TEST_F(AdapterTest, WritesADialledEntry) {
    DialledCallItem item;
    item.setUniqueId("1");
    item.setJournalSeviceGroupBy("key");

    adapter.updateDialledEntry(item, "write_request");
    adapter.updateDialledEntry(item, "delete_request");

    EXPECT_EQ(service.requests(),
              (Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogDialledCalls\">"
                     "<ReasonForMessage>write_request</ReasonForMessage><Entry><UniqueId>1</UniqueId>"
                     "<JSGroupBy>key</JSGroupBy><LogList></LogList></Entry></Schema>",
                     "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogDialledCalls\">"
                     "<ReasonForMessage>delete_request</ReasonForMessage><Entry><UniqueId>1</UniqueId></Entry>"
                     "</Schema>"}));
}

TEST_F(AdapterTest, WritesAReceivedEntry) {
    ReceivedCallItem item;
    item.setEntryId("7");

    adapter.updateReceivedEntry(item, "write_request");
    adapter.updateReceivedEntry(item, "delete_request");

    EXPECT_EQ(service.requests(),
              (Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogReceivedCalls\">"
                     "<ReasonForMessage>write_request</ReasonForMessage><Entry><EntryId>7</EntryId>"
                     "<LogList></LogList></Entry></Schema>",
                     "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogReceivedCalls\">"
                     "<ReasonForMessage>delete_request</ReasonForMessage></Schema>"}));
}

TEST_F(AdapterTest, WritesAForwardedEntry) {
    ForwardedCallItem item;
    item.setUniqueId("::");

    adapter.updateForwardedEntry(item, "write_request");
    adapter.updateForwardedEntry(item, "delete_request");

    EXPECT_EQ(service.requests(),
              (Texts{"<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogForwardedCalls\">"
                     "<ReasonForMessage>write_request</ReasonForMessage><Entry><LogList></LogList></Entry></Schema>",
                     "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogForwardedCalls\">"
                     "<ReasonForMessage>delete_request</ReasonForMessage></Schema>"}));
}

template <class Kind>
class UpdateOfKind : public AdapterTest {};

TYPED_TEST_SUITE(UpdateOfKind, AllKinds, KindNames);

TYPED_TEST(UpdateOfKind, SendsTheWholeBodyUnlessItIsADeletion) {
    const auto item = filledItem<TypeParam>();

    for (const char* const reason : {"write_request", "read_request", "", "Delete_request", "delete_request "}) {
        this->service.clearTranscript();
        (this->adapter.*TypeParam::update)(item, reason);
        EXPECT_EQ(this->service.requests(),
                  Texts{rules::request(TypeParam::format().schema, reason, TypeParam::encode(item, false))});
    }
}

TYPED_TEST(UpdateOfKind, SendsTheUniqueIdForADeletion) {
    (this->adapter.*TypeParam::update)(filledItem<TypeParam>(), "delete_request");

    EXPECT_EQ(this->service.requests(),
              Texts{rules::request(TypeParam::format().schema, "delete_request", "<UniqueId>the UniqueId</UniqueId>")});
}

TYPED_TEST(UpdateOfKind, SendsNoEntryForADeletionWithoutAUniqueId) {
    (this->adapter.*TypeParam::update)(typename TypeParam::Item(), "delete_request");

    EXPECT_EQ(this->service.requests(), Texts{rules::request(TypeParam::format().schema, "delete_request", "")});
}

TYPED_TEST(UpdateOfKind, LogsRequestAndReply) {
    fakePlatform().switchOn("CallListDatabaseAdapter", 5);

    (this->adapter.*TypeParam::update)(typename TypeParam::Item(), "delete_request");

    EXPECT_EQ(fakePlatform().logTexts(), (Texts{"CallListDatabaseAdapter::updateEntries msg: \n " +
                                                    this->service.transcript().front().request + "\n",
                                                "DAS resp ok \n"}));
}

}  // namespace
