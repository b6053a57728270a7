#include "CallInfo.h"

#include <gtest/gtest.h>
#include <string>
#include <type_traits>

namespace {

/// What CallInfo holds and nothing more.
struct CallInfoLayout {
    virtual void first() {}
    std::string texts[6];
    int enumerations[5];
};

TEST(CallInfo, HoldsItsMembersInTheirFixedOrder) {
    const CallInfo info;
    const void* const members[] = {
        &info.reference,          &info.number,     &info.connectedNumber,    &info.connectedSurname,
        &info.connectedFirstname, &info.timeDate,   &info.targetLog,          &info.numberPresentation,
        &info.namePresentation,   &info.numberType, &info.connectedNumberType};

    EXPECT_EQ(members[0], reinterpret_cast<const char*>(&info) + sizeof(void*));
    for (std::size_t index = 1; index < sizeof members / sizeof members[0]; ++index) {
        EXPECT_LT(members[index - 1], members[index]) << index;
    }
}

TEST(CallInfo, HoldsNothingElse) {
    EXPECT_EQ(sizeof(CallInfo), sizeof(CallInfoLayout));
}

TEST(CallInfo, HasMembersOfThePlatformsTypes) {
    EXPECT_TRUE((std::is_same<decltype(CallInfo::targetLog), CallLogEntryEvent::_LogTarget>::value));
    EXPECT_TRUE((std::is_same<decltype(CallInfo::numberPresentation), CallLogEntryEvent::_PresentationValue>::value));
    EXPECT_TRUE((std::is_same<decltype(CallInfo::namePresentation), CallLogEntryEvent::_PresentationValue>::value));
    EXPECT_TRUE((std::is_same<decltype(CallInfo::numberType), NumberType::NT>::value));
    EXPECT_TRUE((std::is_same<decltype(CallInfo::connectedNumberType), NumberType::NT>::value));
    EXPECT_EQ(sizeof(CallLogEntryEvent::_LogTarget), 4u);
}

TEST(CallInfo, DiffersFromOneThatDiffersInNothingButTheReference) {
    CallInfo first;
    CallInfo second;
    first.reference = "kept with the call";

    EXPECT_FALSE(first == second);
    second.reference = "kept with the call";
    EXPECT_TRUE(first == second);
}

}  // namespace
