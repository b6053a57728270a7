#include "Capture.h"

#include <gtest/gtest.h>
#include <utility>

namespace calljournal {

namespace {

using Messages = std::vector<std::pair<std::size_t, std::string_view>>;

Messages messages(std::string_view capture) {
    Messages found;
    for (const CapturedMessage& message : messagesOf(capture)) {
        found.emplace_back(message.begin, message.text);
    }
    return found;
}

TEST(Capture, IsOneMessageWithoutADeclaration) {
    EXPECT_EQ(messages("<a/>\n<b/>"), (Messages{{0, "<a/>\n<b/>"}}));
    EXPECT_EQ(messages(""), (Messages{{0, ""}}));
}

TEST(Capture, BeginsAMessageAtEachDeclarationBehindItsMark) {
    EXPECT_EQ(messages("> <?xml ?>a\n< <?xml ?>b\n<?xml ?>c\n"),
              (Messages{{2, "<?xml ?>a\n"}, {14, "<?xml ?>b\n"}, {24, "<?xml ?>c\n"}}));
}

TEST(Capture, TakesNoDeclarationInTheMiddleOfALine) {
    EXPECT_EQ(messages("<?xml ?>a<?xml ?>b"), (Messages{{0, "<?xml ?>a<?xml ?>b"}}));
}

TEST(Capture, KeepsTextInFrontOfTheFirstDeclaration) {
    EXPECT_EQ(messages("x\n> <?xml ?>a"), (Messages{{0, "x\n"}, {4, "<?xml ?>a"}}));
    EXPECT_EQ(messages(" \n> <?xml ?>a"), (Messages{{4, "<?xml ?>a"}}));
}

}  // namespace

}  // namespace calljournal
