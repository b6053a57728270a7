#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "CallInfo.h"
#include "CallMembers.h"
#include "Duration.h"
#include "Redirecting.h"
#include "TimeFormat.h"
#include "VirtualTable.h"

/// What CallInfo, Duration, TimeFormat and Redirecting have in common.
namespace {

template <class Part>
class CallDetailPart : public ::testing::Test {
protected:
    const std::vector<Member<Part>> members = membersOfPart<Part, Part>();
};

struct PartNames {
    template <class Part>
    static std::string GetName(int) {
        return std::is_same<Part, CallInfo>::value     ? "CallInfo"
               : std::is_same<Part, Duration>::value   ? "Duration"
               : std::is_same<Part, TimeFormat>::value ? "TimeFormat"
                                                       : "Redirecting";
    }
};

using Parts = ::testing::Types<CallInfo, Duration, TimeFormat, Redirecting>;
TYPED_TEST_SUITE(CallDetailPart, Parts, PartNames);

TYPED_TEST(CallDetailPart, StartsWithEmptyTextsAndZeros) {
    const TypeParam part;

    for (const auto& row : this->members) {
        EXPECT_EQ(row.get(part), row.form == rules::Form::text ? "" : "0") << row.name;
    }
}

TYPED_TEST(CallDetailPart, HasTextsEmptyAndEnumerationsZeroOnceReset) {
    TypeParam part = filled(this->members);

    part.reset();

    EXPECT_EQ(describe(part, this->members), describe(TypeParam(), this->members));
    EXPECT_TRUE(part == TypeParam());
}

TYPED_TEST(CallDetailPart, EqualsAPartWithTheSameMembers) {
    EXPECT_TRUE(TypeParam() == TypeParam());
    EXPECT_TRUE(filled(this->members) == filled(this->members));
}

TYPED_TEST(CallDetailPart, DiffersWhenAnyOneMemberDiffers) {
    for (const auto& row : this->members) {
        TypeParam changed;
        row.set(changed, sample(row));
        EXPECT_FALSE(changed == TypeParam()) << row.name;
        EXPECT_FALSE(TypeParam() == changed) << row.name;

        TypeParam changedAgain = filled(this->members);
        row.set(changedAgain, otherSample(row));
        EXPECT_FALSE(changedAgain == filled(this->members)) << row.name;
    }
}

TYPED_TEST(CallDetailPart, ComparesTextsByteForByte) {
    for (const auto& row : this->members) {
        if (row.form != rules::Form::text) {
            continue;
        }
        TypeParam part;
        row.set(part, "Name");
        for (const std::string& other :
             {std::string("name"), std::string("Name "), std::string("Nam"), std::string("Name\0", 5)}) {
            TypeParam changed;
            row.set(changed, other);
            EXPECT_FALSE(part == changed) << row.name << " " << other;
        }
    }
}

TYPED_TEST(CallDetailPart, ComparesEnumerationsByValueAlsoOutsideTheirNames) {
    for (const auto& row : this->members) {
        if (row.form == rules::Form::text) {
            continue;
        }
        TypeParam part;
        TypeParam other;
        row.set(part, "99");
        row.set(other, "-1");
        EXPECT_FALSE(part == other) << row.name;
        row.set(other, "99");
        EXPECT_TRUE(part == other) << row.name;
    }
}

TYPED_TEST(CallDetailPart, IsCopiedMemberByMember) {
    const TypeParam part = filled(this->members);

    TypeParam copy(part);
    TypeParam assigned;
    assigned = part;

    EXPECT_EQ(describe(copy, this->members), describe(part, this->members));
    EXPECT_EQ(describe(assigned, this->members), describe(part, this->members));
    copy.reset();
    assigned.reset();
    EXPECT_EQ(describe(part, this->members), describe(filled(this->members), this->members));
}

TYPED_TEST(CallDetailPart, HasTheComparisonInSlot0AndResetInSlot1) {
    EXPECT_EQ((slotOfEquality<TypeParam, TypeParam>()), 0u);
    EXPECT_EQ(slotOf(&TypeParam::reset), 1u);
}

template <class Part>
class WithOwnReset : public Part {
public:
    void reset() override {}
};

template <class Part>
class WithOwnComparison : public Part {
public:
    bool operator==(const Part&) const override { return false; }
};

TYPED_TEST(CallDetailPart, LetsEitherOperationBeOverridden) {
    const TypeParam part;
    const WithOwnReset<TypeParam> withReset;
    const WithOwnComparison<TypeParam> withComparison;

    EXPECT_EQ(changedSlots(&part, &withReset, 2), std::vector<std::size_t>{1});
    EXPECT_EQ(changedSlots(&part, &withComparison, 2), std::vector<std::size_t>{0});
}

TYPED_TEST(CallDetailPart, HasNoVirtualDestructor) {
    EXPECT_TRUE(std::is_polymorphic<TypeParam>::value);
    EXPECT_FALSE(std::has_virtual_destructor<TypeParam>::value);
}

}  // namespace
