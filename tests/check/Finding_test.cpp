#include "Finding.h"

#include <gtest/gtest.h>

#include "MessageCheck.h"

namespace calljournal {

namespace {

/// Makes visible what each value is.
std::string marked(std::string_view value, ValueUse use) {
    return std::string(use == ValueUse::text ? "T(" : use == ValueUse::id ? "I(" : "N(").append(value).append(")");
}

TEST(Finding, LeavesItToTheFrontEndHowAValueIsShown) {
    const Finding finding{FindingKind::noFlag, {7, 2, "1\n", 3, "Viewed"}, {"\x1b", "False"}};
    EXPECT_EQ(sentenceOf(finding, &marked),
              "entry 2 (UniqueId I(1\n)), call 3: N(Viewed): \"T(\x1b)\" is neither True nor False; it is read as "
              "N(False)");
}

TEST(Finding, LeavesOutWhatItHasNoValueFor) {
    EXPECT_EQ(sentenceOf({FindingKind::noFlag, {}, {"x"}}, &marked), "\"T(x)\" is neither True nor False");
    EXPECT_EQ(sentenceOf({FindingKind::repeatedForDecoder, {}, {"A", "1"}}, &marked),
              "N(A) stands here once more; the decoder takes the first: \"T(1)\" is read");
}

TEST(Finding, DistinguishesOneFromMany) {
    EXPECT_EQ(sentenceOf({FindingKind::otherCalls, {}, {"1", "2"}}, &marked), "here is N(1) call, but N(2) are read");
    EXPECT_EQ(sentenceOf({FindingKind::otherCalls, {}, {"0", "1"}}, &marked), "here are N(0) calls, but N(1) is read");
}

TEST(Finding, SaysWhatATextWithAnErrorIsReadAs) {
    Finding finding{FindingKind::rawMarkup, {}, {"A", "b"}, Outcome::unchanged};
    EXPECT_EQ(sentenceOf(finding, &marked), "N(A) holds the raw markup <N(b)>; it is still read as it stands");
    finding.outcome = Outcome::changed;
    finding.values.emplace_back("1");
    EXPECT_EQ(sentenceOf(finding, &marked), "N(A) holds the raw markup <N(b)>; what is read is \"T(1)\"");
}

TEST(Finding, HasTheSeverityOfItsKind) {
    EXPECT_EQ((Finding{FindingKind::rawAmpersand, {}, {}}.severity()), Severity::quirk);
    EXPECT_EQ((Finding{FindingKind::unclosedElement, {}, {}}.severity()), Severity::damage);
}

TEST(Finding, OfAMessageHasItsPlaceAndRawValues) {
    const CheckedMessage checked =
        checkMessage("<Entry><UniqueId>7</UniqueId><Viewed>\x1byes</Viewed></Entry>", "missed");
    ASSERT_EQ(checked.findings.size(), 2u);
    const Finding& flag = checked.findings[0];
    EXPECT_EQ(flag.kind, FindingKind::noFlag);
    EXPECT_EQ(flag.place.at, 29u);
    EXPECT_EQ(flag.place.entry, 1u);
    EXPECT_EQ(flag.place.uniqueId, "7");
    EXPECT_EQ(flag.place.call, 0u);
    EXPECT_EQ(flag.place.element, "Viewed");
    EXPECT_EQ(flag.values, (std::vector<std::string>{"\x1byes", "False"}));
    EXPECT_EQ(checked.findings[1].kind, FindingKind::forbiddenByte);
    EXPECT_EQ(checked.findings[1].outcome, Outcome::changed);
}

}  // namespace

}  // namespace calljournal
