#include <deque>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "FakePlatform.h"
#include "Kinds.h"
#include "ReaderEvents.h"
#include "VirtualTable.h"

/// The missed call list reader, driven event by event.
namespace {

using Texts = std::vector<std::string>;

class ReaderTest : public ::testing::Test {
protected:
    ReaderTest() : parser(output), events(parser) {
        fakePlatform().reset();
        Helper::init();
    }
    ~ReaderTest() override { Helper::finit(); }

    Texts uniqueIds() const {
        Texts ids;
        for (const MissedCallItem& item : output) {
            ids.push_back(item.getUniqueId());
        }
        return ids;
    }

    std::deque<MissedCallItem> output;
    Helper::MissedCallParser parser;
    ReaderEvents events;
};

TEST_F(ReaderTest, StartsWithoutATagASchemaAndACallLogType) {
    EXPECT_TRUE(parser.currentCall == MissedCallItem::MissedCallInfo());
    EXPECT_TRUE(parser.currentEntry == MissedCallItem());
    EXPECT_EQ(&parser.output, &output);
    EXPECT_EQ(static_cast<int>(parser.currentTag), 56);
    EXPECT_EQ(parser.currentTagName, "");
    EXPECT_EQ(parser.schemaName, "");
    EXPECT_EQ(parser.callLogType, "");
}

struct ParserLayout {
    virtual ~ParserLayout() {}
    MissedCallItem::MissedCallInfo call;
    MissedCallItem entry;
    std::deque<MissedCallItem>* output;
    int tag;
    std::string texts[3];
};

TEST_F(ReaderTest, HoldsItsMembersInTheirFixedOrderAndNothingElse) {
    const void* const places[] = {&parser.currentCall,    &parser.currentEntry, &parser.currentTag,
                                  &parser.currentTagName, &parser.schemaName,   &parser.callLogType};

    EXPECT_LT(static_cast<const void*>(&parser), places[0]);
    for (std::size_t index = 1; index < sizeof places / sizeof places[0]; ++index) {
        EXPECT_LT(places[index - 1], places[index]) << index;
    }
    // The reference to the output stands between the entry and the tag.
    EXPECT_GE(reinterpret_cast<const char*>(&parser.currentTag),
              reinterpret_cast<const char*>(&parser.currentEntry + 1) + sizeof(void*));
    EXPECT_EQ(sizeof parser, sizeof(ParserLayout));
}

class DerivedParser : public Helper::MissedCallParser {
public:
    using Helper::MissedCallParser::MissedCallParser;
};

TEST_F(ReaderTest, HasADestructorInItsFirstTwoSlots) {
    std::deque<MissedCallItem> other;
    const DerivedParser derived(other);

    EXPECT_TRUE(std::has_virtual_destructor<Helper::MissedCallParser>::value);
    EXPECT_EQ(changedSlots(&parser, &derived, 2), (std::vector<std::size_t>{0, 1}));
}

TEST_F(ReaderTest, RemembersTheLastBeginTagBeyondItsEnd) {
    events.begin("Number");
    EXPECT_EQ(static_cast<int>(parser.currentTag), 11);
    EXPECT_EQ(parser.currentTagName, "Number");

    events.end("Number");
    EXPECT_EQ(static_cast<int>(parser.currentTag), 11);
    EXPECT_EQ(parser.currentTagName, "Number");

    events.begin("NoSuchTag");
    EXPECT_EQ(static_cast<int>(parser.currentTag), 56);
    EXPECT_EQ(parser.currentTagName, "NoSuchTag");
}

struct DataRow {
    const char* tag;
    const char* text;
    const char* member;  ///< That changes, of the entry or the call; empty if none does.
    const char* value;
};

const DataRow dataRows[] = {
    {"Entry", "x", "", ""},
    {"Item", "x", "", ""},
    {"Method", "x", "", ""},
    {"UniqueId", "12:34", "UniqueId", "12:34"},
    {"UniqueId", "&amp;", "UniqueId", "&amp;"},
    {"EntryId", "7", "EntryId", "7"},
    {"EntryId", "&amp;", "EntryId", "&amp;"},
    {"Surname", "Smith &amp; Co", "Surname", "Smith & Co"},
    {"Surname", "&amp;amp;", "Surname", "&amp;"},
    {"Firstname", "&lt;Ann&gt;", "Firstname", "<Ann>"},
    {"PictureClip", "p&amp;.jpg", "PictureClip", "p&amp;.jpg"},
    {"JSGroupBy", "x", "", ""},
    {"Viewed", "True", "Viewed", "1"},
    {"Viewed", "true", "", ""},
    {"Viewed", "", "", ""},
    {"Number", "030&amp;1234", "Number", "030&amp;1234"},
    {"NumberType", "MOBILE", "NumberType", "4"},
    {"NumberType", "Mobile", "", ""},
    {"ResolvedNumber", "x", "", ""},
    {"ConnectedNumberPriority", "True", "", ""},
    {"ConnectedNumber", "1", "ConnectedNumber", "1"},
    {"ConnectedNumberType", "BUSINESS2", "ConnectedNumberType", "3"},
    {"ConnectedSurname", "A&lt;B", "ConnectedSurname", "A&lt;B"},
    {"ConnectedFirstName", "Ann&amp;", "ConnectedFirstName", "Ann&amp;"},
    {"IsBluetoothCall", "True", "", ""},
    {"TimeDate", "2024-05-01 10:15:00", "TimeDate", "2024-05-01 10:15:00"},
    {"Duration", "1:00", "", ""},
    {"CompletedElsewhere", "True", "CompletedElsewhere", "1"},
    {"CompletedElsewhere", "TRUE", "", ""},
    {"CallBackNumber", "x", "", ""},
    {"CallBackType", "x", "", ""},
    {"CallBackState", "x", "", ""},
    {"CallBackDeviceId", "x", "", ""},
    {"TargetLog", "IN_GROUP_BUSY", "TargetLog", "7"},
    {"TargetLog", "x", "TargetLog", "6"},
    {"TargetLog", "", "", ""},
    {"NumberPresentation", "ALLOWED", "NumberPresentation", "1"},
    {"NamePresentation", "NOT_ALLOWED", "NamePresentation", "2"},
    {"TimeFormat", "FORM_PM", "TimeFormat", "2"},
    {"DeflectNumberPresentation", "ALLOWED", "DeflectNumberPresentation", "1"},
    {"DeflectNumber", "1&lt;", "DeflectNumber", "1&lt;"},
    {"DeflectNumberType", "PRIVATE", "DeflectNumberType", "1"},
    {"DeflectNamePresentation", "NOT_ALLOWED", "DeflectNamePresentation", "2"},
    {"DeflectName", "Jones&amp;", "DeflectName", "Jones&amp;"},
    {"GroupName", "Sales&amp;", "GroupName", "Sales&amp;"},
    {"GroupNumber", "12&amp;", "GroupNumber", "12&amp;"},
    {"TransferType", "TRANSFER_GROUP_NUMBER", "", ""},
    {"UniqueID", "x", "", ""},
    {"Office", "x", "", ""},
    {"Mobile", "x", "", ""},
    {"Private", "x", "", ""},
    {"Email", "x", "", ""},
    {"Group", "x", "", ""},
    {"DefaultNumber", "x", "", ""},
    {"Company", "x", "", ""},
    {"Office2", "x", "", ""},
    {"Address", "x", "", ""},
    {"Address2", "x", "", ""},
    {"JobFunction", "x", "", ""},
    {"VoiceDial", "x", "", ""},
    {"Picture", "x", "", ""},
    {"ExternalID", "x", "", ""},
    {"ContactSource", "x", "", ""},
    {"NoSuchTag", "x", "", ""},
    {"LogList", "x", "", ""},
    {"Schema", "x", "", ""},
};

/// All values of the entry and the call at hand.
rules::Members stateOf(const Helper::MissedCallParser& parser) {
    rules::Members state = describe(parser.currentEntry, Missed::itemMembers());
    const rules::Members call = describeCall<Missed>(parser.currentCall);
    state.insert(call.begin(), call.end());
    return state;
}

TEST_F(ReaderTest, StoresEachTextWhereItsTagSaysAndNowhereElse) {
    for (const DataRow& row : dataRows) {
        Helper::MissedCallParser fresh(output);
        rules::Members expected = stateOf(fresh);
        if (*row.member != '\0') {
            expected[row.member] = row.value;
        }
        ReaderEvents(fresh).element(row.tag, row.text);
        EXPECT_EQ(stateOf(fresh), expected) << row.tag << " " << row.text;
        EXPECT_EQ(fresh.callLogType, "") << row.tag;
        EXPECT_EQ(fresh.schemaName, "") << row.tag;
    }
    EXPECT_TRUE(output.empty());
}

TEST_F(ReaderTest, TakesTheMethodAsTheCallLogTypeMissedOnlyIfItIsTheListRequest) {
    events.element("Method", "missedCallsUpdate").element("Method", "getMissedCallLists").element("Method", "");
    EXPECT_EQ(parser.callLogType, "");

    events.element("Method", "getMissedCallList");
    EXPECT_EQ(parser.callLogType, "Missed");

    events.element("Method", "missedCallsUpdate");
    EXPECT_EQ(parser.callLogType, "Missed");
}

TEST_F(ReaderTest, TakesTheCategoryAsTheCallLogTypeWhateverItIs) {
    events.element("Category", "Dialled");
    EXPECT_EQ(parser.callLogType, "Dialled");
    events.element("Category", "");
    EXPECT_EQ(parser.callLogType, "");
    events.element("Category", "Missed");
    EXPECT_EQ(parser.callLogType, "Missed");
}

TEST_F(ReaderTest, KeepsTheFirstUniqueIdAndTheLastEntryId) {
    events.element("UniqueId", "1").element("UniqueId", "2");
    events.element("EntryId", "3").element("EntryId", "4");

    EXPECT_EQ(parser.currentEntry.getUniqueId(), "1");
    EXPECT_EQ(parser.currentEntry.getEntryId(), "4");
}

TEST_F(ReaderTest, KeepsTheFirstNamesThatAreNotEmpty) {
    events.element("Surname", "").element("Surname", "Smith").element("Surname", "Jones");
    events.element("Firstname", "").element("Firstname", "Ann").element("Firstname", "Bob");

    EXPECT_EQ(parser.currentEntry.getSurname(), "Smith");
    EXPECT_EQ(parser.currentEntry.getFirstname(), "Ann");
}

TEST_F(ReaderTest, ReplacesOtherValuesByEachPieceOfData) {
    events.begin("Number").data("030").data("1234").end("Number");
    events.element("Viewed", "True").element("Viewed", "x");
    events.element("CompletedElsewhere", "True").element("CompletedElsewhere", "False");
    events.element("NumberType", "MOBILE").element("NumberType", "x");
    events.element("PictureClip", "p").element("PictureClip", "");
    events.element("GroupName", "Sales").data("\n");

    EXPECT_EQ(parser.currentCall.number, "1234");
    EXPECT_FALSE(parser.currentEntry.getViewed());
    EXPECT_FALSE(parser.currentCall.completedElsewhere);
    EXPECT_EQ(static_cast<int>(parser.currentCall.numberType), 0);
    EXPECT_EQ(parser.currentEntry.getPictureClip(), "");
    EXPECT_EQ(parser.currentCall.groupName, "\n");
}

TEST_F(ReaderTest, TakesDataBehindAnEndTagForTheLastBeginTag) {
    events.begin("Item").element("Number", "1").data("\n").element("TimeDate", "now").data("\n").end("Item");

    EXPECT_EQ(parser.currentEntry.getMissedCallInfoList().front().number, "\n");
    EXPECT_EQ(parser.currentEntry.getMissedCallInfoList().front().timeDate, "\n");
}

TEST_F(ReaderTest, TakesAsManyBytesAsItIsTold) {
    events.begin("Number");
    Helper::MissedCallParser::parseRemoteXMLData(&parser, "12345", 3);
    EXPECT_EQ(parser.currentCall.number, "123");

    Helper::MissedCallParser::parseRemoteXMLData(&parser, "12345", 0);
    EXPECT_EQ(parser.currentCall.number, "");

    events.data(std::string("1\0002", 3));
    EXPECT_EQ(parser.currentCall.number, std::string("1\0002", 3));
}

TEST_F(ReaderTest, RefusesANegativeLengthAtEachTag) {
    for (const char* tag : {"Number", "NumberType", "Surname", "unknown"}) {
        events.begin(tag);
        EXPECT_THROW(Helper::MissedCallParser::parseRemoteXMLData(&parser, "12345", -1), std::length_error) << tag;
    }
    events.schema("foreign");
    Helper::MissedCallParser::parseRemoteXMLData(&parser, "12345", -1);
}

TEST_F(ReaderTest, HandsOverAMissedEntryAtItsEnd) {
    events.schema("CallLogMissedCalls").begin("Entry").element("UniqueId", "1");
    EXPECT_TRUE(output.empty());

    events.end("Entry");

    ASSERT_EQ(output.size(), 1u);
    EXPECT_EQ(output.front().getUniqueId(), "1");
    EXPECT_TRUE(parser.currentEntry == MissedCallItem());
}

TEST_F(ReaderTest, AppendsEntriesBehindThoseThatAreThere) {
    MissedCallItem earlier;
    earlier.setUniqueId("0");
    output.push_back(earlier);

    events.schema("CallLogMissedCalls");
    for (const char* const id : {"1", "2", "3"}) {
        events.begin("Entry").element("UniqueId", id).end("Entry");
    }

    EXPECT_EQ(uniqueIds(), (Texts{"0", "1", "2", "3"}));
}

TEST_F(ReaderTest, DropsAnEntryOfAnotherTypeAndForgetsIt) {
    events.schema("CallLog").begin("Entry").element("UniqueId", "1").element("Surname", "Smith").end("Entry");

    EXPECT_TRUE(output.empty());
    EXPECT_TRUE(parser.currentEntry == MissedCallItem());
}

TEST_F(ReaderTest, HandsOverACallAtItsEnd) {
    events.begin("Item").element("Number", "1").end("Item").begin("Item").element("TimeDate", "now").end("Item");

    const auto& calls = parser.currentEntry.getMissedCallInfoList();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls.front().number, "1");
    EXPECT_EQ(calls.back().number, "");
    EXPECT_EQ(calls.back().timeDate, "now");
    EXPECT_TRUE(parser.currentCall == MissedCallItem::MissedCallInfo());
}

TEST_F(ReaderTest, KeepsTheFirstTenCallsOfAnEntry) {
    for (int number = 1; number <= 11; ++number) {
        events.begin("Item").element("Number", std::to_string(number)).end("Item");
    }

    EXPECT_EQ(numbers<Missed>(parser.currentEntry), (Texts{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
    EXPECT_EQ(parser.currentCall.number, "");
}

TEST_F(ReaderTest, KeepsACallThatWasNotEndedForTheNextEntry) {
    events.schema("CallLogMissedCalls");
    events.begin("Entry").element("Number", "1").end("Entry");
    events.begin("Entry").begin("Item").element("TimeDate", "now").end("Item").end("Entry");

    ASSERT_EQ(output.size(), 2u);
    EXPECT_TRUE(output[0].getMissedCallInfoList().empty());
    EXPECT_EQ(numbers<Missed>(output[1]), Texts{"1"});
}

TEST_F(ReaderTest, DoesNotStartAnewAtABeginTag) {
    events.begin("Entry").element("UniqueId", "1").begin("Item").element("Number", "2");

    events.begin("Entry").begin("Item");

    EXPECT_EQ(parser.currentEntry.getUniqueId(), "1");
    EXPECT_EQ(parser.currentCall.number, "2");
}

TEST_F(ReaderTest, MindsNoOtherEndTags) {
    events.schema("CallLogMissedCalls").element("Number", "1").element("UniqueId", "2");

    for (const char* const name : {"Schema", "LogList", "UniqueId", "entry", "item", "Method", ""}) {
        events.end(name);
    }

    EXPECT_TRUE(output.empty());
    EXPECT_EQ(parser.currentEntry.getUniqueId(), "2");
    EXPECT_EQ(parser.currentCall.number, "1");
}

TEST_F(ReaderTest, TakesTheSchemaNameFromTheFirstAttributeWhateverItsName) {
    events.begin("Schema", {"version", "CallLogMissedCalls", "name", "CallLog"});

    EXPECT_EQ(parser.schemaName, "CallLogMissedCalls");
    EXPECT_EQ(parser.callLogType, "Missed");
}

TEST_F(ReaderTest, KnowsTheSchemaByItsExactName) {
    events.begin("schema", {"name", "CallLogMissedCalls"}).begin("Schemas", {"name", "CallLogMissedCalls"});
    events.begin("Entry", {"name", "CallLogMissedCalls"});

    EXPECT_EQ(parser.schemaName, "");
    EXPECT_EQ(parser.callLogType, "");
}

TEST_F(ReaderTest, LeavesTheSchemaNameEmptyWithoutAttributes) {
    events.begin("Schema");

    EXPECT_EQ(parser.schemaName, "");
    EXPECT_EQ(parser.currentTagName, "Schema");
    EXPECT_EQ(static_cast<int>(parser.currentTag), 56);

    events.schema("CallLog").begin("Schema");
    EXPECT_EQ(parser.schemaName, "");
}

TEST_F(ReaderTest, SetsTheCallLogTypeForTheMissedCallsSchemaOnly) {
    for (const char* const name : {"CallLog", "CallLogPhoneBook", "Conversations", ""}) {
        Helper::MissedCallParser fresh(output);
        ReaderEvents(fresh).schema(name);
        EXPECT_EQ(fresh.schemaName, name);
        EXPECT_EQ(fresh.callLogType, "") << name;
    }
}

TEST_F(ReaderTest, GoesOnWithinTheSchemasOfTheCallLog) {
    for (const char* const name : {"CallLogMissedCalls", "CallLog", "CallLogPhoneBook", "Conversations", ""}) {
        std::deque<MissedCallItem> list;
        Helper::MissedCallParser fresh(list);
        ReaderEvents(fresh)
            .schema(name)
            .element("Category", "Missed")
            .begin("Entry")
            .element("EntryId", "7")
            .end("Entry");
        ASSERT_EQ(list.size(), 1u) << name;
        EXPECT_EQ(list.front().getEntryId(), "7");
    }
}

TEST_F(ReaderTest, StopsForGoodInAnyOtherSchema) {
    for (const char* const name : {"CallLogDialledCalls", "CallLogReceivedCalls", "CallLogForwardedCalls",
                                   "CallLogEnabledState", "callLog", "CallLog ", "conversations", "x"}) {
        std::deque<MissedCallItem> list;
        Helper::MissedCallParser fresh(list);
        ReaderEvents sequence(fresh);
        sequence.element("Category", "Missed").element("UniqueId", "1").element("Number", "2");

        sequence.schema(name);
        EXPECT_EQ(fresh.schemaName, name);
        sequence.schema("CallLogMissedCalls").begin("Entry").element("EntryId", "7").end("Item").end("Entry");

        EXPECT_TRUE(list.empty()) << name;
        EXPECT_EQ(fresh.schemaName, name);
        EXPECT_EQ(fresh.currentTagName, "Schema") << name;
        EXPECT_EQ(static_cast<int>(fresh.currentTag), 56) << name;
        EXPECT_EQ(fresh.currentEntry.getEntryId(), "") << name;
        EXPECT_EQ(fresh.currentEntry.getUniqueId(), "1") << name;
        EXPECT_EQ(fresh.currentCall.number, "2") << name;
        EXPECT_TRUE(fresh.currentEntry.getMissedCallInfoList().empty()) << name;
    }
}

TEST_F(ReaderTest, StopsEvenIfOnlyDataOrAnEndTagFollows) {
    events.element("Category", "Missed").begin("UniqueId");
    parser.schemaName = "CallLogDialledCalls";

    events.data("1").end("Entry").end("Item");

    EXPECT_TRUE(output.empty());
    EXPECT_EQ(parser.currentEntry.getUniqueId(), "");
    EXPECT_TRUE(parser.currentEntry.getMissedCallInfoList().empty());
}

TEST_F(ReaderTest, KeepsTheCallLogTypeFromEntryToEntryAndFromSchemaToSchema) {
    events.schema("CallLogMissedCalls").begin("Entry").element("UniqueId", "1").end("Entry");
    events.schema("CallLog").begin("Entry").element("UniqueId", "2").end("Entry");
    events.begin("Entry").element("UniqueId", "3").element("Category", "Dialled").end("Entry");
    events.begin("Entry").element("UniqueId", "4").end("Entry");
    events.begin("Entry").element("UniqueId", "5").element("Category", "Missed").end("Entry");
    events.begin("Entry").element("UniqueId", "6").element("Category", "x").end("Entry");
    events.begin("Entry").element("UniqueId", "7").end("Entry");
    events.begin("Entry").element("UniqueId", "8").element("Method", "getMissedCallList").end("Entry");
    events.begin("Entry").element("UniqueId", "9").element("Category", "x").end("Entry");
    events.schema("CallLogMissedCalls").begin("Entry").element("UniqueId", "10").end("Entry");

    EXPECT_EQ(uniqueIds(), (Texts{"1", "2", "5", "8", "10"}));
}

TEST_F(ReaderTest, LogsTheUniqueIdAtEachOfItsTexts) {
    fakePlatform().switchOn("CallListDatabaseAdapterHelper", 6);

    events.element("UniqueId", "1%s").element("UniqueId", "2").element("UniqueID", "3");

    EXPECT_EQ(fakePlatform().logTexts(), (Texts{"missed uniqueId[1%s]", "missed uniqueId[1%s]"}));
    EXPECT_EQ(fakePlatform().log.front().module, "CallListDatabaseAdapterHelper");
    EXPECT_EQ(fakePlatform().log.front().level, 6);
}

TEST_F(ReaderTest, LogsNoUniqueIdWhileTheLogIsOffOrAtOtherLevels) {
    for (const int level : {1, 2, 3, 4, 5, 7}) {
        fakePlatform().switchOn("CallListDatabaseAdapterHelper", level);
        fakePlatform().switchOn("CallListDatabaseAdapter", 6);
    }

    events.element("UniqueId", "1");

    EXPECT_TRUE(fakePlatform().log.empty());
    EXPECT_EQ(parser.currentEntry.getUniqueId(), "1");
}

TEST_F(ReaderTest, NeverReplacesAUniqueIdSoThatNothingIsLoggedOfIt) {
    fakePlatform().switchOn("Journal Service", 4);

    events.schema("CallLogMissedCalls");
    events.begin("Entry").element("UniqueId", "1").element("UniqueId", "2").end("Entry");
    events.begin("Entry").element("UniqueId", "3").end("Entry");

    EXPECT_TRUE(fakePlatform().log.empty());
}

TEST_F(ReaderTest, KnowsNoTagBeforeInit) {
    Helper::finit();

    events.schema("CallLogMissedCalls").begin("Entry").element("UniqueId", "1").end("Entry");

    EXPECT_TRUE(output.empty());
    EXPECT_EQ(parser.currentEntry.getUniqueId(), "");
    EXPECT_EQ(parser.schemaName, "CallLogMissedCalls");
    EXPECT_EQ(parser.callLogType, "Missed");
}

}  // namespace
