#include "WellFormed.h"

#include <gtest/gtest.h>
#include <string>

#include "PrintableText.h"
#include "TextPosition.h"

namespace {

std::string shown(std::string_view value, calljournal::ValueUse) {
    return calljournal::printable(value);
}

std::string defectOf(const std::string& text) {
    const auto defect = calljournal::findDefect(text);
    return defect ? calljournal::TextPosition(text).of(defect->place.at) + ": " + sentenceOf(*defect, &shown) : "";
}

TEST(WellFormed, ARunOfElementsHasNoDefect) {
    EXPECT_EQ(defectOf("<UniqueId>1</UniqueId><LogList><Item><Number>030</Number></Item></LogList>"), "");
    EXPECT_EQ(defectOf("<Surname>Smith &amp; Co &#228;&#xE4;</Surname>\n"), "");
    EXPECT_EQ(defectOf(""), "");
}

TEST(WellFormed, NamesTheFirstDefectWithItsPlace) {
    struct {
        const char* text;
        const char* defect;
    } const cases[] = {
        {"<A>1</A><B>2", "line 1, column 9: <B> is never closed"},
        {"<A>1</B></A>", "line 1, column 5: </B> stands where </A> is due"},
        {"</A>", "line 1, column 1: </A> closes nothing"},
        {"<A>\n x<y</A>", "line 2, column 3: the tag of y does not end with \">\" behind its name"},
        {"<A>1 < 2</A>", "line 1, column 6: \"<\" starts no tag; a text's less-than sign is written as &lt;"},
        {"<A>Smith & Co</A>", "line 1, column 10: \"&\" starts no entity; a text's ampersand is written as &amp;"},
        {"<A>&#;</A>", "line 1, column 4: \"&\" starts no entity; a text's ampersand is written as &amp;"},
        {"<A>&#12</A>", "line 1, column 4: \"&\" starts no entity; a text's ampersand is written as &amp;"},
        {"<A", "line 1, column 1: the text ends in the middle of a tag"},
        {"<A>\x01</A>", "line 1, column 4: the byte \\x01 is not allowed in XML"},
        {"<1>", "line 1, column 1: \"<\" starts no tag; a text's less-than sign is written as &lt;"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(defectOf(one.text), one.defect) << one.text;
    }
}

TEST(WellFormed, EveryTruncationOfABodyHasADefectUnlessItEndsBetweenElements) {
    const std::string body = "<A>1</A><B><C>2</C></B>";
    for (std::size_t length = 0; length <= body.size(); ++length) {
        const bool isBetween = length == 0 || length == 8 || length == body.size();
        EXPECT_EQ(defectOf(body.substr(0, length)).empty(), isBetween) << length;
    }
}

}  // namespace
