#include <deque>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "FakePlatform.h"
#include "Kinds.h"

/// The missed call list read from whole replies, through the platform's XML parser.
namespace {

using Texts = std::vector<std::string>;

const char* const reply =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
    "<Schema name=\"CallLogMissedCalls\">"
    "<ReasonForMessage>read_request</ReasonForMessage>"
    "<Entry>"
    "<UniqueId>1234</UniqueId>"
    "<EntryId>7</EntryId>"
    "<Surname>Smith &amp; Co</Surname>"
    "<Firstname>Ann</Firstname>"
    "<PictureClip>p.jpg</PictureClip>"
    "<Viewed>True</Viewed>"
    "<LogList>"
    "<Item>"
    "<Number>030&amp;1234</Number>"
    "<NumberType>MOBILE</NumberType>"
    "<ConnectedNumber>0305555</ConnectedNumber>"
    "<ConnectedNumberType>PRIVATE</ConnectedNumberType>"
    "<ConnectedSurname>Jones</ConnectedSurname>"
    "<ConnectedFirstName>Bob</ConnectedFirstName>"
    "<TimeDate>2024-05-01 10:15:00</TimeDate>"
    "<CompletedElsewhere>True</CompletedElsewhere>"
    "<TargetLog>IN_NO_ANSWER</TargetLog>"
    "<NumberPresentation>ALLOWED</NumberPresentation>"
    "<NamePresentation>NOT_ALLOWED</NamePresentation>"
    "<DeflectNumberPresentation>ALLOWED</DeflectNumberPresentation>"
    "<DeflectNumber>0306666</DeflectNumber>"
    "<DeflectNumberType>BUSINESS1</DeflectNumberType>"
    "<DeflectNamePresentation>NOT_ALLOWED</DeflectNamePresentation>"
    "<DeflectName>Deflector</DeflectName>"
    "<TimeFormat>FORM_PM</TimeFormat>"
    "<GroupName>Sales</GroupName>"
    "<GroupNumber>12</GroupNumber>"
    "</Item>"
    "<Item><TimeDate>2024-04-30 09:00:00</TimeDate></Item>"
    "</LogList>"
    "</Entry>"
    "<Entry><UniqueId>5</UniqueId></Entry>"
    "</Schema>";

class MissedCallListTest : public ::testing::Test {
protected:
    MissedCallListTest() {
        fakePlatform().reset();
        Helper::init();
    }
    ~MissedCallListTest() override { Helper::finit(); }

    /// The unique ids of the entries in the text.
    static Texts idsIn(const std::string& text) {
        std::deque<MissedCallItem> list;
        EXPECT_TRUE(Helper::parseXMLMissedCallList(text, list));
        Texts ids;
        for (const MissedCallItem& item : list) {
            ids.push_back(item.getUniqueId());
        }
        return ids;
    }
};

TEST_F(MissedCallListTest, IsAskedForByItsReadRequest) {
    EXPECT_EQ(Helper::readMissedCallList(),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
              "<ReasonForMessage>read_request</ReasonForMessage></Schema>");
}

TEST_F(MissedCallListTest, IsReadWithEveryMemberOfItsEntriesAndCalls) {
    std::deque<MissedCallItem> list;

    EXPECT_TRUE(Helper::parseXMLMissedCallList(reply, list));

    ASSERT_EQ(list.size(), 2u);
    const rules::Members item = {{"UniqueId", "1234"}, {"EntryId", "7"},         {"Surname", "Smith & Co"},
                                 {"Firstname", "Ann"}, {"PictureClip", "p.jpg"}, {"Viewed", "1"}};
    rules::Members call = rules::emptyMissedCall();
    rules::Members second = call;
    call["Number"] = "030&amp;1234";
    call["NumberType"] = "4";
    call["ConnectedNumber"] = "0305555";
    call["ConnectedNumberType"] = "1";
    call["ConnectedSurname"] = "Jones";
    call["ConnectedFirstName"] = "Bob";
    call["TimeDate"] = "2024-05-01 10:15:00";
    call["CompletedElsewhere"] = "1";
    call["TargetLog"] = "1";
    call["NumberPresentation"] = "1";
    call["NamePresentation"] = "2";
    call["DeflectNumberPresentation"] = "1";
    call["DeflectNumber"] = "0306666";
    call["DeflectNumberType"] = "2";
    call["DeflectNamePresentation"] = "2";
    call["DeflectName"] = "Deflector";
    call["TimeFormat"] = "2";
    call["GroupName"] = "Sales";
    call["GroupNumber"] = "12";
    second["TimeDate"] = "2024-04-30 09:00:00";
    EXPECT_EQ(describeEntry<Missed>(list[0]), (rules::Entry{item, {call, second}}));
    EXPECT_EQ(list[1].getUniqueId(), "5");
    EXPECT_TRUE(list[1].getMissedCallInfoList().empty());
}

TEST_F(MissedCallListTest, ReplacesWhatIsInTheList) {
    std::deque<MissedCallItem> list(3);

    EXPECT_TRUE(Helper::parseXMLMissedCallList(reply, list));
    EXPECT_EQ(list.size(), 2u);
    EXPECT_TRUE(Helper::parseXMLMissedCallList("", list));
    EXPECT_TRUE(list.empty());
}

TEST_F(MissedCallListTest, IsEmptyBeforeInit) {
    Helper::finit();

    EXPECT_EQ(idsIn(reply), Texts{});
}

TEST_F(MissedCallListTest, IsEmptyForAReplyThatHoldsNoEntries) {
    EXPECT_EQ(idsIn("failed"), Texts{});
    EXPECT_EQ(idsIn(""), Texts{});
    EXPECT_EQ(idsIn("<?xml version=\"1.0\" encoding=\"utf-8\"?>"), Texts{});
    EXPECT_EQ(idsIn("<Schema name=\"CallLogMissedCalls\"></Schema>"), Texts{});
}

std::string inSchema(const std::string& name, const std::string& text) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"" + name + "\">" + text + "</Schema>";
}

TEST_F(MissedCallListTest, IsReadFromItsOwnSchemaOnlyUnlessACategorySaysSo) {
    const std::string entry = "<Entry><UniqueId>1</UniqueId></Entry>";
    const std::string missed = "<Category>Missed</Category>" + entry;

    EXPECT_EQ(idsIn(inSchema("CallLogMissedCalls", entry)), Texts{"1"});
    for (const char* const name : {"CallLog", "CallLogPhoneBook", "Conversations", ""}) {
        EXPECT_EQ(idsIn(inSchema(name, entry)), Texts{}) << name;
        EXPECT_EQ(idsIn(inSchema(name, missed)), Texts{"1"}) << name;
    }
    for (const char* const name : {"CallLogDialledCalls", "CallLogReceivedCalls", "CallLogForwardedCalls", "x"}) {
        EXPECT_EQ(idsIn(inSchema(name, missed)), Texts{}) << name;
    }
    EXPECT_EQ(idsIn("<Message>" + missed + "</Message>"), Texts{"1"});
}

TEST_F(MissedCallListTest, LeavesOutEntriesFromAnotherCategoryOn) {
    EXPECT_EQ(idsIn(inSchema("CallLogMissedCalls",
                             "<Entry><UniqueId>1</UniqueId></Entry>"
                             "<Entry><UniqueId>2</UniqueId><Category>Dialled</Category></Entry>"
                             "<Entry><UniqueId>3</UniqueId></Entry>"
                             "<Entry><UniqueId>4</UniqueId><Category>Missed</Category></Entry>"
                             "<Entry><UniqueId>5</UniqueId></Entry>"
                             "<Entry><UniqueId>6</UniqueId><Category>x</Category></Entry>"
                             "<Method>getMissedCallList</Method>"
                             "<Entry><UniqueId>7</UniqueId></Entry>")),
              (Texts{"1", "4", "5", "7"}));
}

TEST_F(MissedCallListTest, HoldsTheEntriesBeforeTheXmlGoesWrong) {
    EXPECT_EQ(idsIn("<Schema name=\"CallLogMissedCalls\"><Entry><UniqueId>1</UniqueId></Entry><Entry><UniqueId>2"),
              Texts{"1"});
    EXPECT_EQ(idsIn("<Schema name=\"CallLogMissedCalls\"><Entry><UniqueId>1</UniqueId></Entry>"), Texts{"1"});
}

TEST_F(MissedCallListTest, TakesBlanksBetweenElementsForTheLastElement) {
    std::deque<MissedCallItem> list;

    Helper::parseXMLMissedCallList(
        inSchema("CallLogMissedCalls", "<Entry>\n<UniqueId>1</UniqueId>\n<EntryId>2</EntryId>\n</Entry>"), list);

    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].getUniqueId(), "1");
    EXPECT_EQ(list[0].getEntryId(), "\n");
}

TEST_F(MissedCallListTest, HasForbiddenBytesReplacedByQuotes) {
    std::deque<MissedCallItem> list;

    Helper::parseXMLMissedCallList(inSchema("CallLogMissedCalls",
                                            "<Entry><Surname>A\x01"
                                            "B</Surname></Entry>"),
                                   list);

    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].getSurname(), "A'B");
}

TEST_F(MissedCallListTest, LogsItsSteps) {
    fakePlatform().switchOn("CallListDatabaseAdapterHelper", 5);
    fakePlatform().switchOn("CallListDatabaseAdapterHelper", 6);
    const std::string text = inSchema("CallLogMissedCalls", "100%s<Entry><UniqueId>1</UniqueId></Entry>");

    EXPECT_EQ(idsIn(text), Texts{"1"});

    EXPECT_EQ(fakePlatform().logTexts(),
              (Texts{"parseXMLMissedCallList IN\n", "parseXMLMissedCallList '" + text + "'\n", "missed uniqueId[1]",
                     "parseXMLMissedCallList OUT\n"}));
    std::vector<int> levels;
    for (const LogLine& line : fakePlatform().log) {
        EXPECT_EQ(line.module, "CallListDatabaseAdapterHelper");
        EXPECT_EQ(line.sourceFile.substr(0, 29), "CallListDatabaseAdapterHelper");
        levels.push_back(line.level);
    }
    EXPECT_EQ(levels, (std::vector<int>{6, 5, 6, 6}));
}

TEST_F(MissedCallListTest, LogsEachLevelByItself) {
    fakePlatform().switchOn("CallListDatabaseAdapterHelper", 5);
    EXPECT_EQ(idsIn("x"), Texts{});
    EXPECT_EQ(fakePlatform().logTexts(), Texts{"parseXMLMissedCallList 'x'\n"});

    fakePlatform().reset();
    fakePlatform().switchOn("CallListDatabaseAdapterHelper", 6);
    EXPECT_EQ(idsIn("x"), Texts{});
    EXPECT_EQ(fakePlatform().logTexts(), (Texts{"parseXMLMissedCallList IN\n", "parseXMLMissedCallList OUT\n"}));

    fakePlatform().reset();
    EXPECT_EQ(idsIn(reply), (Texts{"1234", "5"}));
    EXPECT_TRUE(fakePlatform().log.empty());
    EXPECT_EQ(fakePlatform().switchQuestions, 5u);
}

TEST_F(MissedCallListTest, IsEmptiedAndReadByTheAdapter) {
    CallListDatabaseAdapter adapter;
    std::deque<MissedCallItem> list(4);

    EXPECT_TRUE(adapter.populateMissedCallListFromXml(reply, list));
    EXPECT_EQ(list.size(), 2u);
    EXPECT_TRUE(adapter.populateMissedCallListFromXml("failed", list));
    EXPECT_TRUE(list.empty());
}

TEST_F(MissedCallListTest, GivesBackWhatTheEncoderWrote) {
    auto call = filledCall<Missed>();
    call.reference.clear();
    call.transferType = TransferNumber::TransferNumberType();
    MissedCallItem item = filled(Missed::itemMembers());
    item.setPictureClip("");
    item.appendCallInfoToList(call);
    item.appendCallInfoToList(MissedCallItem::MissedCallInfo());
    std::deque<MissedCallItem> list;

    Helper::parseXMLMissedCallList(inSchema("CallLogMissedCalls", "<Entry>" + Missed::encode(item, false) + "</Entry>"),
                                   list);

    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(describeEntry<Missed>(list.front()), describeEntry<Missed>(item));
}

}  // namespace
