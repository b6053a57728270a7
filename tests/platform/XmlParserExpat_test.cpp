// expat as an independent judge: on well-formed documents both parsers report the same.

#include <cstddef>
#include <cstdlib>
#include <expat.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <type_traits>

#include "Rounds.h"
#include "XmlEvents.h"
#include "XmlGenerator.h"

namespace {

std::vector<XmlEvent>& eventsOf(void* userData) {
    return static_cast<XmlEvents*>(userData)->events;
}

void onBegin(void* userData, const char* name, const char** attributes) {
    XmlEvent event{XmlEvent::begin, name, {}};
    for (; *attributes != nullptr; attributes += 2) {
        event.attributes.emplace_back(attributes[0], attributes[1]);
    }
    eventsOf(userData).push_back(event);
}

void onEnd(void* userData, const char* name) {
    eventsOf(userData).push_back({XmlEvent::end, name, {}});
}

/// Joins the pieces that expat hands over.
void onText(void* userData, const char* text, int length) {
    std::vector<XmlEvent>& events = eventsOf(userData);
    if (events.empty() || events.back().kind != XmlEvent::text) {
        events.push_back({XmlEvent::text, "", {}});
    }
    events.back().value.append(text, static_cast<std::size_t>(length));
}

XmlEvents parseWithExpat(const std::string& document) {
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate("UTF-8"), &XML_ParserFree);
    XmlEvents result;
    XML_SetUserData(parser.get(), &result);
    XML_SetElementHandler(parser.get(), &onBegin, &onEnd);
    XML_SetCharacterDataHandler(parser.get(), &onText);
    result.isSound = XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), 1) == XML_STATUS_OK;
    return result;
}

void replaceAll(std::string& text, const std::string& what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
        text.replace(at, what.size(), by);
    }
}

std::string utf8(unsigned long codePoint) {
    const auto byte = [](unsigned long bits) { return static_cast<char>(bits); };
    if (codePoint < 0x80) {
        return {byte(codePoint)};
    }
    if (codePoint < 0x800) {
        return {byte(0xC0 | codePoint >> 6), byte(0x80 | (codePoint & 0x3F))};
    }
    if (codePoint < 0x10000) {
        return {byte(0xE0 | codePoint >> 12), byte(0x80 | (codePoint >> 6 & 0x3F)), byte(0x80 | (codePoint & 0x3F))};
    }
    return {byte(0xF0 | codePoint >> 18), byte(0x80 | (codePoint >> 12 & 0x3F)), byte(0x80 | (codePoint >> 6 & 0x3F)),
            byte(0x80 | (codePoint & 0x3F))};
}

std::string resolve(const std::string& reference) {
    if (reference[1] == '#') {
        const bool isHex = reference[2] == 'x';
        return utf8(std::strtoul(reference.c_str() + (isHex ? 3 : 2), nullptr, isHex ? 16 : 10));
    }
    return reference == "&amp;"    ? "&"
           : reference == "&lt;"   ? "<"
           : reference == "&gt;"   ? ">"
           : reference == "&quot;" ? "\""
           : reference == "&apos;" ? "'"
                                   : "no predefined entity";
}

/// What an application makes of raw text: line ends are line feeds, references are resolved.
std::string cooked(std::string raw) {
    replaceAll(raw, "\r\n", "\n");
    replaceAll(raw, "\r", "\n");
    for (std::size_t at = 0; (at = raw.find('&', at)) != std::string::npos;) {
        const std::size_t length = raw.find(';', at) + 1 - at;
        const std::string resolved = resolve(raw.substr(at, length));
        raw.replace(at, length, resolved);
        at += resolved.size();
    }
    return raw;
}

/// An attribute's value has blanks for its line ends and tabs, too.
std::string cookedValue(std::string raw) {
    replaceAll(raw, "\r\n", " ");
    for (const char* const blank : {"\r", "\n", "\t"}) {
        replaceAll(raw, blank, " ");
    }
    return cooked(raw);
}

XmlEvents cooked(XmlEvents raw) {
    for (XmlEvent& event : raw.events) {
        event.value = event.kind == XmlEvent::text ? cooked(event.value) : event.value;
        for (auto& attribute : event.attributes) {
            attribute.second = cookedValue(attribute.second);
        }
    }
    return raw;
}

void expectSameAsExpat(const std::string& document) {
    const XmlEvents judged = parseWithExpat(document);
    ASSERT_TRUE(judged.isSound) << "not well-formed: " << document;
    ASSERT_EQ(cooked(parse(document)), judged) << document;
}

}  // namespace

TEST(XmlParserAndExpat, AgreeOnMessagesOfThePhone) {
    const char* const messages[] = {
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\"><ReasonForMessage>read_request"
        "</ReasonForMessage></Schema>",
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema "
        "name=\"CallLogMissedCalls\"><Entry><UniqueId>1</UniqueId><EntryId>2"
        "</EntryId><Surname>M&amp;uuml;ller &amp; "
        "S&apos;</Surname><PictureClip/><Viewed>False</Viewed><LogList><Item><Number>"
        "+49891234</Number><TimeDate>2026-11-21 05:00:00</TimeDate></Item><Item></Item></LogList></Entry></Schema>",
        "<Schema name='CallLog'>\r\n  <Entry>\r\n    <Firstname>Jos\xC3\xA9</Firstname>\r\n  </Entry>\r\n</Schema>\r\n",
    };
    for (const char* const message : messages) {
        expectSameAsExpat(message);
    }
}

TEST(XmlParserAndExpat, AgreeOnEveryCornerWrittenByHand) {
    const char* const documents[] = {
        "<a/>",
        "<a \t\r\nb\t=\r\n'1'\n/>",
        "<a b='&lt;&amp;&gt;&quot;&apos;&#65;&#x42;' c=\"x > y /> ]]> '\"></a \n>",
        "<a b=' 1\t2\r\n3\r4\n5&#10;&#13;&#9; '/>",
        "<a>1<!-- <b> & - --><!-- - -->2<!----></a>",
        "<a>x<![CDATA[<b>]]]]><![CDATA[></b>]]>y<?p <c> ?>z</a>",
        "<a><![CDATA[]]></a>",
        "<a><!-- --></a>",
        "<a>\r\r\n\n\r</a>",
        "<a>&#13;\n&#x1F600;&#x20AC;&#xE9;</a>",
        "<a> <b> <c/> </b> </a>",
        "<!-- <x> --><?p <y>?>\n<a>1</a>\n<!-- <x> --><?p <y>?>\n",
        ("\xEF\xBB\xBF<?xml version='1.0'?><\xC3\xA9:\xD0\x96-1.x "
         "\xE5\x90\x8D='\xC3\x9F'>\xF0\x9F\x98\x80</\xC3\xA9:\xD0\x96-1.x>"),
    };
    for (const char* const document : documents) {
        expectSameAsExpat(document);
    }
}

TEST(XmlParserAndExpat, AgreeOnGeneratedDocuments) {
    const unsigned seed = 20261121;
    XmlGenerator generator(seed);
    std::size_t events = 0;
    for (unsigned round = 0; round < rounds(5000); ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::string document = generator.document();
        expectSameAsExpat(document);
        if (HasFatalFailure()) {
            return;
        }
        events += parse(document).events.size();
    }
    EXPECT_GT(events, rounds(50000));
}
