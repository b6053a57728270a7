#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "Kinds.h"
#include "VirtualTable.h"

/// What the calls of all four kinds have in common, told from the tables of their members.
namespace {

template <class Kind>
class CallOfKind : public ::testing::Test {
protected:
    const std::vector<Member<typename Kind::Info>> members = Kind::infoMembers();
};

TYPED_TEST_SUITE(CallOfKind, AllKinds, KindNames);

TYPED_TEST(CallOfKind, StartsWithEmptyTextsZerosAndClearedFlags) {
    const typename TypeParam::Info info;

    for (const auto& row : this->members) {
        EXPECT_EQ(row.get(info), row.form == rules::Form::text ? "" : "0") << row.name;
    }
}

TYPED_TEST(CallOfKind, GoesBackToItsFirstStateWhenReset) {
    auto info = filledCall<TypeParam>();

    info.reset();

    EXPECT_EQ(describe(info, this->members), describe(typename TypeParam::Info(), this->members));
}

TYPED_TEST(CallOfKind, IsResetThroughItsFirstPart) {
    auto info = filledCall<TypeParam>();
    CallInfo& part = info;

    part.reset();

    EXPECT_EQ(describe(info, this->members), describe(typename TypeParam::Info(), this->members));
}

TYPED_TEST(CallOfKind, IsResetThroughItsRedirectingPart) {
    auto info = filledCall<TypeParam>();
    Redirecting& part = info;

    part.reset();

    EXPECT_EQ(describe(info, this->members), describe(typename TypeParam::Info(), this->members));
}

TYPED_TEST(CallOfKind, IsCopiedMemberByMember) {
    auto info = filledCall<TypeParam>();
    const auto before = describe(info, this->members);

    const typename TypeParam::Info copy(info);
    typename TypeParam::Info assigned;
    assigned = info;
    info.reset();

    EXPECT_EQ(describe(copy, this->members), before);
    EXPECT_EQ(describe(assigned, this->members), before);
}

TYPED_TEST(CallOfKind, EqualsACallWithTheSameMembers) {
    EXPECT_TRUE(typename TypeParam::Info() == typename TypeParam::Info());
    EXPECT_TRUE(filledCall<TypeParam>() == filledCall<TypeParam>());
}

/// Whether the kind's comparison counts the member.
template <class Kind>
bool counts(const std::string& memberName) {
    for (const auto& row : membersOfPart<Redirecting, Redirecting>()) {
        if (row.name == memberName) {
            return Kind::redirectingCounts;
        }
    }
    return true;
}

TYPED_TEST(CallOfKind, DiffersByEachMemberThatCountsAndByNoOther) {
    for (const auto& row : this->members) {
        typename TypeParam::Info changed;
        row.set(changed, sample(row));
        EXPECT_EQ(changed == typename TypeParam::Info(), !counts<TypeParam>(row.name)) << row.name;
        EXPECT_EQ(typename TypeParam::Info() == changed, !counts<TypeParam>(row.name)) << row.name;

        auto changedAgain = filledCall<TypeParam>();
        row.set(changedAgain, otherSample(row));
        EXPECT_EQ(changedAgain == filledCall<TypeParam>(), !counts<TypeParam>(row.name)) << row.name;
    }
}

TYPED_TEST(CallOfKind, ComparesAsOneOfItsPartsToo) {
    auto info = filledCall<TypeParam>();
    auto other = filledCall<TypeParam>();
    const CallInfo& callPart = info;
    const Redirecting& redirectingPart = info;
    other.deflectNumber = "another";

    EXPECT_TRUE(callPart == other);
    EXPECT_FALSE(redirectingPart == other);
    other = info;
    other.reference = "another";
    EXPECT_FALSE(callPart == other);
    EXPECT_TRUE(redirectingPart == other);
}

template <class Info>
class WithOwnReset : public Info {
public:
    void reset() override {}
};

template <class Info>
class WithOwnComparison : public Info {
public:
    using Info::operator==;
    bool operator==(const Info&) const override { return false; }
};

TYPED_TEST(CallOfKind, InheritsSlot0OverridesSlot1AndAddsSlot2) {
    using Info = typename TypeParam::Info;
    const CallInfo plain;
    const Info info;
    const WithOwnReset<Info> withReset;
    const WithOwnComparison<Info> withComparison;

    EXPECT_EQ((slotOfEquality<Info, CallInfo>()), 0u);
    EXPECT_EQ(slotOf(&Info::reset), 1u);
    EXPECT_EQ((slotOfEquality<Info, Info>()), 2u);
    EXPECT_EQ(changedSlots(&plain, &info, 2), std::vector<std::size_t>{1});
    EXPECT_EQ(changedSlots(&info, &withReset, 3), std::vector<std::size_t>{1});
    EXPECT_EQ(changedSlots(&info, &withComparison, 3), std::vector<std::size_t>{2});
}

/// The first slots of the part's own virtual table within a call.
template <class Part, class Info>
std::vector<std::size_t> slotsChangedInPart() {
    const Part plain;
    const Info info;
    return changedSlots(&plain, static_cast<const Part*>(&info), 2);
}

TYPED_TEST(CallOfKind, KeepsTheComparisonOfItsOtherPartsAndOverridesTheirReset) {
    using Info = typename TypeParam::Info;

    EXPECT_EQ((slotsChangedInPart<Redirecting, Info>()), std::vector<std::size_t>{1});
    if constexpr (std::is_base_of<Duration, Info>::value) {
        EXPECT_EQ((slotsChangedInPart<Duration, Info>()), std::vector<std::size_t>{1});
    }
    if constexpr (std::is_base_of<TimeFormat, Info>::value) {
        EXPECT_EQ((slotsChangedInPart<TimeFormat, Info>()), std::vector<std::size_t>{1});
    }
}

TYPED_TEST(CallOfKind, IsResetThroughEachOfItsParts) {
    using Info = typename TypeParam::Info;
    const auto fresh = describe(Info(), this->members);
    if constexpr (std::is_base_of<Duration, Info>::value) {
        Info info = filledCall<TypeParam>();
        static_cast<Duration&>(info).reset();
        EXPECT_EQ(describe(info, this->members), fresh);
    }
    if constexpr (std::is_base_of<TimeFormat, Info>::value) {
        Info info = filledCall<TypeParam>();
        static_cast<TimeFormat&>(info).reset();
        EXPECT_EQ(describe(info, this->members), fresh);
    }
}

TYPED_TEST(CallOfKind, HasNoVirtualDestructor) {
    EXPECT_FALSE(std::has_virtual_destructor<typename TypeParam::Info>::value);
}

}  // namespace
