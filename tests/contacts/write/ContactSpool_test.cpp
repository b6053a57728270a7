#include "ContactSpool.h"

#include <gtest/gtest.h>
#include <random>
#include <system_error>
#include <unordered_map>

#include "ContactFields.h"
#include "LargestFile.h"
#include "TemporaryFolder.h"

namespace calljournal {
namespace {

SpooledContact contactNumber(unsigned number) {
    SpooledContact contact;
    contact.contact.lastName = "Name " + std::to_string(number);
    contact.contact.address2 = std::string(number % 256, 'x');
    contact.contact.defaultDial = static_cast<int>(number % 5);
    contact.contact.source = static_cast<Contact::eOrderedContactSource>(3);
    contact.isJoinedAddress = number % 2 == 1;
    contact.file = number % 3;
    contact.record = number;
    contact.firstLine = 2 * number;
    contact.lastLine = 2 * number + 1;
    return contact;
}

void expectSame(const SpooledContact& one, const SpooledContact& other) {
    EXPECT_TRUE(haveSameFields(one.contact, other.contact)) << one.contact.lastName << " " << other.contact.lastName;
    EXPECT_EQ(one.contact.source, other.contact.source);
    EXPECT_EQ(one.isJoinedAddress, other.isJoinedAddress);
    EXPECT_EQ(one.file, other.file);
    EXPECT_EQ(one.record, other.record);
    EXPECT_EQ(one.firstLine, other.firstLine);
    EXPECT_EQ(one.lastLine, other.lastLine);
}

/// So little that a few contacts fill it.
constexpr std::size_t littleMemory = 4096;

TEST(ContactSpool, GivesContactsBackInTheirOrder) {
    ContactSpool spool(littleMemory);
    for (unsigned i = 0; i < 2000; ++i) {
        spool.add(contactNumber(i));
    }
    unsigned number = 0;
    SpooledContact contact;
    for (std::uint64_t place = 0; place != spool.end(); ++number) {
        place = spool.read(place, contact);
        expectSame(contact, contactNumber(number));
    }
    EXPECT_EQ(number, 2000u);
}

TEST(ContactSpool, GivesContactsBackFromAnyPlaceWhileOthersAreAdded) {
    const unsigned seed = 7;
    std::mt19937 random(seed);
    ContactSpool spool(littleMemory);
    std::vector<std::uint64_t> places;
    for (unsigned i = 0; i < 3000; ++i) {
        places.push_back(spool.add(contactNumber(i)));
        const auto any = static_cast<unsigned>(random() % places.size());
        SpooledContact contact;
        spool.read(places[any], contact);
        expectSame(contact, contactNumber(any));
    }
}

TEST(IdentityTable, FindsExactlyTheContactsThatAreThere) {
    ContactSpool spool;
    IdentityTable table(spool);
    std::unordered_map<std::string, std::uint64_t> slow;
    const unsigned seed = 11;
    std::mt19937 random(seed);
    for (int i = 0; i < 5000; ++i) {
        const SpooledContact contact = contactNumber(static_cast<unsigned>(random() % 3000));
        const std::string identity(spool.identityOf(contact.contact));
        std::uint64_t place = 0;
        const auto known = slow.find(identity);
        ASSERT_EQ(table.find(identity, place), known != slow.end()) << "seed " << seed;
        if (known != slow.end()) {
            ASSERT_EQ(place, known->second);
        } else {
            slow[identity] = spool.add(contact);
        }
    }
}

TEST(IdentityTable, DistinguishesContactsWhoseTextsOnlyLieOtherwise) {
    Contact one;
    one.firstName = "ab";
    Contact other;
    other.firstName = "a";
    other.lastName = "b";
    Contact third = one;
    third.defaultDial = 1;
    ContactSpool spool;
    const std::string identity(spool.identityOf(one));
    EXPECT_NE(spool.identityOf(other), identity);
    EXPECT_NE(spool.identityOf(third), identity);
}

TEST(SpoolFile, ThrowsIfThereIsNoRoom) {
    for (const char* folder : {"/proc/nonexistent", "/proc"}) {
        ::setenv("TMPDIR", folder, 1);
        EXPECT_THROW(SpoolFile(), std::system_error) << folder;
        EXPECT_THROW(TemporaryFolder(), std::system_error) << folder;
        ::unsetenv("TMPDIR");
    }
}

TEST(SpoolFile, ThrowsIfTheDiskIsFull) {
    const LargestFile limit(100000);
    SpoolFile file(littleMemory);
    EXPECT_THROW(
        {
            for (int i = 0; i < 200; ++i) {
                file.add(std::string(1000, 'x'));
            }
        },
        std::system_error);
}

}  // namespace
}  // namespace calljournal
