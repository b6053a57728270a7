#include <cstddef>
#include <gtest/gtest.h>
#include <iostream>
#include <list>
#include <string>
#include <vector>

#include "FakePlatform.h"
#include "HostileTexts.h"
#include "Kinds.h"
#include "Rounds.h"

/// The library's codecs compared with the literal rules on random texts.
namespace {

constexpr unsigned seed = 4711;

template <class Kind>
class RandomCodecOfKind : public ::testing::Test {
protected:
    RandomCodecOfKind() : texts(seed, Kind::format()) {
        fakePlatform().reset();
        std::cout << "seed " << seed << '\n';
    }

    std::string randomText() { return texts.below(2) == 0 ? texts.body(freshItem, freshCall) : texts.soup(); }

    HostileTexts texts;
    const rules::Members freshItem = describe(typename Kind::Item(), Kind::itemMembers());
    const rules::Members freshCall = describeCall<Kind>(typename Kind::Info());
};

TYPED_TEST_SUITE(RandomCodecOfKind, AllKinds, KindNames);

TYPED_TEST(RandomCodecOfKind, ReadsEntriesByTheLiteralRules) {
    const auto filledEntry = filledItem<TypeParam>();
    std::size_t withCalls = 0;
    for (unsigned round = 0; round < rounds(8000); ++round) {
        const std::string text = this->randomText();
        auto item = filledEntry;
        rules::Entry expected = describeEntry<TypeParam>(item);
        TypeParam::decode(text.c_str(), item);
        rules::decodeItem(TypeParam::format(), text, this->freshCall, expected);
        ASSERT_EQ(describeEntry<TypeParam>(item), expected) << "seed " << seed << " round " << round << "\n" << text;
        withCalls += expected.calls.empty() ? 0 : 1;
    }
    EXPECT_GT(withCalls, rounds(1000));
}

TYPED_TEST(RandomCodecOfKind, ReadsListsOfCallsByTheLiteralRules) {
    std::size_t longLists = 0;
    for (unsigned round = 0; round < rounds(12000); ++round) {
        const std::string text = this->randomText();
        std::list<typename TypeParam::Info> calls(1);
        std::vector<rules::Members> expected;
        const bool found = TypeParam::decodeCalls(text.c_str(), calls);
        ASSERT_EQ(found, rules::decodeCalls(TypeParam::format(), text, this->freshCall, expected))
            << "seed " << seed << " round " << round << "\n"
            << text;
        ASSERT_EQ(describeCalls<TypeParam>(calls), expected) << "seed " << seed << " round " << round << "\n" << text;
        longLists += expected.size() > 1 ? 1 : 0;
    }
    EXPECT_GT(longLists, rounds(1000));
}

TYPED_TEST(RandomCodecOfKind, ReadsSingleCallsByTheLiteralRules) {
    const auto filledInfo = filledCall<TypeParam>();
    for (unsigned round = 0; round < rounds(15000); ++round) {
        const std::string text = this->randomText();
        auto info = filledInfo;
        rules::Members expected = describeCall<TypeParam>(info);
        TypeParam::decodeCall(text.c_str(), info);
        rules::decodeCall(TypeParam::format(), text, expected);
        ASSERT_EQ(describeCall<TypeParam>(info), expected) << "seed " << seed << " round " << round << "\n" << text;
    }
}

TYPED_TEST(RandomCodecOfKind, WritesEntriesByTheLiteralRules) {
    const auto itemMembers = TypeParam::itemMembers();
    const auto infoMembers = TypeParam::infoMembers();
    for (unsigned round = 0; round < rounds(3000); ++round) {
        typename TypeParam::Item item;
        for (const auto& row : itemMembers) {
            row.set(item, row.form == rules::Form::text ? this->texts.value() : std::to_string(this->texts.below(2)));
        }
        for (std::size_t count = this->texts.below(4); count > 0; --count) {
            typename TypeParam::Info info;
            for (const auto& row : infoMembers) {
                row.set(info, row.form == rules::Form::text   ? this->texts.value()
                              : row.form == rules::Form::flag ? std::to_string(this->texts.below(2))
                                                              : std::to_string(this->texts.below(10)));
            }
            item.appendCallInfoToList(info);
        }
        const rules::Entry entry = describeEntry<TypeParam>(item);
        for (const bool onlyUniqueId : {false, true}) {
            ASSERT_EQ(TypeParam::encode(item, onlyUniqueId),
                      rules::encodeItem(TypeParam::format(), entry, onlyUniqueId))
                << "seed " << seed << " round " << round;
        }
    }
}

class RandomPrimitives : public ::testing::Test {
protected:
    RandomPrimitives() : texts(seed, rules::receivedFormat()) { std::cout << "seed " << seed << '\n'; }

    std::string tag() {
        static const std::vector<std::string> tags = {"Item", "LogList", "Number", "NumberType",
                                                      "A",    "",        "Item>",  "It"};
        return tags[texts.below(tags.size())];
    }

    HostileTexts texts;
};

TEST_F(RandomPrimitives, FindValuesByTheLiteralRules) {
    for (unsigned round = 0; round < rounds(40000); ++round) {
        const std::string text = texts.soup();
        const std::string name = tag();
        const std::size_t cursor = texts.below(3) == 0 ? texts.below(text.size() + 1) : 0;
        std::string out = "before";
        std::string expected = "before";
        const char* const next = Helper::getXMLValue2(text.c_str() + cursor, name.c_str(), out);
        const std::size_t expectedNext = rules::value(text, cursor, name, expected);
        ASSERT_EQ(out, expected) << "seed " << seed << " round " << round << " <" << name << "> from " << cursor
                                 << " in\n"
                                 << text;
        ASSERT_EQ(static_cast<std::size_t>(next - text.c_str()), expectedNext)
            << "seed " << seed << " round " << round << " <" << name << "> from " << cursor << " in\n"
            << text;

        bool flag = round % 2 == 0;
        bool expectedFlag = flag;
        const char* const nextFlag = Helper::getXMLValue2(text.c_str() + cursor, name.c_str(), flag);
        ASSERT_EQ(static_cast<std::size_t>(nextFlag - text.c_str()), rules::flag(text, cursor, name, expectedFlag));
        ASSERT_EQ(flag, expectedFlag) << text;
    }
}

TEST_F(RandomPrimitives, CutElementsOutByTheLiteralRules) {
    std::size_t cuts = 0;
    for (unsigned round = 0; round < rounds(40000); ++round) {
        std::string text = texts.soup();
        const std::string before = text;
        std::string expectedText = text;
        const std::string name = tag();
        // Twice, since a text may grow for ever.
        for (int times = 0; times < 2; ++times) {
            std::string out = "before";
            std::string expected = "before";
            const bool found = Helper::getAndRemoveXMLValue(text, name.c_str(), out);
            ASSERT_EQ(found, rules::cutOut(expectedText, name, expected))
                << "seed " << seed << " round " << round << " <" << name << "> in\n"
                << before;
            ASSERT_EQ(out, expected) << "seed " << seed << " round " << round << " <" << name << "> in\n" << before;
            ASSERT_EQ(text, expectedText) << "seed " << seed << " round " << round << " <" << name << "> in\n"
                                          << before;
            cuts += found ? 1 : 0;
        }
    }
    EXPECT_GT(cuts, rounds(5000));
}

TEST_F(RandomPrimitives, FindTheMethodByTheLiteralRules) {
    static const std::vector<std::string> pieces = {"<Method>", "</Method>", "<Method", "Method>", "x", "<", "/"};
    for (unsigned round = 0; round < rounds(20000); ++round) {
        std::string text;
        for (std::size_t count = texts.below(8); count > 0; --count) {
            text += pieces[texts.below(pieces.size())];
        }
        ASSERT_EQ(Helper::getMethodFromXMLMsg(text), rules::method(text)) << text;
    }
}

}  // namespace
