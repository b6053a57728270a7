#include "FieldValue.h"

#include <gtest/gtest.h>

#include "Time.h"

using namespace calljournal;

namespace {

template <class Value>
std::string refusal(const std::string& text, Value value = Value()) {
    try {
        parseValue(text, value);
    } catch (const ValueError& error) {
        return error.what();
    }
    return "";
}

std::string timeRefusal(const std::string& text) {
    try {
        checkTime(text);
    } catch (const ValueError& error) {
        return error.what();
    }
    return "";
}

TEST(FieldValue, TakesEveryWordOfAnEnumeration) {
    for (const char* word : {"NO_ICON", "PRIVATE", "BUSINESS1", "BUSINESS2", "MOBILE"}) {
        EXPECT_EQ(refusal<NumberType::NT>(word), "");
    }
    NumberType::NT type = NumberType::NO_ICON;
    parseValue("MOBILE", type);
    EXPECT_EQ(type, NumberType::MOBILE);
}

TEST(FieldValue, RefusesAnUnknownWordAndNamesTheKnownOnes) {
    EXPECT_EQ(refusal<NumberType::NT>("mobile"),
              "\"mobile\" is not one of NO_ICON, PRIVATE, BUSINESS1, BUSINESS2, MOBILE");
    EXPECT_EQ(refusal<CallLogEntryEvent::_PresentationValue>(""),
              "\"\" is not one of NOT_AVAILABLE, ALLOWED, NOT_ALLOWED");
    EXPECT_EQ(refusal<bool>("true"), "\"true\" is not one of True, False");
}

TEST(FieldValue, TakesOnlyTimesOfTheCalendar) {
    EXPECT_EQ(timeRefusal("2024-02-29 23:59:59"), "");
    EXPECT_EQ(timeRefusal("1969-12-31 23:59:58"), "");
    for (const char* text : {"2023-02-29 10:00:00", "2024-05-01", "2024-05-01T10:15:00", "2024-5-1 10:15:00", "",
                             "2024-05-01 10:15:00 ", "2024-05-01 25:00:00", "yesterday"}) {
        EXPECT_EQ(timeRefusal(text), "\"" + std::string(text) + "\" is not a time of the form YYYY-MM-DD HH:MM:SS");
    }
}

TEST(FieldValue, TheTimeNowIsATime) {
    EXPECT_EQ(timeRefusal(currentTime()), "");
}

}  // namespace
