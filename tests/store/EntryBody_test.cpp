#include "EntryBody.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

using calljournal::BodyElement;
using calljournal::firstElement;

std::string withPictureClip(const std::string& body) {
    std::string text = "|";
    calljournal::appendWithPictureClip(body, text);
    return text;
}

TEST(EntryBody, BeginsWithAnElementThatReachesToItsFirstCloseTag) {
    const std::optional<BodyElement> element = firstElement("<A1>x<b&</B></A1><C>d</C></A1>");
    ASSERT_TRUE(element);
    EXPECT_EQ(element->name, "A1");
    EXPECT_EQ(element->text, "x<b&</B>");
    EXPECT_EQ(element->whole, "<A1>x<b&</B></A1>");
}

TEST(EntryBody, HasACallListThatReachesToItsEnd) {
    const std::optional<BodyElement> element = firstElement("<LogList>a</LogList>b</LogList>");
    ASSERT_TRUE(element);
    EXPECT_EQ(element->text, "a</LogList>b");
    EXPECT_EQ(firstElement("<LogList></LogList>")->text, "");
}

TEST(EntryBody, BeginsWithNoElementWhereOneIsNotWhole) {
    for (const char* body : {"", "x", "x<A>1</A>", " <A>1</A>", "<A>", "<A", "<>x</>", "<A>1</B>", "<A b=\"c\">1</A>",
                             "<A/>", "</A>", "<A >1</A>", "<LogList>a</LogList>b", "<LogList>", "<LogList></LogList"}) {
        EXPECT_FALSE(firstElement(body)) << body;
    }
}

TEST(EntryBody, ServesThePictureAsPictureClip) {
    EXPECT_EQ(withPictureClip("<EntryId>7</EntryId><Picture>p</Picture><Viewed>True</Viewed><LogList></LogList>"),
              "|<EntryId>7</EntryId><PictureClip>p</PictureClip><Viewed>True</Viewed><LogList></LogList>");
}

TEST(EntryBody, LeavesPictureTextsInOtherElementsAlone) {
    for (const char* body : {
             "",
             "<EntryId><Picture>p</Picture></EntryId><Viewed>True</Viewed>",
             "<Viewed>True</Viewed><Picture>p</Picture>",
             "<LogList><Picture>p</Picture></LogList>",
             "<PictureClip>p</PictureClip><Viewed>True</Viewed>",
             "<Picture>p",
         }) {
        EXPECT_EQ(withPictureClip(body), std::string("|") + body);
    }
}

}  // namespace
