#include "Duration.h"

#include <gtest/gtest.h>
#include <string>

namespace {

struct DurationLayout {
    virtual void first() {}
    std::string text;
};

TEST(Duration, HoldsOneTextAndNothingElse) {
    const Duration duration;

    EXPECT_EQ(sizeof(Duration), sizeof(DurationLayout));
    EXPECT_EQ(static_cast<const void*>(&duration.duration), reinterpret_cast<const char*>(&duration) + sizeof(void*));
}

TEST(Duration, TakesTheTextAsItIs) {
    Duration first;
    Duration second;
    first.duration = "1:00";
    second.duration = "01:00";

    EXPECT_FALSE(first == second);
    EXPECT_EQ(first.duration, "1:00");
}

}  // namespace
