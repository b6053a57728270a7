#include "XmlParser.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "XmlEvents.h"

namespace {

/// A message and what comes of it.
struct Row {
    std::string message;
    std::string events;
};

void expectAll(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(parse(row.message).asText(), row.events) << row.message;
    }
}

}  // namespace

TEST(XmlParser, ReportsAReplyInDocumentOrder) {
    EXPECT_EQ(parse("<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema "
                    "name=\"CallLogMissedCalls\"><Entry><UniqueId>7</UniqueId>"
                    "<Viewed>True</Viewed><LogList><Item><Number>+4989123</Number></Item></LogList></Entry></Schema>")
                  .asText(),
              "<Schema name=[CallLogMissedCalls]>\n"
              "<Entry>\n"
              "<UniqueId>\n"
              "[7]\n"
              "</UniqueId>\n"
              "<Viewed>\n"
              "[True]\n"
              "</Viewed>\n"
              "<LogList>\n"
              "<Item>\n"
              "<Number>\n"
              "[+4989123]\n"
              "</Number>\n"
              "</Item>\n"
              "</LogList>\n"
              "</Entry>\n"
              "</Schema>\n");
}

TEST(XmlParser, ReportsAnEmptyElementAsBeginAndEnd) {
    expectAll({
        {"<a/>", "<a>\n</a>\n"},
        {"<a />", "<a>\n</a>\n"},
        {"<a b='1'/>", "<a b=[1]>\n</a>\n"},
        {"<a></a>", "<a>\n</a>\n"},
        {"<a>x<b/>y</a>", "<a>\n[x]\n<b>\n</b>\n[y]\n</a>\n"},
    });
}

TEST(XmlParser, HandsOverAttributesRawAndInOrder) {
    expectAll({
        {"<a b=\"1\" c='2'></a>", "<a b=[1] c=[2]>\n</a>\n"},
        {"<a z='' y='it is \"so\"' x=\"it's\"/>", "<a z=[] y=[it is \"so\"] x=[it's]>\n</a>\n"},
        {"<a b='&lt;&amp;&#65; \t\r\n'/>", "<a b=[&lt;&amp;&#65; \t\r\n]>\n</a>\n"},
        {"<a b='x>y/>z'/>", "<a b=[x>y/>z]>\n</a>\n"},
        {"<a b='x<y'/>", "<a b=[x<y]>\n</a>\n"},
        {"<a b='1' b='2'/>", "<a b=[1] b=[2]>\n</a>\n"},
    });
}

TEST(XmlParser, TakesBlanksWhereXmlAllowsThem) {
    expectAll({
        {"<a \t\r\n></a \t\r\n>", "<a>\n</a>\n"},
        {"<a \t\r\nb \t\r\n= \t\r\n'1' \t\r\nc='2' \t\r\n/>", "<a b=[1] c=[2]>\n</a>\n"},
        // Vertical tab and form feed are none in XML.
        {"<a\v></a>", "</a>\nunsound\n"},
        {"<a b=\f'1'></a>", "</a>\nunsound\n"},
    });
}

TEST(XmlParser, KnowsTheCharactersOfNames) {
    expectAll({
        {"<_:aZ0-9.></_:aZ0-9.>", "<_:aZ0-9.>\n</_:aZ0-9.>\n"},
        {"<:/>", "<:>\n</:>\n"},
        {"<gr\xC3\xB6\xC3\x9F"
         "e \xD0\x96='\xE5\x90\x8D'/>",
         "<gr\xC3\xB6\xC3\x9F"
         "e \xD0\x96=[\xE5\x90\x8D]>\n</gr\xC3\xB6\xC3\x9F"
         "e>\n"},
        {"<\x80\xFF/>", "<\x80\xFF>\n</\x80\xFF>\n"},
        {"<s><1a><-a><.a></1></s>", "<s>\n[<1a><-a><.a></1>]\n</s>\n"},
    });
}

TEST(XmlParser, TakesALessThanSignThatStartsNoTagForText) {
    expectAll({
        {"<n>A<3</n>", "<n>\n[A<3]\n</n>\n"},
        {"<n>A < B</n>", "<n>\n[A < B]\n</n>\n"},
        {"<n>A<B</n>", "<n>\n[A<B]\n</n>\n"},
        {"<n><</n>", "<n>\n[<]\n</n>\n"},
        {"<n><<b/>></n>", "<n>\n[<]\n<b>\n</b>\n[>]\n</n>\n"},
        {"<n><></></ n></n>", "<n>\n[<></></ n>]\n</n>\n"},
        {"<n><a b></n>", "<n>\n[<a b>]\n</n>\n"},
        {"<n><a b=1></n>", "<n>\n[<a b=1>]\n</n>\n"},
        {"<n><a b='1'c='2'></n>", "<n>\n[<a b='1'c='2'>]\n</n>\n"},
        {"<n><a'1'></n>", "<n>\n[<a'1'>]\n</n>\n"},
        {"<n><a =''></n>", "<n>\n[<a =''>]\n</n>\n"},
        {"<n><a / ></n>", "<n>\n[<a / >]\n</n>\n"},
        {"<n><a /b='1'></n>", "<n>\n[<a /b='1'>]\n</n>\n"},
        {"<n></a b='1'></n>", "<n>\n[</a b='1'>]\n</n>\n"},
        {"<n></a/></n>", "<n>\n[</a/>]\n</n>\n"},
        {"<n><a b='></n>", "<n>\n[<a b='>]\n</n>\n"},
        {"<n><?></n>", "<n>\n[<?>]\n</n>\n"},
        {"<n><? x?></n>", "<n>\n[<? x?>]\n</n>\n"},
        {"<n><!x></n>", "<n>\n[<!x>]\n</n>\n"},
        {"<n><!- x -></n>", "<n>\n[<!- x ->]\n</n>\n"},
        {"<n><![cdata[x]]></n>", "<n>\n[<![cdata[x]]>]\n</n>\n"},
        {"<n><!DOCTYPE n></n>", "<n>\n[<!DOCTYPE n>]\n</n>\n"},
    });
}

TEST(XmlParser, HandsOverAmpersandsAndEntitiesAsTheyStand) {
    expectAll({
        {"<n>Smith & Co</n>", "<n>\n[Smith & Co]\n</n>\n"},
        {"<n>&</n>", "<n>\n[&]\n</n>\n"},
        {"<n>&lt;b&gt;&amp;amp;&#65;&nbsp;</n>", "<n>\n[&lt;b&gt;&amp;amp;&#65;&nbsp;]\n</n>\n"},
    });
}

TEST(XmlParser, HandsOverBlanksAndLineEndsAsTheyStand) {
    expectAll({
        {"<a>\r\n <b> \t</b>\n</a>", "<a>\n[\r\n ]\n<b>\n[ \t]\n</b>\n[\n]\n</a>\n"},
        {std::string("<a>x\0y]]></a>", 13), std::string("<a>\n[x\0y]]>]\n</a>\n", 18)},
    });
}

TEST(XmlParser, HandsOverNoTextOutsideOfElements) {
    expectAll({
        {"", ""},
        {"failed", ""},
        {" \n<a>x</a>\ny", "<a>\n[x]\n</a>\n"},
        {"x<a/>y<![CDATA[z]]><b/>", "<a>\n</a>\n<b>\n</b>\n"},
        {"\xEF\xBB\xBF<?xml version='1.0'?>\r\n<a/>", "<a>\n</a>\n"},
        {"x & y > z", ""},
    });
}

TEST(XmlParser, JoinsTheTextAroundCommentsInstructionsAndCdata) {
    expectAll({
        {"<a>1<!-- c -->2<?p i?>3<![CDATA[4]]>5</a>", "<a>\n[12345]\n</a>\n"},
        {"<a>1<!----><!-- -- > <b> & --></a>", "<a>\n[1]\n</a>\n"},
        {"<a><!-- c -->1</a>", "<a>\n[1]\n</a>\n"},
        {"<a><!-- c --></a>", "<a>\n</a>\n"},
        {"<a><!-- c --><b/><?p?>x</a>", "<a>\n<b>\n</b>\n[x]\n</a>\n"},
        {"<a>x<!-->y--></a>", "<a>\n[x]\n</a>\n"},
        {"<a>x<!--->y--></a>", "<a>\n[x]\n</a>\n"},
        {"<a>x<?p <b> & ? > ?>y</a>", "<a>\n[xy]\n</a>\n"},
        {"<a>1<!-- c --></a><b>2</b>", "<a>\n[1]\n</a>\n<b>\n[2]\n</b>\n"},
    });
}

TEST(XmlParser, HandsOverCdataRawAndWithoutItsMarkers) {
    expectAll({
        {"<a><![CDATA[<b>&amp;</b>]]></a>", "<a>\n[<b>&amp;</b>]\n</a>\n"},
        {"<a><![CDATA[]]></a>", "<a>\n</a>\n"},
        {"<a><![CDATA[x]]]]></a>", "<a>\n[x]]]\n</a>\n"},
        {"<a><![CDATA[x]]]]><![CDATA[>y]]></a>", "<a>\n[x]]>y]\n</a>\n"},
        {"<a><![CDATA[<!-- ]]>--></a>", "<a>\n[<!-- -->]\n</a>\n"},
        {"<a><![CDATA[<![CDATA[]]>]]></a>", "<a>\n[<![CDATA[]]>]\n</a>\n"},
    });
}

TEST(XmlParser, SkipsTheXmlDeclaration) {
    expectAll({
        {"<?xml version='1.0' encoding='utf-8'?><a/>", "<a>\n</a>\n"},
        {"<?xml version='1.0' note='<b>'?><a><?xml version='1.0'?><b/></a>", "<a>\n<b>\n</b>\n</a>\n"},
    });
}

TEST(XmlParser, SkipsADocumentTypeAndInterpretsNothingOfIt) {
    const std::string documentTypes[] = {
        "<!DOCTYPE a>",
        "<!DOCTYPE a SYSTEM 'x>y[z'>",
        "<!DOCTYPE a PUBLIC \"-//it's>//\" \"y\">",
        "<!DOCTYPE a []>",
        "<!DOCTYPE a [ <!ELEMENT a (#PCDATA)> <!ENTITY e 'no]>'> ] >",
        "<!DOCTYPE a [ <!ENTITY e \"<b>\"> <![INCLUDE[ <!ATTLIST a b CDATA 'x'> ]]> ]>",
        "<!DOCTYPE a [ <!-- it's ]> <b> --> <?p it's ]> \" ?> ]>",
        "<!DOCTYPE a ]>",
    };
    for (const std::string& documentType : documentTypes) {
        EXPECT_EQ(parse(documentType + "<a>&e;</a>").asText(), "<a>\n[&e;]\n</a>\n") << documentType;
        EXPECT_EQ(parse("<?xml version='1.0'?> " + documentType + "\n<!-- x --><a>&e;</a> ").asText(),
                  "<a>\n[&e;]\n</a>\n")
            << documentType;
    }
}

TEST(XmlParser, SkipsTheDocumentTypeOfEachMessageInARow) {
    EXPECT_EQ(parse("<!DOCTYPE a><a/><?xml version='1.0'?><!DOCTYPE b><b/>").asText(), "<a>\n</a>\n<b>\n</b>\n");
}

TEST(XmlParser, ReportsTagsWhereverTheyStandAndSaysThatTheNestingIsWrong) {
    expectAll({
        {"<a>", "<a>\nunsound\n"},
        {"</a>", "</a>\nunsound\n"},
        {"<a></b>", "<a>\n</b>\nunsound\n"},
        {"<a></A>", "<a>\n</A>\nunsound\n"},
        {"<a></aa></a>", "<a>\n</aa>\n</a>\nunsound\n"},
        {"<a/></a>", "<a>\n</a>\n</a>\nunsound\n"},
        {"<a><b>x</a></b>", "<a>\n<b>\n[x]\n</a>\n</b>\nunsound\n"},
        {"</a><a>x</a>", "</a>\n<a>\n[x]\n</a>\nunsound\n"},
        {"<a></b></a><c>x</c>", "<a>\n</b>\n</a>\n<c>\n[x]\n</c>\nunsound\n"},
        {"<a/><b/>", "<a>\n</a>\n<b>\n</b>\n"},
    });
}

TEST(XmlParser, LetsAStrayEndTagCloseNothing) {
    expectAll({
        {"<a>x</b>y</a>z", "<a>\n[x]\n</b>\n[y]\n</a>\nunsound\n"},
        {"<s><n>x</b>y</n> <n>z</n></s>", "<s>\n<n>\n[x]\n</b>\n[y]\n</n>\n[ ]\n<n>\n[z]\n</n>\n</s>\nunsound\n"},
    });
}

TEST(XmlParser, SaysThatTheEndIsMissing) {
    expectAll({
        {"<a>x", "<a>\nunsound\n"},
        {"<a>x</a", "<a>\nunsound\n"},
        {"<a/><b", "<a>\n</a>\nunsound\n"},
        {"<a/><b ", "<a>\n</a>\nunsound\n"},
        {"<a/><b c", "<a>\n</a>\nunsound\n"},
        {"<a/><b c=", "<a>\n</a>\nunsound\n"},
        {"<a/><b c='1", "<a>\n</a>\nunsound\n"},
        {"<a/><b c='1'", "<a>\n</a>\nunsound\n"},
        {"<a/><b/", "<a>\n</a>\nunsound\n"},
        {"<a/><", "<a>\n</a>\nunsound\n"},
        {"<a/></", "<a>\n</a>\nunsound\n"},
        {"<a/><?", "<a>\n</a>\nunsound\n"},
        {"<a/><?p ?", "<a>\n</a>\nunsound\n"},
        {"<a/><!", "<a>\n</a>\nunsound\n"},
        {"<a/><!-", "<a>\n</a>\nunsound\n"},
        {"<a/><!--", "<a>\n</a>\nunsound\n"},
        {"<a/><!-- --", "<a>\n</a>\nunsound\n"},
        {"<a/><![CDATA", "<a>\n</a>\nunsound\n"},
        {"<a/><![CDATA[ ]]", "<a>\n</a>\nunsound\n"},
        {"<!DOCTYP", "unsound\n"},
        {"<!DOCTYPE a", "unsound\n"},
        {"<!DOCTYPE a [ ]", "unsound\n"},
        {"<!DOCTYPE a '>", "unsound\n"},
        {"<!DOCTYPE a [ <!-- ]>", "unsound\n"},
    });
}

TEST(XmlParser, HandsOverNoTextThatIsCutOff) {
    // Half a number would pass for a whole one.
    expectAll({
        {"<a>0891234", "<a>\nunsound\n"},
        {"<a><b/>0891234<!-- x -->5", "<a>\n<b>\n</b>\nunsound\n"},
        {"<a>0891<b", "<a>\nunsound\n"},
    });
}

TEST(XmlParser, ReadsOnAsTextWhereMarkupHasNoEnd) {
    // A caller may call himself so, and must not hide the calls of others.
    expectAll({
        {"<n>x<!-- y</n><m>z</m>", "<n>\n[x<!-- y]\n</n>\n<m>\n[z]\n</m>\nunsound\n"},
        {"<n>x<![CDATA[y</n><m>z</m>", "<n>\n[x<![CDATA[y]\n</n>\n<m>\n[z]\n</m>\nunsound\n"},
        {"<n>x<?y z</n><m>z</m>", "<n>\n[x<?y z]\n</n>\n<m>\n[z]\n</m>\nunsound\n"},
        {"<n>x<y z='</n><m>z</m>", "<n>\n[x<y z=']\n</n>\n<m>\n[z]\n</m>\n"},
        {"<!DOCTYPE n [<n>x</n>", "<n>\n[x]\n</n>\nunsound\n"},
        {"<!DOCTYPE n [<!DOCTYPE m><n>x</n>", "<n>\n[x]\n</n>\nunsound\n"},
    });
}

TEST(XmlParser, ReadsAnElementTheSameWhateverCameBefore) {
    const std::string longest(31, 'n');
    const std::string pieces[] = {
        "<Number>1</Number>",
        "<Number></Number>",
        "<Number>1</Number >",
        "<Number a='1'>2</Number>",
        "<Number/>",
        "<Number>1<b/>2</Number>",
        "<Number>1<!-- -->2</Number>",
        "<Number>1 < 2</Number>",
        "<Number>1</Numbers>2</Number>",
        "<Number>1</Numbe>2</Number>",
        "<Numbers>1</Numbers>",
        "<Numbe>1</Numbe>",
        "<Numbes>1</Numbes>",
        "<Number>1</Numbes>2</Number>",
        "<>1</>",
        "< >1</ >",
        "text",
        "<" + longest + ">1</" + longest + ">",
        "<" + longest + "n>1</" + longest + "n>",
        "<" + longest + "nn>1</" + longest + "nn>",
    };
    // Events of a piece in an element that has another one at its end, which keeps texts apart.
    const std::string end = "<end>\n</end>\n";
    const auto eventsOf = [&](const std::string& inside) {
        const std::string begin = "<e>\n";
        const std::string events = parse("<e>" + inside + "<end/></e>").asText();
        return events.substr(begin.size(), events.rfind(end) - begin.size());
    };
    for (const std::string& first : pieces) {
        for (const std::string& second : pieces) {
            const std::string pair = first + "<end/>" + second + "<end/>";
            const std::string events = eventsOf(first) + end + eventsOf(second) + end;
            EXPECT_EQ(eventsOf(pair + pair + pair), events + events + events);
        }
    }
}

TEST(XmlParser, ReadsMoreNamesThanItRemembers) {
    std::string message;
    std::string events;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 200; ++i) {
            const std::string name = "name" + std::to_string(i);
            message += "<" + name + ">" + std::to_string(round) + "</" + name + ">";
            events += "<" + name + ">\n[" + std::to_string(round) + "]\n</" + name + ">\n";
        }
    }
    EXPECT_EQ(parse("<all>" + message + "</all>").asText(), "<all>\n" + events + "</all>\n");
}

TEST(XmlParser, StopsAtTheGivenLength) {
    XmlEvents events;
    const std::string message = "<a>1</a><b>2</b>";
    EXPECT_EQ(parse(message.substr(0, 8)).asText(), "<a>\n[1]\n</a>\n");
    XmlParser parser(
        &events, [](void*, const char*, const char**) { FAIL(); }, [](void*, const char*) { FAIL(); },
        [](void*, const char*, int) { FAIL(); });
    EXPECT_TRUE(parser.parseMessage(message.data(), 0));
    EXPECT_TRUE(parser.parseMessage(message.data(), -1));
    EXPECT_TRUE(parser.parseMessage(nullptr, 0));
}

TEST(XmlParser, GivesEachMessageAFreshStart) {
    std::string seen;
    XmlParser parser(
        &seen,
        [](void* data, const char* name, const char**) { *static_cast<std::string*>(data) += std::string("<") + name; },
        [](void* data, const char* name) { *static_cast<std::string*>(data) += std::string("/") + name; },
        [](void* data, const char* text, int length) {
            static_cast<std::string*>(data)->append(text, static_cast<std::size_t>(length));
        });
    EXPECT_FALSE(parser.parseMessage("<a>1<!--", 8));
    EXPECT_TRUE(parser.parseMessage("2<b>3</b>", 9));
    EXPECT_EQ(seen, "<a<b3/b");
}

TEST(XmlParser, MayBeUsedFromItsOwnCallbacks) {
    struct Nested {
        XmlParser* parser;
        std::string seen;
    } nested{nullptr, ""};
    XmlParser parser(
        &nested,
        [](void* data, const char* name, const char** attributes) {
            auto& self = *static_cast<Nested*>(data);
            self.seen += std::string("<") + name;
            if (*attributes != nullptr) {
                const std::string inner = attributes[1];
                EXPECT_TRUE(self.parser->parseMessage(inner.data(), static_cast<int>(inner.size())));
            }
        },
        [](void* data, const char* name) { static_cast<Nested*>(data)->seen += std::string("/") + name; },
        [](void* data, const char* text, int length) {
            static_cast<Nested*>(data)->seen.append(text, static_cast<std::size_t>(length));
        });
    nested.parser = &parser;
    const std::string message = "<a>1<b c='<d>2</d>'>3</b>4</a>";
    EXPECT_TRUE(parser.parseMessage(message.data(), static_cast<int>(message.size())));
    EXPECT_EQ(nested.seen, "<a1<b<d2/d3/b4/a");
}

TEST(XmlParser, LetsTheExceptionsOfItsCallbacksPass) {
    // Each callback in turn throws, in the middle of joined text and open elements; the sanitizers see what is left
    // behind.
    const std::string message = "<a b='1'>" + std::string(1000, 'x') + "<!-- -->y<c/></a>";
    const auto begin = [](void* data, const char* name, const char**) {
        if (*static_cast<char*>(data) == *name) {
            throw std::runtime_error(std::string("begin ") + name);
        }
    };
    const auto end = [](void* data, const char* name) {
        if (*static_cast<char*>(data) == '/') {
            throw std::length_error(std::string("end ") + name);
        }
    };
    const auto text = [](void* data, const char*, int length) {
        if (*static_cast<char*>(data) == '#') {
            throw std::bad_alloc();
        }
        EXPECT_EQ(length, 1001);
    };
    char thrower = 'c';
    XmlParser parser(&thrower, begin, end, text);
    const int length = static_cast<int>(message.size());
    EXPECT_THROW(parser.parseMessage(message.data(), length), std::runtime_error);
    thrower = '/';
    EXPECT_THROW(parser.parseMessage(message.data(), length), std::length_error);
    thrower = '#';
    EXPECT_THROW(parser.parseMessage(message.data(), length), std::bad_alloc);
    thrower = ' ';
    EXPECT_TRUE(parser.parseMessage(message.data(), length));
}
