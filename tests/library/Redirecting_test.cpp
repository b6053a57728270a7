#include "Redirecting.h"

#include <gtest/gtest.h>
#include <string>
#include <type_traits>

namespace {

struct RedirectingLayout {
    virtual void first() {}
    std::string texts[2];
    int enumerations[4];
};

TEST(Redirecting, HoldsItsMembersInTheirFixedOrder) {
    const Redirecting part;
    const void* const members[] = {&part.deflectNumber,           &part.deflectName,
                                   &part.deflectNumberType,       &part.deflectNumberPresentation,
                                   &part.deflectNamePresentation, &part.transferType};

    EXPECT_EQ(members[0], reinterpret_cast<const char*>(&part) + sizeof(void*));
    for (std::size_t index = 1; index < sizeof members / sizeof members[0]; ++index) {
        EXPECT_LT(members[index - 1], members[index]) << index;
    }
}

TEST(Redirecting, HoldsNothingElse) {
    EXPECT_EQ(sizeof(Redirecting), sizeof(RedirectingLayout));
}

TEST(Redirecting, HasMembersOfThePlatformsTypes) {
    EXPECT_TRUE((std::is_same<decltype(Redirecting::deflectNumberType), NumberType::NT>::value));
    EXPECT_TRUE(
        (std::is_same<decltype(Redirecting::deflectNumberPresentation), CallLogEntryEvent::_PresentationValue>::value));
    EXPECT_TRUE(
        (std::is_same<decltype(Redirecting::deflectNamePresentation), CallLogEntryEvent::_PresentationValue>::value));
    EXPECT_TRUE((std::is_same<decltype(Redirecting::transferType), TransferNumber::TransferNumberType>::value));
}

}  // namespace
