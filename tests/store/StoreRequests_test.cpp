#include <stdexcept>
#include <string>
#include <vector>

#include "StoreTest.h"

namespace {

const std::vector<std::string> allSchemas = {"CallLogMissedCalls",    "CallLogDialledCalls", "CallLogReceivedCalls",
                                             "CallLogForwardedCalls", "Conversations",       "CallBacks"};

const std::string dialled = "CallLogDialledCalls";
const std::string missed = "CallLogMissedCalls";

class StoreRequests : public StoreTest {
protected:
    /// Has the store give one id more, and no other.
    void leaveOneId() {
        store();
        closeStore();
        runSql(file(), "update calljournal_store set next_id = 999999999999999999");
    }
};

TEST_F(StoreRequests, ReadsNothingFromAnEmptyStore) {
    EXPECT_EQ(ask("<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
                  "<ReasonForMessage>read_request</ReasonForMessage></Schema>"),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\"></Schema>");
}

TEST_F(StoreRequests, WritesAnEntryAndReadsItBack) {
    EXPECT_EQ(ask("<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
                  "<ReasonForMessage>write_request</ReasonForMessage>"
                  "<Entry><UniqueId>1234</UniqueId><Surname>Smith &amp; Co</Surname><Viewed>False</Viewed>"
                  "<LogList><Item><Number>0301234</Number><GroupName>A<B & C</GroupName></Item></LogList></Entry>"
                  "</Schema>"),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
              "<Result>ok</Result><UniqueId>1234</UniqueId></Schema>");
    EXPECT_EQ(ask(readRequest(missed)),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
              "<Entry><UniqueId>1234</UniqueId><Surname>Smith &amp; Co</Surname><Viewed>False</Viewed>"
              "<LogList><Item><Number>0301234</Number><GroupName>A<B & C</GroupName></Item></LogList></Entry>"
              "</Schema>");
}

TEST_F(StoreRequests, KeepsEachSchemaApart) {
    for (const std::string& schema : allSchemas) {
        const std::string entry = "<Entry><UniqueId>7</UniqueId><Surname>" + schema + "</Surname></Entry>";
        EXPECT_EQ(ask(writeRequest(schema, entry)), envelope(schema, "<Result>ok</Result><UniqueId>7</UniqueId>"));
    }
    for (const std::string& schema : allSchemas) {
        EXPECT_EQ(ask(readRequest(schema)),
                  envelope(schema, "<Entry><UniqueId>7</UniqueId><Surname>" + schema + "</Surname></Entry>"));
    }
}

TEST_F(StoreRequests, AnswersWithTheIdsInTheOrderOfTheEntries) {
    EXPECT_EQ(ask(writeRequest(dialled,
                               "<Entry><UniqueId>b</UniqueId></Entry><Entry><UniqueId>a</UniqueId></Entry>"
                               "<Entry><EntryId>x</EntryId></Entry><Entry><UniqueId>c</UniqueId></Entry>")),
              envelope(dialled,
                       "<Result>ok</Result><UniqueId>b</UniqueId><UniqueId>a</UniqueId>"
                       "<UniqueId>1</UniqueId><UniqueId>c</UniqueId>"));
}

TEST_F(StoreRequests, ReplacesAnEntryInItsPlace) {
    ask(writeRequest(dialled,
                     "<Entry><UniqueId>z</UniqueId><EntryId>1</EntryId></Entry>"
                     "<Entry><UniqueId>a</UniqueId><EntryId>2</EntryId></Entry>"));
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><UniqueId>z</UniqueId><EntryId>3</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>z</UniqueId>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled,
                                                  "<Entry><UniqueId>z</UniqueId><EntryId>3</EntryId></Entry>"
                                                  "<Entry><UniqueId>a</UniqueId><EntryId>2</EntryId></Entry>"));
}

TEST_F(StoreRequests, TakesTheLastOfTwoEntriesWithOneId) {
    EXPECT_EQ(ask(writeRequest(dialled,
                               "<Entry><UniqueId>a</UniqueId><EntryId>1</EntryId></Entry>"
                               "<Entry><UniqueId>a</UniqueId><EntryId>2</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId><UniqueId>a</UniqueId>"));
    EXPECT_EQ(ask(readRequest(dialled)),
              envelope(dialled, "<Entry><UniqueId>a</UniqueId><EntryId>2</EntryId></Entry>"));
}

TEST_F(StoreRequests, PutsADeletedEntryThatIsWrittenAgainLast) {
    ask(writeRequest(dialled, "<Entry><UniqueId>a</UniqueId></Entry><Entry><UniqueId>b</UniqueId></Entry>"));
    ask(deleteRequest(dialled, "<Entry><UniqueId>a</UniqueId></Entry>"));
    ask(writeRequest(dialled, "<Entry><UniqueId>a</UniqueId></Entry>"));
    EXPECT_EQ(ask(readRequest(dialled)),
              envelope(dialled, "<Entry><UniqueId>b</UniqueId></Entry><Entry><UniqueId>a</UniqueId></Entry>"));
}

TEST_F(StoreRequests, DeletesAnEntryWhetherItIsThereOrNot) {
    ask(writeRequest(dialled, "<Entry><UniqueId>a</UniqueId></Entry><Entry><UniqueId>b</UniqueId></Entry>"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(ask(deleteRequest(dialled, "<Entry><UniqueId>a</UniqueId></Entry>")),
                  envelope(dialled, "<Result>ok</Result>"));
        EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, "<Entry><UniqueId>b</UniqueId></Entry>"));
    }
}

TEST_F(StoreRequests, DeletesOnlyInTheSchemaOfTheRequest) {
    ask(writeRequest(dialled, "<Entry><UniqueId>a</UniqueId></Entry>"));
    ask(writeRequest(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
    ask(deleteRequest(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, "<Entry><UniqueId>a</UniqueId></Entry>"));
    EXPECT_EQ(ask(readRequest(missed)), envelope(missed, ""));
}

TEST_F(StoreRequests, DeletesSeveralEntriesAtOnce) {
    ask(writeRequest(dialled,
                     "<Entry><UniqueId>a</UniqueId></Entry><Entry><UniqueId>b</UniqueId></Entry>"
                     "<Entry><UniqueId>c</UniqueId></Entry>"));
    EXPECT_EQ(ask(deleteRequest(dialled, "<Entry><UniqueId>c</UniqueId></Entry><Entry><UniqueId>a</UniqueId></Entry>")),
              envelope(dialled, "<Result>ok</Result>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, "<Entry><UniqueId>b</UniqueId></Entry>"));
}

TEST_F(StoreRequests, DeletesConversationsByCallLogId) {
    ask(writeRequest("Conversations",
                     "<Entry><UniqueId>7</UniqueId></Entry><Entry><UniqueId>8</UniqueId></Entry>"
                     "<Entry><UniqueId>9</UniqueId></Entry>"));
    EXPECT_EQ(ask(deleteRequest("Conversations", "<Entry><CallLogId>7</CallLogId></Entry>")),
              envelope("Conversations", "<Result>ok</Result>"));
    EXPECT_EQ(ask(deleteRequest("Conversations", "<Entry><UniqueId>9</UniqueId></Entry>")),
              envelope("Conversations", "<Result>ok</Result>"));
    EXPECT_EQ(ask(readRequest("Conversations")), envelope("Conversations", "<Entry><UniqueId>8</UniqueId></Entry>"));
}

TEST_F(StoreRequests, ServesAMissedPictureAsPictureClip) {
    const std::string body =
        "<UniqueId>7</UniqueId><Picture>a<b.jpg</Picture><Viewed>True</Viewed><LogList><Item>"
        "<GroupName><Picture>x</Picture></GroupName></Item></LogList>";
    for (const std::string& schema : allSchemas) {
        ask(writeRequest(schema, "<Entry>" + body + "</Entry>"));
    }
    EXPECT_EQ(ask(readRequest(missed)),
              envelope(missed,
                       "<Entry><UniqueId>7</UniqueId><PictureClip>a<b.jpg</PictureClip><Viewed>True</Viewed>"
                       "<LogList><Item><GroupName><Picture>x</Picture></GroupName></Item></LogList></Entry>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, "<Entry>" + body + "</Entry>"));
}

// Ids that the store gives

TEST_F(StoreRequests, NumbersEntriesWithoutAnId) {
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry><Entry><EntryId>y</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>1</UniqueId><UniqueId>2</UniqueId>"));
    EXPECT_EQ(ask(writeRequest(missed, "<Entry><Viewed>True</Viewed></Entry>")),
              envelope(missed, "<Result>ok</Result><UniqueId>3</UniqueId>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled,
                                                  "<Entry><UniqueId>1</UniqueId><EntryId>x</EntryId></Entry>"
                                                  "<Entry><UniqueId>2</UniqueId><EntryId>y</EntryId></Entry>"));
}

TEST_F(StoreRequests, NeverGivesTheIdOfADeletedEntryAgain) {
    ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry>"));
    ask(deleteRequest(dialled, "<Entry><UniqueId>1</UniqueId></Entry>"));
    ask(writeRequest(dialled, "<Entry><UniqueId>7</UniqueId></Entry>"));
    ask(deleteRequest(dialled, "<Entry><UniqueId>7</UniqueId></Entry>"));
    closeStore();
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>8</UniqueId>"));
}

TEST_F(StoreRequests, CountsOnAfterACallerChoseALowerId) {
    ask(writeRequest(dialled, "<Entry><UniqueId>5</UniqueId></Entry>"));
    ask(writeRequest(dialled, "<Entry><UniqueId>2</UniqueId></Entry>"));
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>6</UniqueId>"));
}

TEST_F(StoreRequests, NeverGivesAnIdThatACallerChose) {
    EXPECT_EQ(ask(writeRequest(dialled,
                               "<Entry><EntryId>x</EntryId></Entry><Entry><UniqueId>1</UniqueId></Entry>"
                               "<Entry><EntryId>y</EntryId></Entry><Entry><UniqueId>3</UniqueId></Entry>")),
              envelope(dialled,
                       "<Result>ok</Result><UniqueId>4</UniqueId><UniqueId>1</UniqueId>"
                       "<UniqueId>5</UniqueId><UniqueId>3</UniqueId>"));
}

TEST_F(StoreRequests, TakesOnlyDecimalNumbersOfItsOwnRangeForIdsOfItsOwn) {
    for (const char* id : {"007", "0", "+9", "-9", "9x", "x9", " 9", "999999999999999999", "1000000000000000000",
                           "9223372036854775807", "99999999999999999999999999"}) {
        ask(writeRequest(dialled, "<Entry><UniqueId>" + std::string(id) + "</UniqueId></Entry>"));
    }
    EXPECT_EQ(ask(writeRequest(missed, "<Entry><Viewed>True</Viewed></Entry>")),
              envelope(missed, "<Result>ok</Result><UniqueId>1</UniqueId>"));
}

TEST_F(StoreRequests, GoesOnBehindIdsThatACallerTookOneByOne) {
    for (const char* id : {"40", "39", "1000000000041", "999999999999999999"}) {
        ask(writeRequest(dialled, "<Entry><UniqueId>" + std::string(id) + "</UniqueId></Entry>"));
    }
    closeStore();
    runSql(file(), "update entry set unique_id = '42' where unique_id = '39'");
    EXPECT_EQ(ask(writeRequest(missed, "<Entry><EntryId>x</EntryId></Entry><Entry><EntryId>y</EntryId></Entry>")),
              envelope(missed, "<Result>ok</Result><UniqueId>41</UniqueId><UniqueId>43</UniqueId>"));
}

TEST_F(StoreRequests, FailsWhenNoFreeIdIsLeft) {
    leaveOneId();
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><EntryId>last</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>999999999999999999</UniqueId>"));
    const std::string before = everything();
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><UniqueId>a</UniqueId></Entry><Entry><EntryId>x</EntryId></Entry>")),
              failed(dialled, "store " + file() + ": it has no free id left; give the entry an id"));
    EXPECT_EQ(everything(), before);
}

TEST_F(StoreRequests, TakesBackTheIdsOfARequestThatFailed) {
    ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry><Entry>torn"));
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>1</UniqueId>"));
}

// Bytes

TEST_F(StoreRequests, KeepsEveryByteOfIdAndBody) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += i == '<' ? std::string("'\";--") : std::string(1, static_cast<char>(i));
    }
    const std::string entry =
        "<Entry><UniqueId>" + bytes + "</UniqueId><LogList>" + bytes + "<" + bytes + "</LogList></Entry>";
    EXPECT_EQ(ask(writeRequest(dialled, entry)),
              envelope(dialled, "<Result>ok</Result><UniqueId>" + bytes + "</UniqueId>"));
    closeStore();
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, entry));
    EXPECT_EQ(ask(deleteRequest(dialled, "<Entry><UniqueId>" + bytes + "</UniqueId></Entry>")),
              envelope(dialled, "<Result>ok</Result>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, ""));
}

TEST_F(StoreRequests, TellsIdsApartByTheirBytes) {
    std::string entries;
    for (const std::string& id :
         {std::string("a"), std::string("A"), std::string("a "), std::string("a\0", 2), std::string("a\0b", 3),
          std::string("1"), std::string("01"), std::string("1.0"), std::string("%"), std::string("_"),
          std::string("\xff"), std::string("&amp;"), std::string("&")}) {
        entries += "<Entry><UniqueId>" + id + "</UniqueId></Entry>";
    }
    ask(writeRequest(dialled, entries));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, entries));
}

TEST_F(StoreRequests, TakesMarkupInTheTextsOfCallsAsText) {
    const std::string entries =
        "<Entry><UniqueId>1</UniqueId><LogList><Item><GroupName>a</GroupName></Item></LogList><Item>b</GroupName></"
        "Item>"
        "</LogList></Entry>"
        "<Entry><UniqueId>2</UniqueId><LogList></Schema></LogList></Entry>"
        "<Entry><UniqueId>3</UniqueId><LogList><UniqueId>4</UniqueId><Entry ></LogList></Entry>"
        "<Entry><UniqueId>5</UniqueId><LogList><ReasonForMessage>read_request</ReasonForMessage><!--</LogList></Entry>";
    EXPECT_EQ(ask(writeRequest(dialled, entries)),
              envelope(dialled,
                       "<Result>ok</Result><UniqueId>1</UniqueId><UniqueId>2</UniqueId>"
                       "<UniqueId>3</UniqueId><UniqueId>5</UniqueId>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, entries));
}

TEST_F(StoreRequests, TakesALongEntry) {
    const std::string entry =
        "<Entry><UniqueId>1</UniqueId><EntryId>" + std::string(5000000, 'x') + "</EntryId></Entry>";
    ask(writeRequest(dialled, entry));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, entry));
}

TEST_F(StoreRequests, RefusesAnEntryBeyondTheLimit) {
    const std::size_t room = (std::size_t{64} << 20U) - std::string("<EntryId></EntryId>").size();
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><EntryId>" + std::string(room + 1, 'x') + "</EntryId></Entry>")),
              failed(dialled, "entry 1 is longer than 67108864 bytes"));
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><EntryId>" + std::string(room, 'x') + "</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>1</UniqueId>"));
}

TEST_F(StoreRequests, WritesFiveHundredEntriesInOneRequest) {
    std::string entries;
    std::string ids;
    std::string stored;
    for (int i = 1; i <= 500; ++i) {
        const std::string id = "<UniqueId>" + std::to_string(i) + "</UniqueId>";
        entries += "<Entry><EntryId>e</EntryId></Entry>";
        ids += id;
        stored += "<Entry>" + id + "<EntryId>e</EntryId></Entry>";
    }
    EXPECT_EQ(ask(writeRequest(dialled, entries)), envelope(dialled, "<Result>ok</Result>" + ids));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, stored));
}

// Refusals

struct Refusal {
    const char* story;
    std::string request;
    std::string reply;
};

std::vector<Refusal> refusals() {
    const std::string good = "<Entry><UniqueId>1</UniqueId></Entry>";
    const std::string startTag = declaration + "<Schema name=\"CallLogDialledCalls\">";
    const std::string noEntryTag =
        "does not begin with &lt;Entry&gt;: other text stands there, or the entry before it was torn apart";
    const std::string noElements = "is not a run of whole elements: a text in it holds markup, or it was cut";
    const std::string noDeclaration =
        declaration +
        "<Result>failed</Result><Reason>the request does not begin with &lt;?xml version=&quot;1.0&quot; "
        "encoding=&quot;utf-8&quot;?&gt;</Reason>";
    const std::string noSchema =
        declaration + "<Result>failed</Result><Reason>no start tag of a schema follows the XML declaration</Reason>";
    const std::string noReason = failed(
        dialled,
        "no ReasonForMessage of read_request, write_request or delete_request follows the schema&apos;s start tag");
    const std::string cut = failed(dialled, "the request is cut short: it does not end with &lt;/Schema&gt;");
    return {
        {"empty text", "", noDeclaration},
        {"no declaration", "<Schema name=\"CallLogDialledCalls\"></Schema>", noDeclaration},
        {"blank in front", " " + readRequest(dialled), noDeclaration},
        {"declaration alone", declaration, noSchema},
        {"no schema element, as without a schema name",
         declaration + "<ReasonForMessage>read_request</ReasonForMessage>", noSchema},
        {"empty schema name", readRequest(""), noSchema},
        {"schema name with markup", readRequest("a<b"), noSchema},
        {"schema name without end", declaration + "<Schema name=\"CallLogDialledCalls", noSchema},
        {"start tag without end", declaration + "<Schema name=\"CallLogDialledCalls\"", noSchema},
        {"second attribute", declaration + "<Schema name=\"CallLogDialledCalls\" x=\"\"></Schema>", noSchema},
        {"unknown schema", readRequest("CallLog"), failed("CallLog", "unknown schema CallLog")},
        {"unknown schema, longer", readRequest("CallLogMissedCalls2"),
         failed("CallLogMissedCalls2", "unknown schema CallLogMissedCalls2")},
        {"schema of all letters that one may have", readRequest("aZ_09-x.y"),
         failed("aZ_09-x.y", "unknown schema aZ_09-x.y")},
        {"schema in lower case", readRequest("conversations"), failed("conversations", "unknown schema conversations")},
        {"no end", startTag, cut},
        {"no end after the reason", startTag + "<ReasonForMessage>read_request</ReasonForMessage>", cut},
        {"something behind the end", readRequest(dialled) + "\n", cut},
        {"no reason", startTag + "</Schema>", noReason},
        {"no reason but an entry, as with an empty reason", startTag + good + "</Schema>", noReason},
        {"unknown reason", startTag + "<ReasonForMessage>erase_request</ReasonForMessage></Schema>", noReason},
        {"reason in upper case", startTag + "<ReasonForMessage>Read_request</ReasonForMessage></Schema>", noReason},
        {"reason after the entry", startTag + good + "<ReasonForMessage>write_request</ReasonForMessage></Schema>",
         noReason},
        {"read with an entry", startTag + "<ReasonForMessage>read_request</ReasonForMessage>" + good + "</Schema>",
         failed(dialled, "a read_request holds nothing but its reason")},
        {"write without an entry", writeRequest(dialled, ""), failed(dialled, "the request holds no entry to write")},
        {"delete without an entry, as for an empty id", deleteRequest(dialled, ""),
         failed(dialled, "the request names no entry to delete")},
        {"conversation without an id", deleteRequest("Conversations", ""),
         failed("Conversations", "the request names no entry to delete")},
        {"text in front of the entries", writeRequest(dialled, "x" + good), failed(dialled, "entry 1 " + noEntryTag)},
        {"line feed between entries", writeRequest(dialled, good + "\n" + good),
         failed(dialled, "entry 2 " + noEntryTag)},
        {"text behind the entries", writeRequest(dialled, good + "x"), failed(dialled, "entry 2 " + noEntryTag)},
        {"other element", writeRequest(dialled, good + "<Item>1</Item>"), failed(dialled, "entry 2 " + noEntryTag)},
        {"entry without end", writeRequest(dialled, good + "<Entry><UniqueId>2</UniqueId>"),
         failed(dialled, "entry 2 has no &lt;/Entry&gt;")},
        {"empty entry", writeRequest(dialled, good + "<Entry></Entry>"), failed(dialled, "entry 2 is empty")},
        {"name with </Entry>",
         writeRequest(dialled, good + "<Entry><UniqueId>2</UniqueId><Picture>a</Entry>b</Picture></Entry>"),
         failed(dialled, "entry 2 " + noElements)},
        {"name with <Entry>",
         writeRequest(dialled, good + "<Entry><UniqueId>2</UniqueId><Picture>a<Entry>b</Picture></Entry>"),
         failed(dialled, "entry 2 holds another &lt;Entry&gt;")},
        {"name with </Entry><Entry>",
         writeRequest(dialled, good + "<Entry><UniqueId>2</UniqueId><Picture>a</Entry><Entry>b</Picture></Entry>"),
         failed(dialled, "entry 2 " + noElements)},
        {"call's name with </Entry><Entry>",
         writeRequest(dialled, good + "<Entry><UniqueId>2</UniqueId><LogList><Item><Number>a</Entry><Entry>b</Number>"
                                      "</Item></LogList></Entry>"),
         failed(dialled, "entry 2 " + noElements)},
        {"call's name that ends the message, where the message was cut",
         startTag +
             "<ReasonForMessage>write_request</ReasonForMessage><Entry><LogList><Item><Number>a</Entry></Schema>",
         failed(dialled, "entry 1 " + noElements)},
        {"picture with its own close tag",
         writeRequest(dialled, "<Entry><UniqueId>2</UniqueId><Picture>a</Picture>b</Picture></Entry>"),
         failed(dialled, "entry 1 " + noElements)},
        {"plain text for a body", writeRequest(dialled, "<Entry>x</Entry>"), failed(dialled, "entry 1 " + noElements)},
        {"something behind the call list", writeRequest(dialled, "<Entry><LogList></LogList><A>1</A></Entry>"),
         failed(dialled, "entry 1 " + noElements)},
        {"empty id", writeRequest(dialled, "<Entry><UniqueId></UniqueId><EntryId>1</EntryId></Entry>"),
         failed(dialled, "entry 1 has an empty UniqueId")},
        {"id with markup", writeRequest(dialled, "<Entry><UniqueId>a<b</UniqueId></Entry>"),
         failed(dialled, "entry 1 has a &quot;&lt;&quot; in its UniqueId")},
        {"id without end", writeRequest(dialled, "<Entry><UniqueId>a<EntryId>1</EntryId></Entry>"),
         failed(dialled, "entry 1 " + noElements)},
        {"id that is not first", writeRequest(dialled, "<Entry><EntryId>1</EntryId><UniqueId>a</UniqueId></Entry>"),
         failed(dialled, "entry 1 has a UniqueId that is not its first element")},
        {"two ids", writeRequest(dialled, "<Entry><UniqueId>a</UniqueId><UniqueId>b</UniqueId></Entry>"),
         failed(dialled, "entry 1 has a UniqueId that is not its first element")},
        {"good entry before a bad one",
         writeRequest(dialled, "<Entry><UniqueId>new</UniqueId></Entry><Entry>x</Entry>"),
         failed(dialled, "entry 2 " + noElements)},
        {"delete of an empty entry", deleteRequest(dialled, "<Entry></Entry>"),
         failed(dialled, "entry 1 is not one UniqueId")},
        {"delete of an empty id", deleteRequest(dialled, "<Entry><UniqueId></UniqueId></Entry>"),
         failed(dialled, "entry 1 has an empty UniqueId")},
        {"delete of an id with markup", deleteRequest(dialled, "<Entry><UniqueId><a></UniqueId></Entry>"),
         failed(dialled, "entry 1 has a &quot;&lt;&quot; in its UniqueId")},
        {"delete of a whole entry", deleteRequest(dialled, "<Entry><UniqueId>1</UniqueId><EntryId>1</EntryId></Entry>"),
         failed(dialled, "entry 1 is not one UniqueId")},
        {"delete by another element", deleteRequest(dialled, "<Entry><EntryId>1</EntryId></Entry>"),
         failed(dialled, "entry 1 is not one UniqueId")},
        {"delete by CallLogId outside Conversations", deleteRequest(dialled, "<Entry><CallLogId>1</CallLogId></Entry>"),
         failed(dialled, "entry 1 is not one UniqueId")},
        {"conversation by another element", deleteRequest("Conversations", "<Entry><EntryId>1</EntryId></Entry>"),
         failed("Conversations", "entry 1 is not one CallLogId or UniqueId")},
        {"second delete refused", deleteRequest(dialled, good + "<Entry>x</Entry>"),
         failed(dialled, "entry 2 is not one UniqueId")},
    };
}

TEST_F(StoreRequests, RefusesWhatItCannotAccountForAndChangesNothing) {
    ask(writeRequest(dialled, "<Entry><UniqueId>1</UniqueId><EntryId>kept</EntryId></Entry>"));
    ask(writeRequest("Conversations", "<Entry><UniqueId>1</UniqueId></Entry>"));
    const std::string before = everything();
    for (const Refusal& row : refusals()) {
        EXPECT_EQ(ask(row.request), row.reply) << row.story;
        EXPECT_EQ(everything(), before) << row.story;
    }
}

// Beside the requests

TEST_F(StoreRequests, CountsItsOwnChangesAndThoseOfOthers) {
    const auto other = calljournal::openStore(file());
    const std::uint64_t start = store().changeCount();
    ask(readRequest(missed));
    ask(writeRequest(missed, ""));
    other->processRequest(readRequest(missed));
    EXPECT_EQ(store().changeCount(), start);
    ask(writeRequest(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
    const std::uint64_t afterOwn = store().changeCount();
    EXPECT_NE(afterOwn, start);
    other->processRequest(deleteRequest(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
    EXPECT_NE(store().changeCount(), afterOwn);
}

TEST_F(StoreRequests, JoinsRequestsToOneTransaction) {
    const auto other = calljournal::openStore(file());
    store().exclusively([&] {
        EXPECT_EQ(ask(writeRequest(missed, "<Entry><UniqueId>a</UniqueId></Entry>")),
                  envelope(missed, "<Result>ok</Result><UniqueId>a</UniqueId>"));
        EXPECT_EQ(ask(readRequest(missed)), envelope(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
        EXPECT_EQ(other->processRequest(readRequest(missed)), envelope(missed, ""));
        store().exclusively([&] { ask(writeRequest(missed, "<Entry><UniqueId>b</UniqueId></Entry>")); });
        EXPECT_EQ(other->processRequest(readRequest(missed)), envelope(missed, ""));
    });
    const std::string both = "<Entry><UniqueId>a</UniqueId></Entry><Entry><UniqueId>b</UniqueId></Entry>";
    EXPECT_EQ(other->processRequest(readRequest(missed)), envelope(missed, both));
    ask(writeRequest(missed, "<Entry><UniqueId>c</UniqueId></Entry>"));
    EXPECT_EQ(other->processRequest(readRequest(missed)),
              envelope(missed, both + "<Entry><UniqueId>c</UniqueId></Entry>"));
}

TEST_F(StoreRequests, TakesBackJoinedRequestsWhenTheWorkThrows) {
    ask(writeRequest(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
    const auto work = [&] {
        ask(writeRequest(missed, "<Entry><EntryId>x</EntryId></Entry>"));
        ask(deleteRequest(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
        throw std::runtime_error("stop");
    };
    EXPECT_THROW(store().exclusively(work), std::runtime_error);
    EXPECT_EQ(ask(readRequest(missed)), envelope(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
    EXPECT_EQ(ask(writeRequest(missed, "<Entry><EntryId>x</EntryId></Entry>")),
              envelope(missed, "<Result>ok</Result><UniqueId>1</UniqueId>"));
    closeStore();
    EXPECT_EQ(ask(readRequest(missed)), envelope(missed,
                                                 "<Entry><UniqueId>a</UniqueId></Entry><Entry><UniqueId>1"
                                                 "</UniqueId><EntryId>x</EntryId></Entry>"));
}

TEST_F(StoreRequests, TakesBackOnlyTheJoinedRequestThatFailed) {
    leaveOneId();
    ask(writeRequest(missed, "<Entry><EntryId>last</EntryId></Entry>"));
    store().exclusively([&] {
        ask(writeRequest(missed, "<Entry><UniqueId>a</UniqueId></Entry>"));
        EXPECT_EQ(ask(writeRequest(missed, "<Entry><UniqueId>b</UniqueId></Entry><Entry><EntryId>x</EntryId></Entry>")),
                  failed(missed, "store " + file() + ": it has no free id left; give the entry an id"));
        ask(writeRequest(missed, "<Entry><UniqueId>c</UniqueId></Entry>"));
    });
    closeStore();
    EXPECT_EQ(
        ask(readRequest(missed)),
        envelope(
            missed,
            "<Entry><UniqueId>999999999999999999</UniqueId><EntryId>last</EntryId></Entry><Entry><UniqueId>a</UniqueId>"
            "</Entry><Entry><UniqueId>c</UniqueId></Entry>"));
}

TEST_F(StoreRequests, KeepEntriesThatComeInTurnsForTwoSchemas) {
    std::string first;
    std::string second;
    for (int i = 1; i <= 6; ++i) {
        const std::string entry = "<Entry><UniqueId>" + std::to_string(i) + "</UniqueId></Entry>";
        const bool isFirst = i % 2 == 1;
        (isFirst ? first : second) += entry;
        ask(writeRequest(isFirst ? "CallBacks" : "CallLogDialledCalls", entry));
    }
    EXPECT_EQ(ask(readRequest("CallBacks")), envelope("CallBacks", first));
    EXPECT_EQ(ask(readRequest("CallLogDialledCalls")), envelope("CallLogDialledCalls", second));
}

}  // namespace
