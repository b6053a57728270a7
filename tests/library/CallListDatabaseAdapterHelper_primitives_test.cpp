#include <cstddef>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "CallListDatabaseAdapterHelper.h"

namespace {

using Helper = CallListDatabaseAdapterHelper;

TEST(XmlTag, IsWrittenInAngleBrackets) {
    EXPECT_EQ(Helper::createXMLBegin("Item"), "<Item>");
    EXPECT_EQ(Helper::createXMLClose("Item"), "</Item>");
    EXPECT_EQ(Helper::createXMLBegin(""), "<>");
    EXPECT_EQ(Helper::createXMLClose(""), "</>");
}

TEST(XmlField, IsAppended) {
    std::string out = "before";

    Helper::createXMLField("Surname", std::string("Smith"), out);

    EXPECT_EQ(out, "before<Surname>Smith</Surname>");
}

TEST(XmlField, IsNotAppendedWhenEmpty) {
    std::string out = "before";

    Helper::createXMLField("Surname", std::string(), out);

    EXPECT_EQ(out, "before");
}

TEST(XmlField, IsReturned) {
    EXPECT_EQ(Helper::createXMLField("Surname", std::string("Smith")), "<Surname>Smith</Surname>");
    EXPECT_EQ(Helper::createXMLField("Surname", std::string()), "");
}

TEST(XmlField, IsWrittenAsGivenWithoutEscaping) {
    const std::string value("a<b>&\"'\xC3\xBC\0c", 11);
    std::string out;

    Helper::createXMLField("A", value, out);

    EXPECT_EQ(out, "<A>" + value + "</A>");
    EXPECT_EQ(Helper::createXMLField("A", value), "<A>" + value + "</A>");
}

TEST(XmlField, TakesACText) {
    const char* const value = "Smith";

    EXPECT_EQ(Helper::createXMLField("Surname", value), "<Surname>Smith</Surname>");
    EXPECT_EQ(Helper::createXMLField("Surname", ""), "");
}

TEST(XmlField, RefusesANullText) {
    const char* const none = nullptr;

    try {
        Helper::createXMLField("Surname", none);
        FAIL() << "nothing was thrown";
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
    }
}

TEST(XmlField, WritesAFlagAsAWordAlways) {
    EXPECT_EQ(Helper::createXMLField("Viewed", true), "<Viewed>True</Viewed>");
    EXPECT_EQ(Helper::createXMLField("Viewed", false), "<Viewed>False</Viewed>");
}

TEST(XmlField, WritesANumberAsSignedDecimalAlways) {
    const struct {
        unsigned int value;
        const char* text;
    } rows[] = {
        {0u, "<Value>0</Value>"},
        {1u, "<Value>1</Value>"},
        {42u, "<Value>42</Value>"},
        {2147483647u, "<Value>2147483647</Value>"},
        {2147483648u, "<Value>-2147483648</Value>"},
        {2147483649u, "<Value>-2147483647</Value>"},
        {4294967295u, "<Value>-1</Value>"},
    };

    for (const auto& row : rows) {
        EXPECT_EQ(Helper::createXMLField("Value", row.value), row.text) << row.value;
    }
}

TEST(XmlEnvelope, WrapsAMessageIntoASchemaBehindTheDeclaration) {
    std::string message = "<A>1</A>";

    Helper::addXMLHeaderFooter(message, "CallLog");

    EXPECT_EQ(message, "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLog\"><A>1</A></Schema>");
}

TEST(XmlEnvelope, IsOnlyTheDeclarationWithoutASchemaName) {
    std::string message = "<A>1</A>";

    Helper::addXMLHeaderFooter(message, "");

    EXPECT_EQ(message, "<?xml version=\"1.0\" encoding=\"utf-8\"?><A>1</A>");
}

TEST(XmlEnvelope, WrapsAnEmptyMessage) {
    std::string message;
    std::string plain;

    Helper::addXMLHeaderFooter(message, "CallLog");
    Helper::addXMLHeaderFooter(plain, "");

    EXPECT_EQ(message, "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLog\"></Schema>");
    EXPECT_EQ(plain, "<?xml version=\"1.0\" encoding=\"utf-8\"?>");
}

TEST(XmlEnvelope, DoesNotEscapeTheSchemaName) {
    std::string message = "x";

    Helper::addXMLHeaderFooter(message, "a\"&<b>");

    EXPECT_EQ(message, "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"a\"&<b>\">x</Schema>");
}

struct ValueRow {
    const char* story;
    const char* text;
    std::size_t cursor;
    const char* tag;
    const char* value;
    std::size_t next;
};

const ValueRow valueRows[] = {
    {"right at the cursor", "<A>1</A><B>2</B>", 0, "A", "1", 8},
    {"further on: the cursor stays", "<A>1</A><B>2</B>", 0, "B", "2", 0},
    {"at a later cursor", "<A>1</A><B>2</B>", 8, "B", "2", 16},
    {"before the cursor: never found again", "<A>1</A><B>2</B>", 8, "A", "", 8},
    {"missing", "<A>1</A>", 0, "C", "", 0},
    {"without a close tag", "<A>1<B>2</B>", 0, "A", "", 0},
    {"with the close tag in front only", "</A><A>1", 0, "A", "", 0},
    {"with a close tag in front and behind", "</A><A>1</A>", 0, "A", "1", 0},
    {"empty at the cursor", "<A></A><B>2</B>", 0, "A", "", 7},
    {"empty further on", "x<A></A>", 0, "A", "", 0},
    {"of which there are two", "<A>1</A><A>2</A>", 0, "A", "1", 8},
    {"nested: ends at the first close tag", "<A>1<A>2</A>3</A>", 0, "A", "1<A>2", 12},
    {"case counts", "<a>1</a>", 0, "A", "", 0},
    {"a blank in the tag is another tag", "<A >1</A>", 0, "A", "", 0},
    {"an attribute makes another tag", "<A x=\"1\">1</A>", 0, "A", "", 0},
    {"a longer name is another tag", "<AB>1</AB><A>2</A>", 0, "A", "2", 0},
    {"unescaped", "<A>&lt;&amp;&gt;&quot;&apos;</A>", 0, "A", "<&>\"'", 32},
    {"unescaped once", "<A>&amp;lt;</A>", 0, "A", "&lt;", 15},
    {"an unknown entity stays", "<A>&nbsp;&</A>", 0, "A", "&nbsp;&", 14},
    {"an escaped close tag does not close", "<A>&lt;/A&gt;</A>", 0, "A", "</A>", 17},
    {"at the end of the text", "<A>1</A>", 8, "A", "", 8},
    {"in an empty text", "", 0, "A", "", 0},
    {"a half close tag", "<A>1</A", 0, "A", "", 0},
    {"markup as a value", "<A><B>1</B></A>", 0, "A", "<B>1</B>", 15},
    {"blanks are kept", "<A> 1\n</A>", 0, "A", " 1\n", 10},
    {"the close tag may not overlap the open tag", "<A></A", 0, "A", "", 0},
};

TEST(XmlValue, IsFoundFromTheCursor) {
    for (const ValueRow& row : valueRows) {
        std::string out = "left over";
        const char* const next = Helper::getXMLValue2(row.text + row.cursor, row.tag, out);
        EXPECT_EQ(out, row.value) << row.story;
        EXPECT_EQ(next, row.text + row.next) << row.story;
    }
}

TEST(XmlValue, IsFoundByTheWholeTagIncludingMisleadingStarts) {
    std::string out;

    Helper::getXMLValue2("<<Number<Num<Number>1</Numbe</</Number>", "Number", out);

    EXPECT_EQ(out, "1</Numbe</");
}

TEST(XmlValue, ReadsInOnePassWhatWasWrittenInOrder) {
    const char* const text = "<A>1</A><C>3</C>";
    std::string a;
    std::string b = "left over";
    std::string c;

    const char* cursor = Helper::getXMLValue2(text, "A", a);
    cursor = Helper::getXMLValue2(cursor, "B", b);
    EXPECT_EQ(cursor, text + 8);
    cursor = Helper::getXMLValue2(cursor, "C", c);

    EXPECT_EQ(a + "," + b + "," + c, "1,,3");
    EXPECT_EQ(cursor, text + 16);
}

struct FlagRow {
    const char* story;
    const char* text;
    bool value;
    std::size_t next;
};

TEST(XmlFlag, IsTrueOnlyForExactlyTrue) {
    const FlagRow rows[] = {
        {"the word", "<V>True</V>x", true, 11},
        {"the other word", "<V>False</V>x", false, 12},
        {"lower case", "<V>true</V>", false, 11},
        {"upper case", "<V>TRUE</V>", false, 11},
        {"a digit", "<V>1</V>", false, 8},
        {"empty", "<V></V>", false, 7},
        {"with a blank behind", "<V>True </V>", false, 12},
        {"with a blank in front", "<V> True</V>", false, 12},
        {"a part of it", "<V>Tru</V>", false, 10},
        {"more than it", "<V>Truee</V>", false, 12},
        {"missing", "<W>True</W>", false, 0},
        {"without a close tag", "<V>True", false, 0},
        {"further on", "x<V>True</V>", true, 0},
    };

    for (const FlagRow& row : rows) {
        for (const bool before : {false, true}) {
            bool out = before;
            const char* const next = Helper::getXMLValue2(row.text, "V", out);
            EXPECT_EQ(out, row.value) << row.story;
            EXPECT_EQ(next, row.text + row.next) << row.story;
        }
    }
}

struct CutRow {
    const char* story;
    const char* text;
    bool result;
    const char* out;   ///< "untouched" where nothing is cut.
    const char* left;  ///< Of the text.
};

const CutRow cutRows[] = {
    {"the first element", "<L><Item>a</Item><Item>b</Item></L>", true, "a", "<L><Item>b</Item></L>"},
    {"an empty element stays", "<Item></Item>x", false, "untouched", "<Item></Item>x"},
    {"an empty element hides those behind", "<Item></Item><Item>a</Item>", false, "untouched",
     "<Item></Item><Item>a</Item>"},
    {"nothing there", "abc", false, "untouched", "abc"},
    {"an empty text", "", false, "untouched", ""},
    {"no close tag", "<Item>abc", false, "untouched", "<Item>abc"},
    {"the close tag in front", "a</Item><Item>b</Item>", false, "untouched", "a</Item><Item>b</Item>"},
    {"nested: the first close tag ends the first open tag", "<Item>a<Item>b</Item>c</Item>", true, "a<Item>b",
     "c</Item>"},
    {"not unescaped", "<Item>&lt;</Item>", true, "&lt;", ""},
    {"text around it is joined", "ab<Item>c</Item>de", true, "c", "abde"},
    {"a cut makes a new tag", "<It<Item>a</Item>em>b</Item>", true, "a", "<Item>b</Item>"},
    {"one byte is enough", "<Item>1</Item>", true, "1", ""},
    // A missing open tag counts as position -1, so its text would start at 5.
    {"a close tag alone at 5 is too early", "abcde</Item>f", false, "untouched", "abcde</Item>f"},
    {"a close tag alone at 6 lengthens the text", "abcdef</Item>g", true, "f", "abcdef</Item>gg"},
    {"a close tag alone further on", "abcdefgh</Item>", true, "fgh", "abcdefgh</Item>"},
    {"a close tag alone at the start", "</Item>", false, "untouched", "</Item>"},
};

TEST(XmlCut, TakesTheFirstElementOutOfTheText) {
    for (const CutRow& row : cutRows) {
        std::string text = row.text;
        std::string out = "untouched";
        EXPECT_EQ(Helper::getAndRemoveXMLValue(text, "Item", out), row.result) << row.story;
        EXPECT_EQ(out, row.out) << row.story;
        EXPECT_EQ(text, row.left) << row.story;
    }
}

TEST(XmlCut, TakesOneElementAfterTheOther) {
    std::string text = "<Item>a</Item><Item>b</Item>";
    std::vector<std::string> values;
    std::string out;

    while (Helper::getAndRemoveXMLValue(text, "Item", out)) {
        values.push_back(out);
    }

    EXPECT_EQ(values, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(text, "");
}

TEST(XmlCut, KeepsZeroBytes) {
    std::string text("x\0<Item>a\0b</Item>\0y", 20);
    std::string out;

    EXPECT_TRUE(Helper::getAndRemoveXMLValue(text, "Item", out));

    EXPECT_EQ(out, std::string("a\0b", 3));
    EXPECT_EQ(text, std::string("x\0\0y", 4));
}

TEST(XmlCut, DependsOnTheLengthOfTheTag) {
    std::string text = "abc</A>";
    std::string out;

    EXPECT_TRUE(Helper::getAndRemoveXMLValue(text, "A", out));

    EXPECT_EQ(out, "c");
    EXPECT_EQ(text, "abc</A>");
    text = "ab</A>";
    EXPECT_FALSE(Helper::getAndRemoveXMLValue(text, "A", out));
}

TEST(XmlMethod, StartsWithItsOpenTag) {
    const struct {
        const char* story;
        const char* message;
        const char* method;
    } rows[] = {
        {"alone", "<Method>x</Method>", "<Method>x"},
        {"a known one", "<?xml?><Method>getMissedCallList</Method><A>1</A>", "<Method>getMissedCallList"},
        {"without an open tag", "x</Method>", ""},
        {"without a close tag", "<Method>x", ""},
        {"empty", "<Method></Method>", "<Method>"},
        {"an empty message", "", ""},
        {"the close tag in front: to the end", "a</Method>b<Method>c", "<Method>c"},
        {"a close tag in front of a whole element", "</Method><Method>c</Method>d", "<Method>c</Method>d"},
        {"of two the first", "<Method>a</Method><Method>b</Method>", "<Method>a"},
        {"not unescaped", "<Method>&lt;</Method>", "<Method>&lt;"},
    };

    for (const auto& row : rows) {
        EXPECT_EQ(Helper::getMethodFromXMLMsg(row.message), row.method) << row.story;
    }
}

}  // namespace
