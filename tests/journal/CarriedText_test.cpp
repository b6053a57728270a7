#include "CarriedText.h"

#include <gtest/gtest.h>
#include <random>

#include "KindInterface.h"

using namespace calljournal;

namespace {

TEST(CarriedText, APlainTextIsCarriedAsItIs) {
    for (const char* text : {"", "0301234", "Smith & Co", "\"Quick\" > 'slow'", "a & b; c", "&unknown;"}) {
        EXPECT_EQ(carriedText(text, 1), text);
        EXPECT_EQ(carriedText(text, 2), text);
    }
}

TEST(CarriedText, MarkupAndEntitiesAreEscapedAsOftenAsTheReaderUnescapes) {
    EXPECT_EQ(carriedText("A<B", 1), "A&lt;B");
    EXPECT_EQ(carriedText("A<B", 2), "A&amp;lt;B");
    EXPECT_EQ(carriedText("a&amp;b", 1), "a&amp;amp;b");
    EXPECT_EQ(carriedText("&lt;", 2), "&amp;amp;lt;");
    EXPECT_EQ(carriedText("&#x1b;", 1), "&amp;#x1b;");
}

TEST(CarriedText, RestoringGivesEveryTextBack) {
    std::mt19937 random(2024);
    const std::string pieces[] = {"&", "<", ">", "amp;", "lt;", "&amp;", "&lt;", "x", ";", "'", "\"", "&#38;"};
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (auto length = random() % 6; length > 0; --length) {
            text += pieces[random() % std::size(pieces)];
        }
        for (const int times : {1, 2}) {
            EXPECT_EQ(restoredText(carriedText(text, times), times), text) << times;
            EXPECT_EQ(carriedText(text, times).find('<'), std::string::npos);
        }
    }
}

TEST(CarriedControls, AreReferences) {
    EXPECT_EQ(carriedControls("plain \t\r\n \x7f text & more"), "plain \t\r\n \x7f text & more");
    EXPECT_EQ(carriedControls(std::string("a\x1b[31m\0", 7)), "a&#x1b;[31m&#x00;");
    EXPECT_EQ(carriedControls("&#x1b; &#x"), "&#x26;#x1b; &#x26;#x");
    EXPECT_EQ(restoredControls("&#x41;&#x1B;&#x1;&#x0a;&#x09;&#x1b"), "&#x41;&#x1B;&#x1;&#x0a;&#x09;&#x1b");
    for (const char* text : {"&#x/1;", "&#x:1;", "&#x1/;", "&#x1:;", "&#x`1;", "&#xg1;", "&#x1`;", "&#x1g;", "&#x80;",
                             "&#x9b;", "&#x1b:", "&#x", "&#x1"}) {
        EXPECT_EQ(restoredControls(text), text);
        EXPECT_EQ(restoredControls("&#x1b;" + std::string(text)), "\x1b" + std::string(text));
    }
}

TEST(CarriedControls, ComeBackFromEveryText) {
    std::mt19937 random(2025);
    SCOPED_TRACE("seed 2025");
    const std::string pieces[] = {"&",   "#x", "&#x", "26;", "1b;", "&#x1b;", "&#x26;", ";", std::string(1, '\0'),
                                  "\x1f"};
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (auto length = random() % 6; length > 0; --length) {
            text += pieces[random() % std::size(pieces)];
        }
        const std::string carried = carriedControls(text);
        ASSERT_EQ(restoredControls(carried), text) << carried;
        ASSERT_EQ(carried.find_first_of(std::string("\0\x1f", 2)), std::string::npos);
    }
}

template <class Item>
void expectEveryTextToComeBack() {
    using Kind = format::CallKind<Item>;
    Item item;
    item.setUniqueId("7");
    item.setEntryId("<e>&lt;");
    item.setSurname("<s>&amp;lt;");
    item.setFirstname("</Firstname>");
    item.setPictureClip("</LogList>&amp;");
    typename Kind::Call call;
    int number = 0;
    visitCallTexts<Item>(
        call, [&](std::string& text, int) { text = "</Item><Item>&lt;&amp;lt;</Entry>" + std::to_string(number++); });
    item.addCallInfoToList(call);

    Item carried = item;
    convertTexts(carried, carriedText);
    Item read;
    KindInterface<Item>::decode(KindInterface<Item>::encode(carried).c_str(), read);
    read.setPictureClip(item.getPictureClip());  // written by another name in one kind
    EXPECT_TRUE(read == item);
    convertTexts(carried, restoredText);
    EXPECT_TRUE(carried == item);
}

TEST(ConvertedTexts, ComeBackFromTheDecoderOfEachKind) {
    expectEveryTextToComeBack<MissedCallItem>();
    expectEveryTextToComeBack<DialledCallItem>();
    expectEveryTextToComeBack<ReceivedCallItem>();
    expectEveryTextToComeBack<ForwardedCallItem>();
}

}  // namespace
