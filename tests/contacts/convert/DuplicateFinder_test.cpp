#include "DuplicateFinder.h"

#include <gtest/gtest.h>

#include "ContactFields.h"

namespace calljournal {
namespace {

Contact contact(const std::string& firstName, const std::string& lastName, const std::string& business1 = "",
                const std::string& email1 = "") {
    Contact made;
    made.firstName = firstName;
    made.lastName = lastName;
    made.business1 = business1;
    made.email1 = email1;
    made.defaultDial = business1.empty() ? 0 : 2;
    return made;
}

Contact company(const std::string& name, const std::string& business1) {
    Contact made = contact("", "", business1);
    made.company1 = name;
    return made;
}

/// The pairs among `contacts` as "0-2 +49...", by their numbers in the list.
std::vector<std::string> pairsOf(const std::vector<Contact>& contacts, std::size_t partSize = 1u << 20) {
    ContactSpool spool;
    DuplicateFinder near("DE");
    std::vector<std::uint64_t> places;
    for (const Contact& one : contacts) {
        SpooledContact spooled;
        spooled.contact = one;
        places.push_back(spool.add(spooled));
        near.add(one, places.back());
    }
    const auto numberOf = [&](std::uint64_t place) {
        return std::to_string(std::find(places.begin(), places.end(), place) - places.begin());
    };
    std::vector<std::string> pairs;
    near.find(
        spool,
        [&](const NearPair& pair) {
            pairs.push_back(numberOf(pair.earlier) + '-' + numberOf(pair.later) + ' ' + pair.shared);
        },
        partSize);
    return pairs;
}

typedef std::vector<std::string> Pairs;

TEST(NearPairs, ShareANumberHoweverItIsWritten) {
    EXPECT_EQ(pairsOf({contact("Anna", "Schmidt", "030 2345678"), contact("Ben", "Meyer", "030 2345678"),
                       contact("anna", "SCHMIDT", "+49 (30) 234-5678")}),
              Pairs{"0-2 +49302345678"});
}

TEST(NearPairs, ShareAMailAddressWhateverItsCase) {
    EXPECT_EQ(
        pairsOf({contact("Anna", "Schmidt", "", "Anna@Example.com"), contact("A.", "Schmidt", "", "anna@example.com")}),
        Pairs{"0-1 anna@example.com"});
}

TEST(NearPairs, AreReportedOnceForAllThatTheyShare) {
    Contact one = contact("Anna", "Schmidt", "030 2345678", "anna@example.com");
    one.private1 = "030 2345678";
    Contact other = one;
    other.mobile1 = "0170 2345678";
    EXPECT_EQ(pairsOf({one, other}), Pairs{"0-1 +49302345678"});
}

TEST(NearPairs, AreNotTwoPeopleOfOneName) {
    EXPECT_EQ(pairsOf({contact("Anna", "Schmidt", "030 2345678"), contact("Anna", "Schmidt", "030 2345679")}), Pairs());
    EXPECT_EQ(pairsOf({contact("Anna", "Schmidt"), contact("Anna", "Schmidt")}), Pairs());
    EXPECT_EQ(pairsOf({contact("Anna", "Schmidt", "030 2345678"), contact("Ben", "Meyer", "030 2345678")}), Pairs());
    EXPECT_EQ(pairsOf({contact("Anna", "Schmidt", "040 2345678"), contact("Anna", "Schmidt", "030 2345678")}), Pairs())
        << "the last digits alone do not count";
    EXPECT_EQ(
        pairsOf({contact("Anna", "Schmidt", "030 2345678 ext. 1"), contact("Anna", "Schmidt", "030 2345678 ext. 2")}),
        Pairs());
}

TEST(NearPairs, AreFoundPartByPart) {
    std::vector<Contact> contacts;
    Pairs expected;
    for (int i = 0; i < 50; ++i) {
        contacts.push_back(contact("Anna", "Schmidt", "030 23456" + std::to_string(10 + i)));
        contacts.push_back(contact("Anna", "", "+49 30 23456" + std::to_string(10 + i)));
        contacts.back().lastName = "Schmidt";
        expected.push_back(std::to_string(2 * i) + '-' + std::to_string(2 * i + 1) + " +493023456" +
                           std::to_string(10 + i));
    }
    Pairs found = pairsOf(contacts, 200);
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(found, expected);
}

TEST(NearPairs, OfOneNumberAreComparedInGroups) {
    std::vector<Contact> contacts(5000, contact("Anna", "Schmidt", "030 2345678"));
    EXPECT_GT(pairsOf(contacts).size(), 4998u);
    EXPECT_LT(pairsOf(contacts).size(), 8u * 5000u);
}

TEST(Names, AreCompatibleIfNothingSpeaksAgainstOnePerson) {
    EXPECT_TRUE(areNamesCompatible(contact("Anna", "Schmidt"), contact("ANNA", " schmidt")));
    EXPECT_TRUE(areNamesCompatible(contact("Anna", "Schmidt"), contact("", "Schmidt")));
    EXPECT_TRUE(areNamesCompatible(contact("Anna", "Schmidt"), contact("Anna", "")));
    EXPECT_TRUE(areNamesCompatible(contact("A.", "Schmidt"), contact("Anna", "Schmidt")));
    EXPECT_TRUE(areNamesCompatible(contact("Özil", "Schmidt"), contact("ö", "Schmidt")));
    EXPECT_TRUE(areNamesCompatible(company("Smith", "1"), company("SMITH", "2")));
    EXPECT_FALSE(areNamesCompatible(contact("Anna", "Schmidt"), contact("Ben", "Schmidt")));
    EXPECT_FALSE(areNamesCompatible(contact("Anna", "Schmidt"), contact("Anna", "Meyer")));
    EXPECT_FALSE(areNamesCompatible(contact("Anna", ""), contact("", "Schmidt")));
    EXPECT_FALSE(areNamesCompatible(contact("B.", "Schmidt"), contact("Anna", "Schmidt")));
    EXPECT_FALSE(areNamesCompatible(company("Smith", "1"), company("Smith & Co", "1")));
    EXPECT_FALSE(areNamesCompatible(company("", "1"), company("", "1")));
    EXPECT_FALSE(areNamesCompatible(contact("Anna", "Schmidt"), company("Smith", "1")));
}

TEST(MergedContact, HoldsAllThatBothHold) {
    Contact one = contact("A.", "Schmidt", "030 2345678");
    Contact other = contact("Anna", "SCHMIDT", "+49 30 2345678", "anna@example.com");
    other.business2 = "030 2345679";
    other.private1 = "030 2345680";
    one.company1 = "Schmidt & Co";
    std::string_view conflict;
    const auto both = DuplicateFinder("DE").merged(one, other, conflict);
    ASSERT_TRUE(both);
    EXPECT_EQ(both->firstName, "Anna");
    EXPECT_EQ(both->lastName, "Schmidt");
    EXPECT_EQ(both->business1, "030 2345678");
    EXPECT_EQ(both->business2, "030 2345679");
    EXPECT_EQ(both->private1, "030 2345680");
    EXPECT_EQ(both->email1, "anna@example.com");
    EXPECT_EQ(both->company1, "Schmidt & Co");
    EXPECT_EQ(both->defaultDial, 2);
    const auto reversed = DuplicateFinder("DE").merged(other, one, conflict);
    ASSERT_TRUE(reversed);
    EXPECT_EQ(reversed->firstName, "Anna");
}

TEST(MergedContact, DerivesItsDefaultNumberAnew) {
    Contact one = contact("Anna", "Schmidt", "", "anna@example.com");
    one.mobile1 = "0170 2345678";
    one.defaultDial = 4;
    std::string_view conflict;
    const auto both =
        DuplicateFinder("DE").merged(one, contact("Anna", "Schmidt", "030 2345678", "anna@example.com"), conflict);
    ASSERT_TRUE(both);
    EXPECT_EQ(both->defaultDial, 2);
}

TEST(MergedContact, IsNoneWhereATextWouldBeLost) {
    std::string_view conflict;
    EXPECT_FALSE(DuplicateFinder("DE").merged(contact("Anna", "Schmidt", "1", "a@example.com"),
                                              contact("Anna", "Schmidt", "1", "b@example.com"), conflict));
    EXPECT_EQ(conflict, "email1");
    Contact one = contact("Anna", "Schmidt", "1");
    one.mobile1 = "0170 1";
    Contact other = contact("Anna", "Schmidt", "1");
    other.mobile1 = "0170 2";
    EXPECT_FALSE(DuplicateFinder("DE").merged(one, other, conflict));
    EXPECT_EQ(conflict, "mobile1");
}

}  // namespace
}  // namespace calljournal
