#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>

#include "RunCommand.h"
#include "RunSql.h"

namespace {

const std::string declaration = R"(<?xml version="1.0" encoding="utf-8"?>)";

std::string element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">";
}

std::string schema(const std::string& name, const std::string& content) {
    return declaration + "<Schema name=\"" + name + "\">" + content + "</Schema>";
}

std::string writeRequest(const std::string& name, const std::string& body) {
    return schema(name, "<ReasonForMessage>write_request</ReasonForMessage><Entry>" + body + "</Entry>");
}

/// A list of calls, each given by its elements.
std::string calls(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) {
        text += element("Item", item);
    }
    return element("LogList", text);
}

const std::string aCall = "<Number>1</Number>";

class Check : public ::testing::Test {
protected:
    Finished run(std::vector<std::string> arguments, const std::string& input = std::string()) const {
        arguments.insert(arguments.begin(), {COMMAND, "--store", folder_.file("journal.db")});
        return runProgram(arguments, input);
    }

    /// What the command says of `text`, which it must find fault with; without the name in front of each line.
    std::string findings(const std::string& text, const std::string& kind = std::string()) const {
        std::vector<std::string> arguments = {"check", "-"};
        if (!kind.empty()) {
            arguments.insert(arguments.end(), {"--kind", kind});
        }
        const Finished finished = run(arguments, text);
        EXPECT_EQ(finished.err, "");
        EXPECT_EQ(finished.status, 1);
        return withoutName(finished.out);
    }

    /// What the command says of `text`, which it must find no fault with.
    std::string fine(const std::string& text) const {
        const Finished finished = run({"check", "-"}, text);
        EXPECT_EQ(finished.err, "");
        EXPECT_EQ(finished.status, 0);
        return withoutName(finished.out);
    }

    std::string withoutName(const std::string& out) const {
        const std::string name = "standard input: ";
        std::string rest;
        for (std::size_t at = 0, end = 0; at < out.size(); at = end + 1) {
            end = out.find('\n', at);
            EXPECT_EQ(out.compare(at, name.size(), name), 0) << out;
            rest += out.substr(at + name.size(), end - at - name.size()) + "\n";
        }
        return rest;
    }

    /// Runs a command that is expected to succeed and returns what it printed.
    std::string done(const std::vector<std::string>& arguments) const {
        const Finished finished = run(arguments);
        EXPECT_EQ(finished.status, 0) << finished.err;
        return finished.out;
    }

    const TemporaryFolder folder_;
};

// What the command itself writes is fine.

TEST_F(Check, FindsNothingInWhatTheCommandSendsAndGets) {
    for (const std::string kind : {"missed", "dialled", "received", "forwarded", "callback"}) {
        const Finished traced = run({"--show-xml", "record", kind, "--number", "030<1>&amp;", "--surname", "A<B & C",
                                     "--time", "2024-05-01 10:15:00"});
        ASSERT_EQ(traced.status, 0) << traced.err;
        std::istringstream lines(traced.err);
        std::string titles;
        for (std::string line; std::getline(lines, line);) {
            titles += fine(line.substr(2) + "\n");
        }
        EXPECT_EQ(titles, "write request, " + kind + ", 1 entry: nothing found\n" + "reply, " + kind +
                              ", 0 entries: nothing found\n")
            << kind;
    }
    const std::string store = folder_.file("journal.db");
    const Finished checked = run({"check", store});
    EXPECT_EQ(checked.status, 0);
    EXPECT_EQ(checked.out, store + ": CallLogMissedCalls: reply, missed, 1 entry: nothing found\n" +  //
                               store + ": CallLogDialledCalls: reply, dialled, 1 entry: nothing found\n" + store +
                               ": CallLogReceivedCalls: reply, received, 1 entry: nothing found\n" + store +
                               ": CallLogForwardedCalls: reply, forwarded, 1 entry: nothing found\n" + store +
                               ": CallBacks: reply, callback, 1 entry: nothing found\n");
}

TEST_F(Check, FindsNothingInTheNotificationsOfEachKindAndInEntriesShown) {
    for (const std::string kind : {"missed", "dialled", "received", "forwarded"}) {
        const std::string out = done({"record", kind, "--number", "0301", "--notify", "--time", "2024-05-01 10:15:00"});
        EXPECT_EQ(fine(out.substr(0, out.find('\n'))), "notification, " + kind + ": nothing found\n");
        EXPECT_EQ(fine(done({"--format", "xml", "list", kind})), "1 entry, " + kind + ": nothing found\n");
    }
    const std::string deleted = done({"delete", "missed", "1", "--notify"});
    EXPECT_EQ(fine(deleted.substr(0, deleted.find('\n'))), "notification, missed: nothing found\n");
    EXPECT_EQ(fine(declaration + "<Method>missedCallsCountUpdate</Method><Value>2</Value>"),
              "notification: nothing found\n");
}

TEST_F(Check, FindsNothingInRequestsToDelete) {
    const std::string reason = "<ReasonForMessage>delete_request</ReasonForMessage>";
    EXPECT_EQ(fine(schema("CallLogMissedCalls", reason + "<Entry><UniqueId>7</UniqueId></Entry>")),
              "delete request, missed, 1 entry: nothing found\n");
    EXPECT_EQ(fine(schema("Conversations", reason + "<Entry><CallLogId>7</CallLogId></Entry>")),
              "delete request, schema \"Conversations\", 1 entry: nothing found\n");
}

TEST_F(Check, FindsNothingInTheAnswersToRequests) {
    EXPECT_EQ(fine(schema("CallLogMissedCalls", "<Result>ok</Result><UniqueId>7</UniqueId>")),
              "reply, missed, 0 entries: nothing found\n");
}

// What the text is.

TEST_F(Check, RecognisesTheKindOfABareBodyByItsElements) {
    EXPECT_EQ(fine("<UniqueId>1</UniqueId><Viewed>True</Viewed><LogList></LogList>"),
              "1 entry, missed: nothing found\n");
    EXPECT_EQ(fine("<JSGroupBy>1</JSGroupBy>" + calls({aCall})), "1 entry, dialled: nothing found\n");
    EXPECT_EQ(fine(calls({"<Duration>1</Duration><DeflectName>x</DeflectName>"})),
              "1 entry, received: nothing found\n");
    EXPECT_EQ(fine(calls({"<Duration>1</Duration>"})), "1 entry, forwarded: nothing found\n");
    EXPECT_EQ(fine("<CallBackNumber>1</CallBackNumber>"), "1 entry, callback: nothing found\n");
}

TEST_F(Check, TakesTheKindOfABareBodyThatIsGiven) {
    EXPECT_EQ(findings(calls({"<Duration>1</Duration>"}), "missed"),
              "1 entry, missed: 1 finding\n"
              "line 1, column 16: call 1: Duration is no element of a call (missed): nobody reads \"1\"\n");
}

TEST_F(Check, SaysWhenATextIsNoneOfACallLog) {
    EXPECT_EQ(findings(""), "unknown text: 1 finding\nline 1, column 1: the text is empty\n");
    EXPECT_EQ(findings("hello"),
              "unknown text: 1 finding\n"
              "line 1, column 1: no request, reply, notification or entry of a call log is here\n");
    EXPECT_EQ(findings("failed"),
              "unknown text: 1 finding\n"
              "line 1, column 1: the adapter's own answer: it had no data access service to ask\n");
}

TEST_F(Check, TakesACaptureOfSeveralMessages) {
    const Finished traced = run({"--show-xml", "record", "missed", "--number", "1", "--time", "2024-05-01 10:15:00"});
    EXPECT_EQ(fine(traced.err),
              "message 1: write request, missed, 1 entry: nothing found\n"
              "message 2: reply, missed, 0 entries: nothing found\n");
    EXPECT_EQ(
        findings("hello\n" + schema("CallLogMissedCalls", "\n<Extra>1</Extra>") + "\n" +
                 schema("CallLogMissedCalls", "") + "\n"),
        "message 1: unknown text: 1 finding\n"
        "message 1: line 1, column 1: no request, reply, notification or entry of a call log is here\n"
        "message 2: reply, missed, 0 entries: 2 findings\n"
        "message 2: line 2, column 73: text that belongs to no element: \"\\n\"; a decoder's cursor stops in front "
        "of it, and the missed call list takes it for the text of the element before\n"
        "message 2: line 3, column 1: Extra is no element of a reply: nobody reads \"1\"\n"
        "message 3: reply, missed, 0 entries: nothing found\n");
}

TEST_F(Check, FollowsTheDialledKindInTheOrderOfWritingAndOfReading) {
    const std::string number = "<ConnectedNumber>1</ConnectedNumber>";
    const std::string priority = "<ConnectedNumberPriority>True</ConnectedNumberPriority>";
    const std::string type = "<ConnectedNumberType>MOBILE</ConnectedNumberType>";
    EXPECT_EQ(fine(calls({number + priority + type})), "1 entry, dialled: nothing found\n");
    EXPECT_EQ(fine(calls({priority + number + type})), "1 entry, dialled: nothing found\n");
    EXPECT_EQ(findings(calls({type + priority})),
              "1 entry, dialled: 1 finding\n"
              "line 1, column 65: call 1: ConnectedNumberPriority is expected before ConnectedNumberType; a decoder's "
              "cursor stops in front of it; it is still read as it stands\n");
}

TEST_F(Check, GoesOnAfterAFileThatItCannotRead) {
    const std::string good = folder_.write("good.xml", "<Viewed>True</Viewed>");
    const std::string missing = folder_.file("missing");
    const std::string wrong = folder_.write("wrong.db", std::string("SQLite format 3\0 and then nothing", 34));
    const Finished finished = run({"check", missing, wrong, good});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.out, good + ": 1 entry, missed: nothing found\n");
    EXPECT_EQ(finished.err.substr(0, finished.err.find('\n')),
              "calljournal: " + missing + ": cannot be read (No such file or directory)");
    EXPECT_NE(finished.err.find("calljournal: " + wrong + ": "), std::string::npos);
}

TEST_F(Check, RefusesArgumentsThatMakeNoSense) {
    EXPECT_EQ(run({"check"}).status, 2);
    EXPECT_EQ(run({"check", "-", "--kind", "lost"}).status, 2);
}

// Not well-formed.

TEST_F(Check, NamesElementsThatAreNotBalanced) {
    EXPECT_EQ(findings("<Viewed>True</Viewed>\n<LogList></Item></LogList>\n<Surname>x"),
              "1 entry, missed: 5 findings\n"
              "line 2, column 10: </Item> closes nothing\n"
              "line 3, column 1: Surname is expected before LogList, where a decoder's cursor stays\n"
              "line 3, column 1: Surname is expected before Viewed; a decoder's cursor stops in front of it\n"
              "line 3, column 1: Surname says \"x\", but \"\" is read\n"
              "line 3, column 1: <Surname> is never closed\n");
}

TEST_F(Check, ReportsATextThatEndsInTheMiddleOfATag) {
    EXPECT_EQ(findings("<Viewed>True</Viewed><LogLi"),
              "1 entry, missed: 1 finding\n"
              "line 1, column 22: \"<\" begins a tag that never ends: the text is cut here, or the sign is raw\n");
}

TEST_F(Check, ReportsRawMarkupInATextAndHowItIsRead) {
    EXPECT_EQ(
        findings(calls({"<Number>a<b & c</Number><Duration>&amp;</Duration>"})),
        "1 entry, forwarded: 2 findings\n"
        "line 1, column 25: call 1: Number: raw \"<\", which an XML text holds as &lt;; it is still read as it stands\n"
        "line 1, column 28: call 1: Number: raw \"&\", which an XML text holds as &amp;\n");
}

TEST_F(Check, ReportsAnElementInsideOfAText) {
    EXPECT_EQ(findings(calls({"<Number>1<b>2</b>3</Number><Duration>1</Duration>"})),
              "1 entry, forwarded: 1 finding\n"
              "line 1, column 25: call 1: Number holds the raw markup <b>; it is still read as it stands\n");
}

TEST_F(Check, ReportsWhatTheListReadsOfATextWithMarkup) {
    EXPECT_EQ(findings(schema("CallLogMissedCalls", element("Entry", calls({"<Number>1<b>2</b>3</Number>"})))),
              "reply, missed, 1 entry: 1 finding\n"
              "line 1, column 104: entry 1, call 1: Number holds the raw markup <b>; what is read is \"1\"\n");
}

TEST_F(Check, ReportsATextThatBecomesMarkupWhenTheCallsAreSeparated) {
    EXPECT_EQ(findings(calls({"<Number>a&lt;/Item&gt;b</Number><Duration>1</Duration>", "<Number>2</Number>"})),
              "1 entry, forwarded: 3 findings\n"
              "line 1, column 1: here are 2 calls, but 1 is read: a text that is escaped once becomes markup before "
              "the calls are told apart\n"
              "line 1, column 16: call 1: Number says \"a</Item>b\", but \"\" is read: text that is escaped once is "
              "markup when calls are told apart\n"
              "line 1, column 48: call 1: Duration says \"1\", but \"\" is read\n");
}

TEST_F(Check, ReportsTextBetweenElements) {
    EXPECT_EQ(findings("<Viewed>True</Viewed>" + element("LogList", "\n" + element("Item", aCall))),
              "1 entry, missed: 1 finding\n"
              "line 1, column 31: text that belongs to no element: \"\\n\"; a decoder's cursor stops in front of it, "
              "and the missed call list takes it for the text of the element before\n");
}

TEST_F(Check, ReportsThatTheListTakesTextBetweenElementsForTheOneBefore) {
    EXPECT_EQ(
        findings(schema("CallLogMissedCalls", element("Entry", calls({"<Number>1</Number>\n<TimeDate>2</TimeDate>"})))),
        "reply, missed, 1 entry: 2 findings\n"
        "line 1, column 95: entry 1, call 1: Number says \"1\", but \"\\n\" is read\n"
        "line 1, column 113: entry 1, call 1: text that belongs to no element: \"\\n\"; a decoder's cursor stops in "
        "front of it, and the missed call list takes it for the text of the element before\n");
}

TEST_F(Check, ReportsAByteThatXmlForbids) {
    EXPECT_EQ(findings("<Surname>a\x01"
                       "b</Surname><Viewed>True</Viewed>"),
              "1 entry, missed: 1 finding\n"
              "line 1, column 11: Surname: the byte \\x01, which XML forbids; it is still read as it stands\n");
}

TEST_F(Check, ReportsATagThatHoldsMoreThanAName) {
    EXPECT_EQ(findings("<Viewed>True</Viewed><JSGroupBy a=\"1\">b</JSGroupBy>"),
              "1 entry, missed: 2 findings\n"
              "line 1, column 22: JSGroupBy is no element of an entry (missed): nobody reads \"b\"\n"
              "line 1, column 22: the tag of JSGroupBy holds more than its name, so that a search for <JSGroupBy> does "
              "not find it\n");
}

// Elements that are read otherwise than they are.

TEST_F(Check, ReportsAnElementThatNobodyReads) {
    EXPECT_EQ(findings("<Viewed>True</Viewed><Colour>red</Colour>" + calls({"<Number>1</Number><Colour>red</Colour>"})),
              "1 entry, missed: 2 findings\n"
              "line 1, column 22: Colour is no element of an entry (missed): nobody reads \"red\"\n"
              "line 1, column 75: call 1: Colour is no element of a call (missed): nobody reads \"red\"\n");
}

TEST_F(Check, ReportsAnElementThatNobodyReadsInTheList) {
    EXPECT_EQ(findings(element("LogList", "<Number>1</Number>" + element("Item", aCall))),
              "1 entry, forwarded: 1 finding\n"
              "line 1, column 10: Number is no element of LogList, which holds one Item for each call: nobody reads it "
              "there\n");
}

TEST_F(Check, ReportsAWordThatIsReplacedByItsFallback) {
    EXPECT_EQ(
        findings(calls({"<NumberType>mobile</NumberType><TargetLog>LOST</TargetLog>"})),
        "1 entry, dialled: 2 findings\n"
        "line 1, column 16: call 1: NumberType: \"mobile\" is none of its words (NO_ICON, PRIVATE, BUSINESS1, "
        "BUSINESS2, MOBILE); it is read as the fallback NO_ICON\n"
        "line 1, column 47: call 1: TargetLog: \"LOST\" is none of its words (OUT_BUSY, IN_ANSWERED, IN_NO_ANSWER, "
        "IN_BUSY, IN_GROUP_MISSED, OUT_ANSWERED, OUT_NO_ANSWER, IN_GROUP_BUSY); it is read as the fallback OUT_BUSY\n");
}

TEST_F(Check, ReportsThatAnEmptyLogTargetIsNotTheFallback) {
    EXPECT_EQ(findings(calls({"<NumberType></NumberType><TargetLog></TargetLog>"})),
              "1 entry, dialled: 2 findings\n"
              "line 1, column 16: call 1: NumberType: \"\" is none of its words (NO_ICON, PRIVATE, BUSINESS1, "
              "BUSINESS2, MOBILE); it is read as the fallback NO_ICON\n"
              "line 1, column 41: call 1: TargetLog: \"\" is none of its words (OUT_BUSY, IN_ANSWERED, IN_NO_ANSWER, "
              "IN_BUSY, IN_GROUP_MISSED, OUT_ANSWERED, OUT_NO_ANSWER, IN_GROUP_BUSY); an empty one is read as "
              "IN_ANSWERED, not as the fallback OUT_BUSY\n");
}

TEST_F(Check, ReportsAFlagThatIsNeitherTrueNorFalse) {
    EXPECT_EQ(findings("<Viewed>true</Viewed>" + calls({"<CompletedElsewhere>1</CompletedElsewhere>"})),
              "1 entry, missed: 2 findings\n"
              "line 1, column 1: Viewed: \"true\" is neither True nor False; it is read as False\n"
              "line 1, column 37: call 1: CompletedElsewhere: \"1\" is neither True nor False; it is read as False\n");
}

TEST_F(Check, ReportsMoreThanTenCallsToAList) {
    EXPECT_EQ(findings(schema("CallLogMissedCalls", element("Entry", calls(std::vector<std::string>(12, aCall))))),
              "reply, missed, 1 entry: 1 finding\n"
              "line 1, column 399: entry 1, call 11: an entry holds at most ten calls, this one 12; 10 are read\n");
}

TEST_F(Check, ReportsMoreThanTenCallsToADecoder) {
    EXPECT_EQ(findings("<Viewed>True</Viewed>" + calls(std::vector<std::string>(11, aCall))),
              "1 entry, missed: 1 finding\n"
              "line 1, column 341: call 11: an entry holds at most ten calls, this one 11; 11 are read\n");
}

TEST_F(Check, ReportsAnEmptyItemThatEndsTheScan) {
    EXPECT_EQ(findings("<Viewed>True</Viewed>" + calls({aCall, "", aCall})),
              "1 entry, missed: 1 finding\n"
              "line 1, column 62: call 2: an empty Item, which ends the scan of the calls; 1 of 3 are read\n");
}

TEST_F(Check, ReportsAnEmptyItemThatTheListTakes) {
    EXPECT_EQ(findings(schema("CallLogMissedCalls", element("Entry", calls({aCall, ""})))),
              "reply, missed, 1 entry: 1 finding\n"
              "line 1, column 120: entry 1, call 2: an empty Item, which ends the scan of a decoder; the list reader "
              "takes a call without anything\n");
}

TEST_F(Check, ReportsAnOrderThatTheCursorDoesNotFollow) {
    EXPECT_EQ(
        findings("<Surname>b</Surname><EntryId>a</EntryId><Viewed>True</Viewed>" +
                 calls({"<TimeDate>1</TimeDate><Number>2</Number>"})),
        "1 entry, missed: 2 findings\n"
        "line 1, column 21: EntryId is expected before Surname; a decoder's cursor stops in front of it; it is still "
        "read "
        "as it stands\n"
        "line 1, column 99: call 1: Number is expected before TimeDate; a decoder's cursor stops in front of it; it is "
        "still read as it stands\n");
}

TEST_F(Check, ReportsAnElementBehindTheCalls) {
    EXPECT_EQ(findings(calls({aCall}) + "<Viewed>True</Viewed>"),
              "1 entry, missed: 1 finding\n"
              "line 1, column 51: Viewed is expected before LogList, where a decoder's cursor stays\n");
}

TEST_F(Check, ReportsAPictureUnderTheNameThatIsNotRead) {
    EXPECT_EQ(findings("<Picture>p.jpg</Picture><Viewed>True</Viewed>"),
              "1 entry, missed: 1 finding\n"
              "line 1, column 1: a picture under the name Picture, but its reader looks for PictureClip; \"p.jpg\" is "
              "lost\n");
}

TEST_F(Check, ReportsThePictureOfAMissedEntryInANotification) {
    EXPECT_EQ(findings(declaration + "<Method>missedCallsUpdate</Method><Picture>p.jpg</Picture><Viewed>True</Viewed>" +
                       "<ActionType>0</ActionType>"),
              "notification, missed: 1 finding\n"
              "line 1, column 73: a picture under the name Picture, but its reader looks for PictureClip; \"p.jpg\" is "
              "lost\n");
}

TEST_F(Check, ReportsAPictureOfAnotherKindUnderTheNameThatIsNotRead) {
    EXPECT_EQ(findings("<Picture>p.jpg</Picture><JSGroupBy>1</JSGroupBy>"),
              "1 entry, dialled: 1 finding\n"
              "line 1, column 1: a picture under the name Picture, but its reader looks for PictureClip; \"p.jpg\" is "
              "lost\n");
}

TEST_F(Check, SaysWhichOfTwoElementsADecoderTakes) {
    EXPECT_EQ(
        findings("<Surname>a</Surname><Surname>b</Surname><Viewed>True</Viewed>" +
                 calls({"<Number>1</Number><Number>2</Number>", "<Number>3</Number><Number>3</Number>"})),
        "1 entry, missed: 3 findings\n"
        "line 1, column 21: Surname stands here once more; the decoder takes the first: \"a\" is read, \"b\" is lost\n"
        "line 1, column 95: call 1: Number stands here once more; the decoder takes the first: \"1\" is read, \"2\" is "
        "lost\n"
        "line 1, column 144: call 2: Number stands here once more; the decoder takes the first: \"3\" is read\n");
}

TEST_F(Check, SaysWhichOfTwoElementsTheListTakes) {
    EXPECT_EQ(
        findings(schema("CallLogMissedCalls", element("Entry", "<Surname>a</Surname><Surname>b</Surname>" +
                                                                   calls({"<Number>1</Number><Number>2</Number>"})))),
        "reply, missed, 1 entry: 2 findings\n"
        "line 1, column 100: entry 1: Surname stands here once more; the list reader takes the first: \"a\" is read, "
        "\"b\" is lost\n"
        "line 1, column 153: entry 1, call 1: Number stands here once more; the list reader takes the last: \"2\" is "
        "read, \"1\" is lost\n");
}

TEST_F(Check, ReportsASecondListOfCalls) {
    EXPECT_EQ(findings(calls({aCall}) + calls({aCall}) + "<Item>x</Item>"),
              "1 entry, forwarded: 2 findings\n"
              "line 1, column 51: a second LogList; the decoder reads the first, the calls of this one are lost\n"
              "line 1, column 101: an Item outside of LogList; the decoder does not read it\n");
}

TEST_F(Check, ReportsCallsOutsideOfTheListToTheListReader) {
    EXPECT_EQ(
        findings(
            schema("CallLogMissedCalls", element("Entry", calls({aCall}) + calls({aCall}) + element("Item", aCall)))),
        "reply, missed, 1 entry: 2 findings\n"
        "line 1, column 130: entry 1: a second LogList; the list reader takes its calls too, a decoder would not\n"
        "line 1, column 180: entry 1: an Item outside of LogList; the list reader takes it, a decoder would not\n");
}

TEST_F(Check, ReportsAColonInAnId) {
    EXPECT_EQ(
        findings("<UniqueId>12:34</UniqueId><Viewed>True</Viewed>"),
        "1 entry, missed: 1 finding\n"
        "line 1, column 1: UniqueId: a colon, which writing drops: a request that deletes \"12:34\" names \"1234\"\n");
}

// Envelopes.

TEST_F(Check, ReportsASchemaThatNobodyReads) {
    EXPECT_EQ(
        findings(schema("CallLogEnabledState", element("Entry", aCall))),
        "reply, schema \"CallLogEnabledState\", 1 entry: 1 finding\n"
        "line 1, column 39: nobody reads the schema \"CallLogEnabledState\"; all in it is lost (schemas with readers: "
        "CallLogMissedCalls, CallLogDialledCalls, CallLogReceivedCalls, CallLogForwardedCalls, CallBacks)\n");
}

TEST_F(Check, ReportsEntriesThatTheListDropsForTheirCategory) {
    EXPECT_EQ(
        findings(schema("CallLogMissedCalls",
                        element("Entry", "<UniqueId>1</UniqueId>" + calls({aCall})) +
                            element("Entry", "<UniqueId>2</UniqueId><Category>Dialled</Category>" + calls({aCall})) +
                            element("Entry", "<UniqueId>3</UniqueId>" + calls({aCall})))),
        "reply, missed, 3 entries: 2 findings\n"
        "line 1, column 160: entry 2 (UniqueId 2): the missed call list drops it: its Category, or an earlier one, is "
        "\"Dialled\" and not \"Missed\"\n"
        "line 1, column 275: entry 3 (UniqueId 3): the missed call list drops it: its Category, or an earlier one, is "
        "\"Dialled\" and not \"Missed\"\n");
}

TEST_F(Check, ReportsEntriesThatNothingSaysAreMissed) {
    EXPECT_EQ(findings(schema("CallLog", element("Entry", calls({aCall})))),
              "reply, schema \"CallLog\", 1 entry: 1 finding\n"
              "line 1, column 62: entry 1: the missed call list drops it: neither the schema nor a Category or Method "
              "says that it is Missed\n");
}

TEST_F(Check, ReportsAnEntryWithoutCallsInTheList) {
    EXPECT_EQ(
        findings(schema("CallLogMissedCalls",
                        element("Entry", "<UniqueId>1</UniqueId><Viewed>True</Viewed><LogList></LogList>"))),
        "reply, missed, 1 entry: 1 finding\n"
        "line 1, column 73: entry 1 (UniqueId 1): it holds no call; whoever reads the missed call list deletes it\n");
}

TEST_F(Check, ReportsAnEntryThatMarkupTearsApart) {
    EXPECT_EQ(findings(schema("CallLogDialledCalls", element("Entry", calls({"<Number>1<Entry>2</Entry>3</Number>"})))),
              "reply, dialled, 1 entry: 2 findings\n"
              "line 1, column 81: entry 1: here is 1 call, but 0 are read\n"
              "line 1, column 105: entry 1, call 1: Number holds the raw markup <Entry>\n");
}

TEST_F(Check, ReportsARequestThatTheStoreRefuses) {
    EXPECT_EQ(
        findings(schema("CallLogDialledCalls", "<ReasonForMessage>write_request</ReasonForMessage><Entry></Entry>")),
        "write request, dialled, 1 entry: 1 finding\n"
        "line 1, column 39: the store refuses this request: entry 1 is empty\n");
}

TEST_F(Check, ReportsAReasonThatIsNone) {
    EXPECT_EQ(
        findings(schema("CallLogDialledCalls", "<ReasonForMessage>drop_request</ReasonForMessage>")),
        "request, dialled, 0 entries: 2 findings\n"
        "line 1, column 39: the store refuses this request: no ReasonForMessage of read_request, write_request or "
        "delete_request follows the schema's start tag\n"
        "line 1, column 74: the reason \"drop_request\" is none of read_request, write_request, delete_request\n");
}

TEST_F(Check, ReportsARequestOfASchemaThatNobodyReads) {
    EXPECT_EQ(findings(schema("Nowhere", "<ReasonForMessage>read_request</ReasonForMessage>")),
              "read request, schema \"Nowhere\": 1 finding\n"
              "line 1, column 39: nobody reads the schema \"Nowhere\"; all in it is lost (schemas with readers: "
              "CallLogMissedCalls, CallLogDialledCalls, CallLogReceivedCalls, CallLogForwardedCalls, CallBacks)\n");
}

TEST_F(Check, ReportsARefusalOfTheDataAccessService) {
    EXPECT_EQ(findings(schema("CallLogMissedCalls", "<Result>failed</Result><Reason>disk full</Reason>")),
              "reply, missed, 0 entries: 1 finding\n"
              "line 1, column 73: the data access service refused: \"disk full\"\n");
}

TEST_F(Check, ReportsAResultThatIsNone) {
    EXPECT_EQ(findings(schema("CallLogMissedCalls", "<Result>OK</Result>")),
              "reply, missed, 0 entries: 1 finding\n"
              "line 1, column 73: the result \"OK\" is neither ok nor failed, which counts as a failure\n");
}

TEST_F(Check, ReportsWhatIsAroundTheSchema) {
    EXPECT_EQ(findings("<Schema name=\"CallLogMissedCalls\"><Extra>1</Extra></Schema><Surname>x</Surname>y"),
              "reply, missed, 0 entries: 4 findings\n"
              "line 1, column 1: the text does not begin with <?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
              "line 1, column 35: Extra is no element of a reply: nobody reads \"1\"\n"
              "line 1, column 60: Surname is no element of the text around the schema: nobody reads \"x\"\n"
              "line 1, column 80: text that belongs to no element: \"y\"; a decoder's cursor stops in front of it, and "
              "the missed call list takes it for the text of the element before\n");
}

TEST_F(Check, ReportsAMethodThatNoObserverKnows) {
    EXPECT_EQ(findings(declaration + "<Method>lostCallsUpdate</Method><ActionType>0</ActionType>"),
              "notification: 1 finding\n"
              "line 1, column 39: no observer knows the method \"lostCallsUpdate\" (methods: missedCallsCountUpdate, "
              "missedCallsUpdate, dialledCallsUpdate, receivedCallsUpdate, forwardedCallsUpdate)\n");
}

TEST_F(Check, ReportsANotificationWithoutAnAction) {
    EXPECT_EQ(findings(declaration + "<Method>dialledCallsUpdate</Method>" + calls({aCall})),
              "notification, dialled: 1 finding\n"
              "line 1, column 124: there is no ActionType: the message is cut, or it is none\n");
}

TEST_F(Check, ReportsAnActionThatIsNone) {
    EXPECT_EQ(
        findings(declaration + "<Method>dialledCallsUpdate</Method>" + calls({aCall}) + "<ActionType>7</ActionType>"),
        "notification, dialled: 1 finding\n"
        "line 1, column 124: ActionType: \"7\" names no action (0 added, 1 changed, 2 viewed, 3 deleted)\n");
}

TEST_F(Check, ReportsAnIdToDeleteBehindTheAction) {
    EXPECT_EQ(findings(declaration + "<Method>dialledCallsUpdate</Method>" + calls({aCall}) +
                       "<ActionType>3</ActionType><UniqueIdToDelete>1</UniqueIdToDelete>"),
              "notification, dialled: 1 finding\n"
              "line 1, column 150: UniqueIdToDelete is expected before ActionType; a decoder's cursor stops in front "
              "of it\n");
}

TEST_F(Check, ReportsACountThatIsNone) {
    EXPECT_EQ(findings(declaration + "<Method>missedCallsCountUpdate</Method><Value>two</Value><Extra>1</Extra>"),
              "notification: 2 findings\n"
              "line 1, column 39: Value holds no number of missed calls but \"two\"\n"
              "line 1, column 96: Extra is no element of a count: nobody reads \"1\"\n");
    EXPECT_EQ(findings(declaration + "<Method>missedCallsCountUpdate</Method><Value>10000000000</Value>"),
              "notification: 1 finding\n"
              "line 1, column 39: Value holds no number of missed calls but \"10000000000\"\n");
}

TEST_F(Check, ReportsACountThatCameOutNegative) {
    EXPECT_EQ(
        findings(declaration + "<Method>missedCallsCountUpdate</Method><Value>-2</Value>"),
        "notification: 1 finding\n"
        "line 1, column 39: Value is -2: a count above 2147483647 is written as a negative number, 4294967296 less\n");
}

// Stores.

TEST_F(Check, ReportsWhatIsWrongInAStoreByItsSchemaAndEntry) {
    const std::string store = folder_.file("journal.db");
    const Finished recorded =
        run({"record", "dialled", "--from", "-"},
            R"({"Number":"0301","ConnectedSurname":"Smith & Co","TimeDate":"2024-05-01 10:15:00"})"
            "\n");
    ASSERT_EQ(recorded.status, 0) << recorded.err;
    const Finished checked = run({"check", store});
    EXPECT_EQ(checked.status, 1);
    EXPECT_EQ(checked.out,
              store + ": CallLogMissedCalls: reply, missed, 0 entries: nothing found\n" + store +
                  ": CallLogDialledCalls: reply, dialled, 1 entry: 1 finding\n" + store +
                  ": CallLogDialledCalls: line 1, column 328: entry 1 (UniqueId 1), call 1: ConnectedSurname: "
                  "raw \"&\", which an XML text holds as &amp;; it is still read as it stands\n" +
                  store + ": CallLogReceivedCalls: reply, received, 0 entries: nothing found\n" + store +
                  ": CallLogForwardedCalls: reply, forwarded, 0 entries: nothing found\n" + store +
                  ": CallBacks: reply, callback, 0 entries: nothing found\n");
}

TEST_F(Check, KeepsNoFileInMemoryThatIsAStore) {
    const std::string store = folder_.file("journal.db");
    ASSERT_EQ(run({"record", "dialled", "--number", "1"}).status, 0);
    constexpr long megabytes = 400;
    std::filesystem::resize_file(store, megabytes << 20);
    EXPECT_EQ(run({"check", store}).status, 0);
    rusage children = {};
    ASSERT_EQ(::getrusage(RUSAGE_CHILDREN, &children), 0);
    EXPECT_LT(children.ru_maxrss, megabytes * 1024);
}

TEST_F(Check, ReportsWhatDoesNotFitInTheIndexOfAStoreAndWhatToDo) {
    const std::string store = folder_.file("journal.db");
    run({"record", "dialled", "--number", "0301", "--surname", "Smith", "--time", "2024-05-01 10:15:00"});
    runSql(store, "delete from entry_number; delete from entry_name");
    const Finished checked = run({"check", store});
    EXPECT_EQ(checked.status, 1);
    EXPECT_EQ(checked.err, "");
    const std::string advice = "; set the region once more, which makes the index anew\n";
    const std::string line = store + ": CallLogDialledCalls: the index does not fit the entry \"1\": ";
    EXPECT_EQ(checked.out, store + ": CallLogMissedCalls: reply, missed, 0 entries: nothing found\n" + store +
                               ": CallLogDialledCalls: reply, dialled, 1 entry: nothing found\n" + store +
                               ": CallLogReceivedCalls: reply, received, 0 entries: nothing found\n" + store +
                               ": CallLogForwardedCalls: reply, forwarded, 0 entries: nothing found\n" + store +
                               ": CallBacks: reply, callback, 0 entries: nothing found\n" +  //
                               line + "it is not found by one of its numbers" + advice +     //
                               line + "it is not found by its name" + advice);
    EXPECT_EQ(run({"settings", "region", "ZZ"}).status, 0);
    EXPECT_EQ(run({"check", store}).status, 0);
}

TEST_F(Check, ReportsAStoreWhoseFileIsDamaged) {
    const std::string store = folder_.file("journal.db");
    run({"record", "dialled", "--number", "0301", "--time", "2024-05-01 10:15:00"});
    runSql(store,
           "pragma writable_schema = on; update sqlite_schema set sql = replace(sql, 'next_id bigint not null', "
           "'next_id bigint not null check (next_id = 0)') where name = 'calljournal_store'");
    const Finished checked = run({"check", store});
    EXPECT_EQ(checked.status, 1);
    EXPECT_EQ(checked.err, "");
    const std::string line =
        store + ": the file is damaged: \"CHECK constraint failed in calljournal_store\"; go back to a copy of it\n";
    EXPECT_EQ(checked.out.substr(checked.out.find(store + ": the file")), line);
}

TEST_F(Check, ShowsNoControlCharacters) {
    EXPECT_EQ(findings("<Viewed>True</Viewed><A>\x1b[31m</A>"),
              "1 entry, missed: 2 findings\n"
              "line 1, column 22: A is no element of an entry (missed): nobody reads \"\\x1b[31m\"\n"
              "line 1, column 25: the byte \\x1b, which XML forbids\n");
}

// Comparison.

class CheckDiff : public Check {
protected:
    Finished diff(const std::string& a, const std::string& b, const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"check", "--diff", folder_.write("a", a), folder_.write("b", b)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }

    std::string differences(const std::string& a, const std::string& b) const {
        const Finished finished = diff(a, b);
        EXPECT_EQ(finished.err, "");
        EXPECT_EQ(finished.status, 1);
        return finished.out;
    }
};

TEST_F(CheckDiff, PrintsEachValueThatDiffers) {
    EXPECT_EQ(differences("<UniqueId>1</UniqueId><Surname>A &amp; B</Surname><Viewed>True</Viewed>" +
                              calls({"<Number>1</Number>", "<Number>2</Number><TargetLog>IN_BUSY</TargetLog>"}),
                          "<UniqueId>2</UniqueId><Viewed>False</Viewed>" +
                              calls({"<Number>1</Number>", "<Number>3</Number><TargetLog>IN_ANSWERED</TargetLog>"})),
              "UniqueId: 1 | 2\n"
              "Surname: A & B | \n"
              "Viewed: True | False\n"
              "call 2, Number: 2 | 3\n"
              "call 2, TargetLog: IN_BUSY | IN_ANSWERED\n");
}

TEST_F(CheckDiff, PrintsTheValuesOfACallThatOnlyOneEntryHas) {
    const std::string out = differences("<JSGroupBy>1</JSGroupBy>" + calls({aCall}),
                                        "<JSGroupBy>1</JSGroupBy>" + calls({aCall, "<Number>\n</Number>"}));
    EXPECT_EQ(out,
              "call 2, Number: (no such call) | \\n\n"
              "call 2, NumberType: (no such call) | NO_ICON\n"
              "call 2, ConnectedNumberPriority: (no such call) | False\n"
              "call 2, ConnectedNumberType: (no such call) | NO_ICON\n"
              "call 2, IsBluetoothCall: (no such call) | False\n"
              "call 2, TargetLog: (no such call) | IN_ANSWERED\n"
              "call 2, NumberPresentation: (no such call) | NOT_AVAILABLE\n"
              "call 2, NamePresentation: (no such call) | NOT_AVAILABLE\n"
              "call 2, TimeFormat: (no such call) | FORM_24\n"
              "call 2, TransferType: (no such call) | TRANSFER_SOURCE_NUMBER\n");
}

TEST_F(CheckDiff, PrintsNothingForEqualEntriesInDifferentMessages) {
    const std::string body = calls({"<Number>1</Number><CompletedElsewhere>True</CompletedElsewhere>"});
    const Finished finished = diff(
        writeRequest("CallLogMissedCalls", "<Picture>p</Picture><Viewed>True</Viewed>" + body),
        schema("CallLogMissedCalls", "<Entry><PictureClip>p</PictureClip><Viewed>True</Viewed>" + body + "</Entry>"));
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out, "");
    EXPECT_EQ(finished.err, "");
    EXPECT_EQ(diff(declaration + "<Method>missedCallsUpdate</Method><Viewed>True</Viewed>" + body +
                       "<ActionType>0</ActionType>\n",
                   "<Viewed>True</Viewed>" + body + "\n")
                  .status,
              0);
}

TEST_F(CheckDiff, RefusesWhatIsNotOneEntryEach) {
    const std::string missed = "<Viewed>True</Viewed>";
    const Finished none = diff(missed, "hello");
    EXPECT_EQ(none.status, 2);
    EXPECT_EQ(none.err, "calljournal: " + folder_.file("b") +
                            ": a comparison takes a text with one entry, and this is: unknown text\n");
    EXPECT_EQ(diff(missed, element("Entry", missed) + element("Entry", missed)).status, 2);
    EXPECT_EQ(diff(missed, "<JSGroupBy>1</JSGroupBy>").err,
              "calljournal: a comparison takes entries of one kind; these are missed and dialled\n");
    EXPECT_EQ(diff(missed, "<JSGroupBy>1</JSGroupBy>", {"--kind", "missed"}).status, 1);
    EXPECT_EQ(run({"check", "--diff", folder_.file("a")}).status, 2);
    EXPECT_EQ(run({"check", "--diff", "-", "-"}).status, 2);
}

}  // namespace
