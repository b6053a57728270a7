#include "StorageSpace.h"

#include <cstdint>
#include <gtest/gtest.h>

#include "FakePlatform.h"

// The function under its plain name, as a caller without our header finds it.
bool byPlainName(const std::string& path) __asm__("hasPhoneAvailableMemorySpace");

namespace {

bool hasSpace(std::uint32_t freeSpace, std::uint32_t fileSize) {
    fakePlatform().reset();
    fakePlatform().freeSpace = freeSpace;
    fakePlatform().fileSizes["contacts.csv"] = fileSize;
    return hasPhoneAvailableMemorySpace("contacts.csv");
}

TEST(StorageSpace, AsksForMoreThanTheMarginBeyondTwiceTheFile) {
    struct {
        std::uint32_t freeSpace;
        std::uint32_t fileSize;
        bool expected;
    } const rows[] = {
        {10000000, 0, true},
        {9999999, 0, false},
        {0, 0, false},
        {30000000, 10000000, true},
        {29999999, 10000000, false},
        {4294967295U, 0, true},
        {4294967295U, 2142483647U, true},   // 10000001 left
        {4294967295U, 2142483648U, false},  // 9999999 left
    };
    for (const auto& row : rows) {
        EXPECT_EQ(hasSpace(row.freeSpace, row.fileSize), row.expected) << row.freeSpace << " " << row.fileSize;
    }
}

TEST(StorageSpace, LetsAFileThroughWhoseDoubleExceedsTheFreeSpace) {
    EXPECT_TRUE(hasSpace(1000, 1000));
    EXPECT_TRUE(hasSpace(0, 1));
}

TEST(StorageSpace, DoublesModuloTheUnsignedRange) {
    EXPECT_FALSE(hasSpace(9999999, 2147483648U));  // Twice the size is 0 again.
    EXPECT_TRUE(hasSpace(10000000, 2147483648U));
    EXPECT_FALSE(hasSpace(10000000, 2147483649U));
}

TEST(StorageSpace, TakesAMissingFileForEmpty) {
    fakePlatform().reset();
    fakePlatform().freeSpace = 10000000;
    EXPECT_TRUE(hasPhoneAvailableMemorySpace("missing.csv"));
    fakePlatform().freeSpace = 9999999;
    EXPECT_FALSE(hasPhoneAvailableMemorySpace("missing.csv"));
}

TEST(StorageSpace, AsksForTheUserData) {
    fakePlatform().reset();
    hasPhoneAvailableMemorySpace("contacts.csv");
    EXPECT_EQ(fakePlatform().askedDirectory, "/data/");
}

TEST(StorageSpace, IsExportedUnderItsPlainName) {
    fakePlatform().reset();
    EXPECT_TRUE(byPlainName("contacts.csv"));
}

}  // namespace
