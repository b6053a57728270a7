#include "NumberMatcher.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace calljournal;

namespace {

TEST(NumberMatcher, OnePartysNumberIsTheSameHoweverItWasSignalled) {
    const NumberMatcher british("GB");
    for (const char* number : {"+442079460123", "+44 20 7946 0123", "00442079460123", "0044 (0)20 7946 0123",
                               "020 7946 0123", "(020) 7946-0123"}) {
        EXPECT_EQ(british(number), "+442079460123") << number;
    }
}

TEST(NumberMatcher, ANationalNumberIsReadAsOneOfTheRegion) {
    EXPECT_EQ(NumberMatcher("DE")("030 1234567"), "+49301234567");
    EXPECT_EQ(NumberMatcher("FR")("01 23 45 67 89"), "+33123456789");
    EXPECT_NE(NumberMatcher("DE")("030 1234567"), NumberMatcher("GB")("030 1234567"));
}

TEST(NumberMatcher, AnInternalExtensionMatchesOnlyItself) {
    const NumberMatcher german("DE");
    EXPECT_EQ(german("4711"), "4711");
    EXPECT_EQ(german("47-11"), "4711");
    EXPECT_EQ(german("0"), "0");
    EXPECT_NE(german("4711"), german("+49 30 1234711"));
    EXPECT_NE(german("4711"), german("04711"));
}

TEST(NumberMatcher, ServiceCodesAndNamesStayThemselves) {
    const NumberMatcher german("DE");
    EXPECT_EQ(german("*21#"), "*21#");
    EXPECT_EQ(german("12+34"), "1234");
    EXPECT_EQ(german("anonymous"), "anonymous");
    EXPECT_EQ(german(""), "");
}

TEST(NumberMatcher, WithoutARegionOnlyInternationalNumbersAreKnown) {
    const NumberMatcher anywhere("ZZ");
    EXPECT_EQ(anywhere("+44 20 7946 0123"), "+442079460123");
    EXPECT_EQ(anywhere("020 7946 0123"), "02079460123");
}

TEST(NumberMatcher, ATextThatIsTooLongForANumberStaysItself) {
    const std::string text = "+49 30 " + std::string(1 << 20, '1');
    EXPECT_EQ(NumberMatcher("DE")(text), text);
}

TEST(NumberMatcher, ATextWithLettersOrAnAtSignIsAPartyOfItsOwn) {
    const NumberMatcher german("DE");
    EXPECT_EQ(german("SIP:Bob@Example.COM"), "sip:Bob@example.com");
    EXPECT_EQ(german("Bob@Example.COM:5060;User=Phone"), "Bob@example.com:5060;User=Phone");
    EXPECT_EQ(german("sip:+49301234567@Example.com"), "sip:+49301234567@example.com");
    EXPECT_EQ(german("030@1234567"), "030@1234567");
    EXPECT_EQ(german("TEL:+49 30 1234567"), "tel:+49 30 1234567");
    EXPECT_EQ(german("030 1234567 ext. 12"), "030 1234567 ext. 12");
    EXPECT_EQ(german("Raum 030 1234567"), "Raum 030 1234567");
    EXPECT_EQ(german("Зал 030 1234567"), "Зал 030 1234567");
}

TEST(NumberMatcher, ReadsTheDigitsAndDashesOfEveryScript) {
    EXPECT_EQ(NumberMatcher("JP")("０３ー１２３４ー５６７８"), "+81312345678");
    EXPECT_EQ(NumberMatcher("EG")("٠٢٢٧٩٥١٠٣٠"), NumberMatcher("EG")("0227951030"));
    EXPECT_EQ(NumberMatcher("ZZ")("＋４４ ２０ ７９４６ ０１２３"), "+442079460123");
}

TEST(NumberMatcher, ReadsEachNumberForItsOwnRegion) {
    EXPECT_EQ(NumberMatcher("DE")("030 7654321"), "+49307654321");
    EXPECT_EQ(NumberMatcher("GB")("030 7654321"), "0307654321");
    EXPECT_EQ(NumberMatcher("DE")("030 7654321"), "+49307654321");
}

TEST(NumberMatcher, KnowsMoreNumbersThanItRemembers) {
    const NumberMatcher anywhere("ZZ");
    for (int i = 0; i < 300000; ++i) {
        const std::string number = std::to_string(i);
        ASSERT_EQ(anywhere(number + '-'), number);
    }
}

TEST(Region, ComesFromTheLocale) {
    ::unsetenv("LC_TELEPHONE");
    ::setenv("LC_ALL", "de_AT.UTF-8", 1);
    EXPECT_EQ(localeRegion(), "AT");
    ::setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_EQ(localeRegion(), "ZZ");
    ::setenv("LC_ALL", "", 1);
    ::setenv("LANG", "en_GB", 1);
    EXPECT_EQ(localeRegion(), "GB");
    for (const char* locale : {"de_", "de_D", "de_QQ", "de", "POSIX"}) {
        ::setenv("LANG", locale, 1);
        EXPECT_EQ(localeRegion(), "ZZ") << locale;
    }
    ::unsetenv("LANG");
    EXPECT_EQ(localeRegion(), "ZZ");
    ::unsetenv("LC_ALL");
}

TEST(Region, IsKnownByItsCode) {
    EXPECT_TRUE(isKnownRegion("DE"));
    EXPECT_TRUE(isKnownRegion("ZZ"));
    EXPECT_FALSE(isKnownRegion("de"));
    EXPECT_FALSE(isKnownRegion("Germany"));
}

}  // namespace
