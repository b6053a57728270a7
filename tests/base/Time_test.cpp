#include "Time.h"

#include <gtest/gtest.h>
#include <string>

using namespace calljournal;

namespace {

std::string timeRefusal(const std::string& text) {
    try {
        checkTime(text);
    } catch (const ValueError& error) {
        return error.what();
    }
    return "";
}

TEST(Time, IsOneOfTheCalendar) {
    EXPECT_EQ(timeRefusal("2024-02-29 23:59:59"), "");
    EXPECT_EQ(timeRefusal("1969-12-31 23:59:58"), "");
    for (const char* text : {"2023-02-29 10:00:00", "2024-05-01", "2024-05-01T10:15:00", "2024-5-1 10:15:00",
                             "24-05-01 10:15:00", "", "2024-05-01 10:15:00 ", "2024-05-01 25:00:00", "yesterday"}) {
        EXPECT_EQ(timeRefusal(text), "\"" + std::string(text) + "\" is not a time of the form YYYY-MM-DD HH:MM:SS");
    }
}

TEST(Time, OfNowIsATime) {
    EXPECT_EQ(timeRefusal(currentTime()), "");
}

}  // namespace
