#include "JsonText.h"

#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>

namespace {

/// Texts take a short way unless something is odd about them, which is for the JSON library.
TEST(JsonText, IsThatOfTheJsonLibrary) {
    const auto expectSame = [](const std::string& text) {
        std::string json = "[";
        calljournal::appendJsonText(json, text);
        ASSERT_EQ(json, '[' + calljournal::jsonText(calljournal::Json(text), false)) << ::testing::PrintToString(text);
    };
    for (int pair = 0; pair < 65536; ++pair) {
        expectSame({static_cast<char>(pair / 256), static_cast<char>(pair % 256)});
    }
    const unsigned seed = 20261121;
    std::mt19937 random(seed);
    const std::string pieces[] = {"a",    "ü",        "日",           "😀",        "\"",       "\\",
                                  "\x7f", "\x1f",     "\u009b",       "\u202e",   "\ufeff",   "\U000e0041",
                                  "\xc3", "\xe6\x97", "\xed\xa0\x80", "\xf0\x9f", "\xc0\x80", "\xf4\x90\x80\x80",
                                  "\xff"};
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto length = random() % 6; length != 0; --length) {
            text += pieces[random() % std::size(pieces)];
        }
        expectSame(text);
    }
}

TEST(JsonText, HasAnEscapeForWhatIsShownAsOne) {
    const std::string text = "a\x1b\x7f\u009b\u00ad\u061c\u200b\u202e\u2066\ufeff\U000e0041ü\u200d\U0001f600";
    const calljournal::Json json = {{text, text}};
    const std::string shown = R"("a\u001b\u007f\u009b\u00ad\u061c\u200b\u202e\u2066\ufeff\udb40\udc41ü)"
                              "\u200d\U0001f600\"";
    EXPECT_EQ(calljournal::jsonText(json, false), '{' + shown + ':' + shown + '}');
    EXPECT_EQ(calljournal::jsonText(json, true), "{\n  " + shown + ": " + shown + "\n}");
    EXPECT_EQ(calljournal::Json::parse(calljournal::jsonText(json, false)), json);
}

}  // namespace
