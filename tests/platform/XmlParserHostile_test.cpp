#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "XmlEvents.h"
#include "XmlGenerator.h"
#include "XmlParser.h"

namespace {

const unsigned seed = 20261121;

std::string repeated(const std::string& piece, std::size_t times) {
    std::string all;
    all.reserve(piece.size() * times);
    for (; times > 0; --times) {
        all += piece;
    }
    return all;
}

/// Checks what holds for any message at all.
void expectOrderlyEvents(const std::string& message) {
    const XmlEvents result = parse(message);
    std::size_t open = 0;
    std::size_t begins = 0;
    std::size_t ends = 0;
    std::size_t textLength = 0;
    const XmlEvent* last = nullptr;
    for (const XmlEvent& event : result.events) {
        ASSERT_FALSE(event.value.empty());
        if (event.kind == XmlEvent::text) {
            ASSERT_GT(open, 0u) << "text outside of elements";
            ASSERT_TRUE(last != nullptr && last->kind != XmlEvent::text) << "text in two pieces";
            textLength += event.value.size();
        }
        begins += event.kind == XmlEvent::begin ? 1 : 0;
        ends += event.kind == XmlEvent::end ? 1 : 0;
        open += event.kind == XmlEvent::begin ? 1 : 0;
        last = &event;
    }
    ASSERT_LE(textLength, message.size());
    ASSERT_TRUE(!result.isSound || begins == ends);
}

const std::string reply =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\"><Entry><UniqueId>17</UniqueId>"
    "<Surname>M&amp;ller</Surname><!-- note "
    "--><Viewed>True</Viewed><LogList><Item><Number>+49<![CDATA[89]]>123</Number>"
    "<Empty  a = 'x' b=\"y\" /></Item></LogList></Entry></Schema>";

}  // namespace

TEST(XmlParserHostile, ReportsOfACutReplyWhatStandsBeforeTheCut) {
    const std::vector<XmlEvent> whole = parse(reply).events;
    ASSERT_TRUE(parse(reply).isSound);
    const std::size_t declaration = reply.find("<Schema");
    for (std::size_t length = 1; length < reply.size(); ++length) {
        const XmlEvents cut = parse(reply.substr(0, length));
        EXPECT_EQ(cut.isSound, length == declaration) << length;
        ASSERT_LE(cut.events.size(), whole.size());
        EXPECT_TRUE(std::equal(cut.events.begin(), cut.events.end(), whole.begin())) << length;
    }
}

TEST(XmlParserHostile, FindsEveryTagThatACutReplyHolds) {
    const std::vector<XmlEvent> whole = parse(reply).events;
    // Behind each `>` of a tag stand all events up to that tag.
    std::size_t known = 0;
    for (std::size_t length = 1; length <= reply.size(); ++length) {
        const std::size_t now = parse(reply.substr(0, length)).events.size();
        EXPECT_TRUE(now == known || reply[length - 1] == '>') << length;
        EXPECT_GE(now, known);
        known = now;
    }
    EXPECT_EQ(known, whole.size());
}

TEST(XmlParserHostile, ParsesEveryTailOfAReplyInOrder) {
    for (std::size_t start = 0; start < reply.size(); ++start) {
        expectOrderlyEvents(reply.substr(start));
    }
}

TEST(XmlParserHostile, TakesAnyBytes) {
    std::mt19937 random(seed);
    for (int round = 0; round < 3000; ++round) {
        std::string message(random() % 300, '\0');
        for (char& c : message) {
            c = static_cast<char>(random());
        }
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        expectOrderlyEvents(message);
        expectOrderlyEvents("<a>" + message);
    }
}

TEST(XmlParserHostile, TakesAnyMixOfMarkup) {
    const std::string alphabet = "<<<>>>///aab==''\"\" \n!!?--[]CDAT&\xC3";
    std::mt19937 random(seed);
    for (int round = 0; round < 20000; ++round) {
        std::string message = round % 2 == 0 ? "<a>" : "";
        for (std::size_t left = random() % 60; left > 0; --left) {
            message += alphabet[random() % alphabet.size()];
        }
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        expectOrderlyEvents(message);
    }
}

TEST(XmlParserHostile, TakesDamagedDocuments) {
    XmlGenerator generator(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 5000; ++round) {
        std::string document = generator.document();
        for (std::size_t left = 1 + random() % 3; left > 0; --left) {
            const std::size_t at = random() % document.size();
            if (random() % 2 == 0) {
                document[at] = static_cast<char>(random());
            } else {
                document.erase(at, random() % 8);
            }
            document += document.empty() ? "x" : "";
        }
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        expectOrderlyEvents(document);
    }
}

TEST(XmlParserHostile, GoesAMillionLevelsDeep) {
    const std::size_t levels = 1000000;
    const XmlEvents deep = parse(repeated("<a>", levels) + "x" + repeated("</a>", levels));
    EXPECT_TRUE(deep.isSound);
    ASSERT_EQ(deep.events.size(), 2 * levels + 1);
    EXPECT_EQ(deep.events[levels].value, "x");

    EXPECT_FALSE(parse(repeated("<a>", levels)).isSound);
    EXPECT_EQ(parse(repeated("</a>", levels)).events.size(), levels);
    EXPECT_FALSE(parse(repeated("<a>", levels) + repeated("</b>", levels)).isSound);
}

TEST(XmlParserHostile, CarriesHugeNamesValuesAndTexts) {
    const std::string huge(3000000, 'n');
    const XmlEvents result =
        parse("<" + huge + " " + huge + "='" + huge + "'>" + huge + "<!-- -->" + huge + "</" + huge + ">");
    ASSERT_TRUE(result.isSound);
    ASSERT_EQ(result.events.size(), 3u);
    EXPECT_TRUE(result.events[0].value == huge);
    EXPECT_TRUE(result.events[0].attributes[0].first == huge);
    EXPECT_TRUE(result.events[0].attributes[0].second == huge);
    EXPECT_TRUE(result.events[1].value == huge + huge);
    EXPECT_TRUE(result.events[2].value == huge);
}

TEST(XmlParserHostile, CarriesAHundredThousandAttributes) {
    std::string tag = "<a";
    for (int i = 0; i < 100000; ++i) {
        tag += " n" + std::to_string(i) + "='" + std::to_string(i) + "'";
    }
    const XmlEvents result = parse(tag + "/>");
    ASSERT_TRUE(result.isSound);
    ASSERT_EQ(result.events[0].attributes.size(), 100000u);
    EXPECT_EQ(result.events[0].attributes[99999].first, "n99999");
    EXPECT_EQ(result.events[0].attributes[99999].second, "99999");
}
