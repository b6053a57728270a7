#include "TimeFormat.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

struct TimeFormatLayout {
    virtual void first() {}
    int value;
};

TEST(TimeFormat, HoldsOneEnumerationAndNothingElse) {
    const TimeFormat format;

    EXPECT_EQ(sizeof(TimeFormat), sizeof(TimeFormatLayout));
    EXPECT_EQ(static_cast<const void*>(&format.timeFormat), reinterpret_cast<const char*>(&format) + sizeof(void*));
    EXPECT_TRUE((std::is_same<decltype(TimeFormat::timeFormat), CallLogEntryEvent::_TFormat>::value));
}

}  // namespace
