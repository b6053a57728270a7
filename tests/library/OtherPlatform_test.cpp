#include "OtherPlatform.h"

#include <cstring>
#include <deque>
#include <gtest/gtest.h>
#include <list>
#include <string>
#include <vector>

#include "Kinds.h"

/// What the library leaves to the platform: seen on one that does it differently.
namespace {

using Texts = std::vector<std::string>;

template <class Kind>
class OtherPlatformCodec : public ::testing::Test {
protected:
    OtherPlatformCodec() { otherPlatform().reset(); }
};

TYPED_TEST_SUITE(OtherPlatformCodec, AllKinds, KindNames);

TYPED_TEST(OtherPlatformCodec, EscapesTheNamesOfTheEntryByThePlatformAndNothingElse) {
    const std::string text = "~&~";
    typename TypeParam::Item item;
    for (const auto& row : TypeParam::itemMembers()) {
        row.set(item, text);
    }
    typename TypeParam::Info call;
    for (const auto& row : TypeParam::infoMembers()) {
        if (row.form == rules::Form::text) {
            row.set(call, text);
        }
    }
    item.addCallInfoToList(call);
    const std::string body = TypeParam::encode(item, false);

    for (const auto* elements : {&TypeParam::format().itemWritten, &TypeParam::format().callWritten}) {
        for (const rules::Element& element : *elements) {
            if (element.form != rules::Form::text) {
                continue;
            }
            const bool isName = element.tag == "Surname" || element.tag == "Firstname";
            std::string expected = "<" + element.tag + ">";
            expected += isName ? "&and;" : text;
            expected += "</" + element.tag + ">";
            EXPECT_NE(body.find(expected), std::string::npos) << expected << " in " << body;
        }
    }
}

TYPED_TEST(OtherPlatformCodec, LeavesOutANameThatIsEmptyOnceEscaped) {
    typename TypeParam::Item item;
    item.setSurname("~");
    item.setFirstname("~~");

    EXPECT_EQ(TypeParam::encode(item, false), TypeParam::encode(typename TypeParam::Item(), false));
}

TYPED_TEST(OtherPlatformCodec, UnescapesItemsIntoTheListAndValuesOnceMore) {
    std::list<typename TypeParam::Info> calls;

    EXPECT_TRUE(TypeParam::decodeCalls(
        "<LogList>&I;<Number>&and;1;&1;</Number><NumberType>&and;M;</NumberType>&/I;</LogList>", calls));

    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls.front().number, "&2;&2;");
    EXPECT_EQ(static_cast<int>(calls.front().numberType), 4);
}

TYPED_TEST(OtherPlatformCodec, SeesACallUpToAZeroByteAndTheListBeyond) {
    std::list<typename TypeParam::Info> calls;

    EXPECT_TRUE(
        TypeParam::decodeCalls("<LogList>&0;<Item><Number>1</Number>&0;<TimeDate>now</TimeDate></Item>&0;"
                               "<Item><Number>2&0;</Number></Item></LogList>",
                               calls));

    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls.front().number, "1");
    EXPECT_EQ(calls.front().timeDate, "");
    EXPECT_EQ(calls.back().number, "");
}

TYPED_TEST(OtherPlatformCodec, UnescapesTheMembersOfAnEntry) {
    typename TypeParam::Item item;

    TypeParam::decode(
        "<UniqueId>&T;</UniqueId><EntryId>&M;</EntryId><Surname>&1;</Surname><PictureClip>a&0;b"
        "</PictureClip>",
        item);

    EXPECT_EQ(item.getUniqueId(), "True");
    EXPECT_EQ(item.getEntryId(), "MOBILE");
    EXPECT_EQ(item.getSurname(), "&2;");
    EXPECT_EQ(item.getPictureClip(), std::string("a\0b", 3));
}

class OtherPlatformTest : public ::testing::Test {
protected:
    OtherPlatformTest() {
        otherPlatform().reset();
        Helper::init();
    }
    ~OtherPlatformTest() override { Helper::finit(); }
};

TEST_F(OtherPlatformTest, DoesNotUnescapeAFlag) {
    bool out = true;
    Helper::getXMLValue2("<Viewed>&T;</Viewed>", "Viewed", out);
    EXPECT_FALSE(out);

    MissedCallItem item;
    Missed::decode("<Viewed>&T;</Viewed>", item);
    EXPECT_FALSE(item.getViewed());

    DialledCallItem::DialledCallInfo call;
    Dialled::decodeCall("<ConnectedNumberPriority>&T;</ConnectedNumberPriority><IsBluetoothCall>&T;</IsBluetoothCall>",
                        call);
    EXPECT_FALSE(call.connectedNumberPriority);
    EXPECT_FALSE(call.isBluetoothCall);
}

TEST_F(OtherPlatformTest, UnescapesTheCompletedElsewhereOfACallAsAnyTextOfIt) {
    MissedCallItem::MissedCallInfo call;

    Missed::decodeCall("<CompletedElsewhere>&T;</CompletedElsewhere>", call);

    EXPECT_TRUE(call.completedElsewhere);
}

TEST_F(OtherPlatformTest, ParsesTheFixedReply) {
    otherPlatform().fix = [](const std::string& text) { return std::string(text.size(), 'x'); };
    std::deque<MissedCallItem> list;

    EXPECT_TRUE(Helper::parseXMLMissedCallList("reply", list));

    EXPECT_EQ(otherPlatform().fixed, Texts{"reply"});
    ASSERT_EQ(otherPlatform().parses.size(), 1u);
    EXPECT_EQ(otherPlatform().parses[0].text, "xxxxx");
    EXPECT_EQ(otherPlatform().parses[0].length, 5);
    EXPECT_TRUE(otherPlatform().parses[0].zeroFollows);
}

TEST_F(OtherPlatformTest, ParsesALongerFixedReplyUpToTheLengthReceived) {
    otherPlatform().fix = [](const std::string& text) { return "fixed " + text; };
    std::deque<MissedCallItem> list;

    Helper::parseXMLMissedCallList("reply", list);

    EXPECT_EQ(otherPlatform().parses.at(0).text, "fixed");
    EXPECT_EQ(otherPlatform().parses.at(0).length, 5);
}

TEST_F(OtherPlatformTest, ParsesNoMoreThanAShorterFixedReplyHolds) {
    otherPlatform().fix = [](const std::string&) { return std::string("fix"); };
    std::deque<MissedCallItem> list;

    Helper::parseXMLMissedCallList("reply", list);

    EXPECT_EQ(otherPlatform().parses.at(0).text, "fix");
    EXPECT_EQ(otherPlatform().parses.at(0).length, 3);
}

TEST_F(OtherPlatformTest, MindsNoVerdictOfTheParser) {
    std::deque<MissedCallItem> list;
    otherPlatform().parseResult = false;

    EXPECT_TRUE(Helper::parseXMLMissedCallList("reply", list));
}

/// A list of one entry with one call, as a parser reports it.
void reportOneEntry(void* userData, XmlParser::TagBegin begin, XmlParser::TagEnd end, XmlParser::Data data) {
    const char* attributes[] = {"name", "CallLogMissedCalls", nullptr};
    const char* none[] = {nullptr};
    begin(userData, "Schema", attributes);
    begin(userData, "Entry", none);
    begin(userData, "Surname", none);
    data(userData, "&1;~&T;&and;", 10);
    end(userData, "Surname");
    begin(userData, "Item", none);
    begin(userData, "Number", none);
    data(userData, "&T;&and;", 8);
    end(userData, "Number");
    begin(userData, "CompletedElsewhere", none);
    data(userData, "&T;", 3);
    end(userData, "CompletedElsewhere");
    end(userData, "Item");
    end(userData, "Entry");
}

TEST_F(OtherPlatformTest, TakesWhatTheParserReportsUnescapingNamesOnly) {
    otherPlatform().script = reportOneEntry;
    std::deque<MissedCallItem> list(3);

    Helper::parseXMLMissedCallList("whatever", list);

    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list.front().getSurname(), "&2;~True&an");
    ASSERT_EQ(list.front().getMissedCallInfoList().size(), 1u);
    EXPECT_EQ(list.front().getMissedCallInfoList().front().number, "&T;&and;");
    EXPECT_FALSE(list.front().getMissedCallInfoList().front().completedElsewhere);
}

TEST_F(OtherPlatformTest, HasEverySurnameAndFirstNameOfAListUnescapedAndNothingElse) {
    otherPlatform().script = [](void* userData, XmlParser::TagBegin begin, XmlParser::TagEnd end,
                                XmlParser::Data data) {
        const char* none[] = {nullptr};
        begin(userData, "Entry", none);
        for (const char* name : {"UniqueId", "EntryId", "Surname", "Firstname", "PictureClip", "Number"}) {
            begin(userData, name, none);
            data(userData, name, static_cast<int>(std::strlen(name)));
            end(userData, name);
        }
        end(userData, "Entry");
    };
    std::deque<MissedCallItem> list;

    Helper::parseXMLMissedCallList("whatever", list);

    EXPECT_EQ(otherPlatform().unescaped, (Texts{"Surname", "Firstname"}));
}

TEST_F(OtherPlatformTest, HasEveryTextThatAPrimitiveReadsUnescaped) {
    std::string text;
    bool flag = false;

    Helper::getXMLValue2("<Number>plain</Number>", "Number", text);
    Helper::getXMLValue2("<Number></Number>", "Number", text);
    Helper::getXMLValue2("<Number>&and;</Number>", "Number", text);
    Helper::getXMLValue2("<Other>none</Other>", "Number", text);
    Helper::getXMLValue2("<Viewed>True</Viewed>", "Viewed", flag);

    EXPECT_EQ(otherPlatform().unescaped, (Texts{"plain", "", "&and;"}));
}

TEST_F(OtherPlatformTest, HasTheListEmptyBeforeAnythingIsReported) {
    std::deque<MissedCallItem> list(3);
    std::size_t sizeWhileParsing = 99;
    otherPlatform().script = [&list, &sizeWhileParsing](void*, XmlParser::TagBegin, XmlParser::TagEnd,
                                                        XmlParser::Data) { sizeWhileParsing = list.size(); };

    Helper::parseXMLMissedCallList("whatever", list);

    EXPECT_EQ(sizeWhileParsing, 0u);
}

TEST_F(OtherPlatformTest, LogsAroundTheParsing) {
    otherPlatform().logs = true;
    std::deque<MissedCallItem> list;

    Helper::parseXMLMissedCallList("reply", list);

    EXPECT_EQ(otherPlatform().events, (Texts{"parseXMLMissedCallList IN\n", "parseXMLMissedCallList 'reply'\n",
                                             "parser made", "parse", "parseXMLMissedCallList OUT\n", "parser gone"}));
}

}  // namespace
