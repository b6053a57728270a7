#include "CallRecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ValueError.h"

using namespace calljournal;
using ::testing::SizeIs;

namespace {

std::string refusal(const std::string& text, const std::string& kind = "missed") {
    try {
        readCalls(text, kind);
    } catch (const ValueError& error) {
        return error.what();
    }
    return "";
}

TEST(CallRecord, RefusesNestingThatWouldUseUpTheStack) {
    const std::string nested = std::string(300000, '[') + std::string(300000, ']');
    const std::string call = R"({"Number":)" + nested + "}";
    for (const std::string& calls : {call, "[" + call + "]"}) {
        EXPECT_THROW(readCalls(calls, "missed"), ValueError);
    }
}

TEST(CallRecord, RefusesANumberThatOverflowsAndNamesItsLine) {
    EXPECT_EQ(refusal("{\"Number\":\"1\"}\n{\"Number\":1e999}\n"), "line 2: number overflow parsing '1e999'");
}

TEST(CallRecord, NamesLineAndColumnOfWhatIsNoJson) {
    const std::string problem = "syntax error while parsing value - invalid literal; last read: ";
    EXPECT_EQ(refusal("{\"Number\":\"1\"}\n{\"Number\":x}\n"), "line 2, column 11: " + problem + "'\"Number\":x'");
    EXPECT_EQ(refusal("[{\"Number\":\"1\"},\n{\"Number\":x}]\n"), "line 2, column 11: " + problem + "'\"Number\":x'");
}

TEST(CallRecord, NamesTheElementAtFault) {
    EXPECT_EQ(refusal("3"), "line 1: a call is a JSON object");
    EXPECT_EQ(refusal("\n{\"Number\":\"1\"}\n\r\n3"), "line 4: a call is a JSON object");
    EXPECT_EQ(refusal(R"([{"Number":"1"},3])"), "call 2: a call is a JSON object");
    EXPECT_EQ(refusal(R"({"Kind":"lost"})"),
              "line 1: \"lost\" is not one of missed, dialled, received, forwarded, callback");
    EXPECT_EQ(refusal(R"({"Number":3})"), "line 1: Number: 3 is not a text");
    EXPECT_EQ(refusal(R"({"Number":"1","TimeDate":"now"})"),
              "line 1: TimeDate: \"now\" is not a time of the form YYYY-MM-DD HH:MM:SS");
    EXPECT_EQ(refusal(R"({"Number":"1","Duration":"1"})"), "line 1: Duration: a missed call has no such element");
    EXPECT_EQ(refusal(R"({"Number":"1","UniqueId":"1"})"), "line 1: UniqueId: a missed call has no such element");
    EXPECT_EQ(refusal(R"({"Number":"1","Withheld":true})"), "line 1: a call has either a number or is withheld");
    EXPECT_EQ(refusal(R"({"Withheld":false})"), "line 1: a call has either a number or is withheld");
    EXPECT_EQ(refusal(R"({"Number":"1","Duration":"1"})", "callback"),
              "line 1: Duration: a call-back has no such element");
    EXPECT_EQ(refusal(R"({"Number":"1","UniqueId":"1"})", "callback"),
              "line 1: UniqueId: a call-back has no such element");
    EXPECT_EQ(refusal(R"({"Number":"1","TimeDate":"now"})", "callback"),
              "line 1: TimeDate: \"now\" is not a time of the form YYYY-MM-DD HH:MM:SS");
    EXPECT_EQ(refusal(R"({"Number":"1","CallBackType":"LATER"})", "callback"),
              "line 1: CallBackType: \"LATER\" is not one of NOTYPE, NOREPLY, BUSY");
    EXPECT_EQ(refusal("{}", "callback"), "line 1: a call-back needs a number");
}

TEST(CallRecord, PutsCallsOfManyKindsApart) {
    const NewCalls calls = readCalls(
        "\n"
        R"({"Number":"1"})"
        "\n"
        R"({"Kind":"callback","CallBackNumber":"2"})"
        "\r\n \n"
        R"({"Kind":"missed","Number":"3"})",
        "missed");
    EXPECT_THAT(callsOfKind<MissedCallItem>(calls), SizeIs(2));
    EXPECT_THAT(callsOfKind<DialledCallItem>(calls), SizeIs(0));
    ASSERT_THAT(callsOfKind<StoredCallBack>(calls), SizeIs(1));
    EXPECT_EQ(callsOfKind<MissedCallItem>(calls)[1].call.number, "3");
    EXPECT_EQ(callsOfKind<StoredCallBack>(calls)[0].party.getNumber(), "2");
}

TEST(CallRecord, TakesTheNumberOfACallBackByEitherName) {
    for (const char* call : {R"({"Number":"2"})", R"({"CallBackNumber":"2"})"}) {
        EXPECT_EQ(callsOfKind<StoredCallBack>(readCalls(call, "callback")).at(0).party.getNumber(), "2");
    }
}

TEST(CallRecord, GivesWhatIsAbsentTheValueThatAPhoneWould) {
    const auto anonymous = callsOfKind<MissedCallItem>(readCalls(R"({"Withheld":true})", "missed")).at(0).call;
    EXPECT_EQ(anonymous.numberPresentation, CallLogEntryEvent::NOT_ALLOWED);
    EXPECT_EQ(anonymous.namePresentation, CallLogEntryEvent::NOT_AVAILABLE);
    EXPECT_EQ(anonymous.targetLog, CallLogEntryEvent::IN_NO_ANSWER);
    EXPECT_EQ(anonymous.timeDate.size(), 19u);
    const auto callBack = callsOfKind<StoredCallBack>(readCalls(R"({"Number":"1"})", "callback")).at(0).party;
    EXPECT_EQ(callBack.getTimeDate().size(), 19u);
    const auto named =
        callsOfKind<DialledCallItem>(readCalls(R"({"Number":"1","Firstname":"A"})", "dialled")).at(0).call;
    EXPECT_EQ(named.numberPresentation, CallLogEntryEvent::ALLOWED);
    EXPECT_EQ(named.namePresentation, CallLogEntryEvent::ALLOWED);
    EXPECT_EQ(named.targetLog, CallLogEntryEvent::OUT_ANSWERED);
}

}  // namespace
