#include "FieldValue.h"

#include <gtest/gtest.h>

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

}  // namespace
