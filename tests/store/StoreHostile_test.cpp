#include <random>
#include <string>
#include <vector>

#include "StoreTest.h"

namespace {

const std::string missed = "CallLogMissedCalls";
const std::string keptEntry = "<Entry><UniqueId>kept</UniqueId><Viewed>True</Viewed></Entry>";
const std::string fullEntry =
    "<Entry><UniqueId>7</UniqueId><EntryId>8</EntryId><Surname>S</Surname><Firstname>F</Firstname><Picture>p</Picture>"
    "<Viewed>False</Viewed><LogList><Item><Number>1</Number><NumberType>MOBILE</NumberType></Item></LogList></Entry>";

using StoreHostile = StoreTest;

TEST_F(StoreHostile, RefusesARequestThatWasCutAtAnyByte) {
    ask(writeRequest(missed, keptEntry));
    ask(writeRequest("Conversations", "<Entry><UniqueId>7</UniqueId></Entry>"));
    const std::string before = everything();
    for (const std::string& whole :
         {writeRequest(missed, fullEntry + "<Entry><EntryId>9</EntryId></Entry>"),
          deleteRequest(missed, "<Entry><UniqueId>kept</UniqueId></Entry>"),
          deleteRequest("Conversations", "<Entry><CallLogId>7</CallLogId></Entry>"), readRequest(missed)}) {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const std::string reply = ask(whole.substr(0, length));
            ASSERT_NE(reply.find("<Result>failed</Result><Reason>"), std::string::npos) << length;
        }
        ASSERT_EQ(everything(), before);
        ASSERT_EQ(ask(whole).find("failed"), std::string::npos);
        closeStore();
        runSql(file(), "delete from entry; delete from stored_schema; update calljournal_store set next_id = 1");
        ask(writeRequest(missed, keptEntry));
        ask(writeRequest("Conversations", "<Entry><UniqueId>7</UniqueId></Entry>"));
    }
}

TEST_F(StoreHostile, RefusesARequestWithAnyBytesLostFromItsMiddle) {
    // What is lost here is never a whole entry or element, so the rest cannot make sense.
    ask(writeRequest(missed, keptEntry));
    const std::string before = everything();
    const std::string whole = writeRequest(missed, "<Entry><Surname>S</Surname></Entry>");
    const std::string text = "S";
    for (std::size_t begin = 0; begin < whole.size(); ++begin) {
        if (whole[begin] == text[0] && whole[begin - 1] == '>') {
            continue;  // the name itself, without which the element is empty but whole
        }
        std::string shorter = whole;
        shorter.erase(begin, 1);
        ASSERT_NE(ask(shorter).find("<Result>failed</Result>"), std::string::npos) << shorter;
    }
    ASSERT_EQ(everything(), before);
}

TEST_F(StoreHostile, AnswersRandomBytes) {
    ask(writeRequest(missed, keptEntry));
    const std::string before = everything();
    std::mt19937 random(20240501);
    SCOPED_TRACE("seed 20240501");
    for (int round = 0; round < 3000; ++round) {
        std::string content(random() % 200, '\0');
        for (char& c : content) {
            c = static_cast<char>(random());
        }
        const std::string request = round % 2 == 0 ? content : writeRequest(missed, content + "<");
        ASSERT_NE(ask(request).find("<Result>failed</Result>"), std::string::npos);
    }
    EXPECT_EQ(everything(), before);
}

/// The plain opposite of the store's scanner: what the pieces of a request, put together, mean.
TEST_F(StoreHostile, StoresExactlyTheEntriesOfARequestOfRandomPieces) {
    const std::vector<std::string> pieces = {"<Entry>",
                                             "</Entry>",
                                             "<UniqueId>u</UniqueId>",
                                             "<UniqueId>",
                                             "</UniqueId>",
                                             "<LogList>",
                                             "</LogList>",
                                             "<Item>",
                                             "</Item>",
                                             "<Picture>p</Picture>",
                                             "<EntryId>e</EntryId>",
                                             "x",
                                             "<",
                                             "&amp;",
                                             "</Schema>",
                                             "<Viewed>True</Viewed>",
                                             "<Schema name=\"CallLogMissedCalls\">",
                                             "<ReasonForMessage>delete_request</ReasonForMessage>",
                                             std::string(1, '\0')};
    std::mt19937 random(7);
    SCOPED_TRACE("seed 7");
    const std::string schema = "CallLogDialledCalls";
    int accepted = 0;
    for (int round = 0; round < 4000; ++round) {
        // A body whose id is taken out again, so that the reply of the next read shows the bytes of the request.
        std::string body = "<UniqueId>one</UniqueId>";
        for (std::size_t count = random() % 4; count > 0; --count) {
            body += pieces[random() % pieces.size()];
        }
        const std::string before = everything();
        const std::string reply = ask(writeRequest(schema, "<Entry>" + body + "</Entry>"));
        if (reply == envelope(schema, "<Result>ok</Result><UniqueId>one</UniqueId>")) {
            ++accepted;
            ASSERT_EQ(ask(readRequest(schema)), envelope(schema, "<Entry>" + body + "</Entry>"));
        } else {
            ASSERT_EQ(everything(), before) << body;
        }
    }
    EXPECT_GT(accepted, 100);
    EXPECT_LT(accepted, 3900);
}

TEST_F(StoreHostile, AnswersLongTextsWithoutEndInLinearTime) {
    // Quadratic work on any of these would take hours.
    const std::size_t size = 8000000;
    const auto repeated = [&](const std::string& piece) {
        std::string text;
        while (text.size() < size) {
            text += piece;
        }
        return text;
    };
    for (const std::string& piece :
         {std::string("<"), std::string("</"), std::string("<Entry>"), std::string("</Entry>"),
          std::string("<Entry><A></A></Entry>x"), std::string("<A>"), std::string("<A></A>"), std::string("<LogList>"),
          std::string("<LogList></LogList>"), std::string("a")}) {
        const std::string text = repeated(piece);
        EXPECT_NE(ask(text).find("failed"), std::string::npos);
        EXPECT_NE(ask(writeRequest(missed, text)).find("failed"), std::string::npos);
        EXPECT_NE(ask(writeRequest(missed, "<Entry>" + text + "<A></Entry>")).find("failed"), std::string::npos);
        EXPECT_NE(ask(deleteRequest(missed, "<Entry>" + text + "</Entry>")).find("failed"), std::string::npos);
    }
    const std::string name(size, 'a');
    EXPECT_NE(ask(writeRequest(missed, "<Entry><" + name + ">" + name + "</Entry>")).find("failed"), std::string::npos);
    EXPECT_NE(ask(envelope(name, "")).find("failed"), std::string::npos);
}

}  // namespace
