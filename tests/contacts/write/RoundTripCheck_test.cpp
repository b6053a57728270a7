#include "RoundTripCheck.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <system_error>

#include "PhoneFile.h"
#include "RunCommand.h"

namespace calljournal {
namespace {

namespace fs = std::filesystem;

/// Files of one contact each, as they are written for a phone.
class RoundTripCheckTest : public ::testing::Test {
protected:
    /// Asks for the check of a file whose contact is called `name`, where `noted` is what it should be.
    std::string checkFile(RoundTripCheck& check, std::uint64_t number, const std::string& name,
                          const std::string& noted) {
        SpooledContact contact;
        contact.record = number;
        contact.contact.lastName = name;
        std::string text = phoneFileHeader();
        appendPhoneLine(text, contact.contact);
        contact.contact.lastName = noted;
        check.note(contact);
        return check.check(folder_.write(std::to_string(number) + ".csv", text));
    }

    static std::string place(const ContactOrigin& origin) { return "record " + std::to_string(origin.record); }

    const ::TemporaryFolder folder_;
};

TEST_F(RoundTripCheckTest, FindsNothingWrongWithFilesThatAreAsWritten) {
    RoundTripCheck check(100, 0, place);
    for (std::uint64_t number = 1; number <= 50; ++number) {
        ASSERT_EQ(checkFile(check, number, "Schmidt", "Schmidt"), "");
    }
    EXPECT_EQ(check.finish(), "");
    EXPECT_TRUE(fs::exists(folder_.file("50.csv")));
}

TEST_F(RoundTripCheckTest, ReportsTheFirstFileThatDiffers) {
    RoundTripCheck check(100, 0, place);
    for (std::uint64_t number = 1; number <= 20; ++number) {
        ASSERT_EQ(checkFile(check, number, "Schmidt", "Schmidt"), "");
    }
    // Reported at once if the check was quicker than the request to return, else at the end.
    const std::string atOnce = checkFile(check, 21, "Schmidt", "Meyer");
    EXPECT_EQ(atOnce.empty() ? check.finish() : atOnce,
              "record 21: field lastName was written as \"Meyer\" and is read as \"Schmidt\"");
}

TEST_F(RoundTripCheckTest, LetsNobodyGoOnBehindAFileThatDiffers) {
    RoundTripCheck check(100, 0, place);
    std::string difference;
    std::uint64_t number = 0;
    for (; difference.empty() && number < 20; ++number) {
        difference = checkFile(check, number, "Schmidt", number == 0 ? "Meyer" : "Becker");
    }
    EXPECT_EQ(difference, "record 0: field lastName was written as \"Meyer\" and is read as \"Schmidt\"");
    EXPECT_LE(number, 5u);
}

TEST_F(RoundTripCheckTest, ThrowsWhatKeptACheckFromBeingMade) {
    RoundTripCheck check(100, 0, place);
    const auto checkAndFinish = [&] {
        check.check(folder_.file("missing.csv"));
        check.finish();
    };
    EXPECT_THROW(checkAndFinish(), fs::filesystem_error);
}

TEST_F(RoundTripCheckTest, DistinguishesAFullFolderFromAWrongFile) {
    // A file that leaves a phone too little room beside itself; its blocks take none.
    const std::uintmax_t mostReported = std::numeric_limits<std::uint32_t>::max();
    const std::uintmax_t room = std::min(fs::space(fs::temp_directory_path()).available, mostReported);
    const std::string file = folder_.write("large.csv", "");
    fs::resize_file(file, room / 2 - std::min<std::uintmax_t>(room / 2, 2500000));
    RoundTripCheck check(100, 0, place);
    try {
        check.check(file);
        check.finish();
        FAIL() << "nothing is thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::error_code(ENOSPC, std::generic_category()));
        EXPECT_STREQ(error.what(), "temporary file: No space left on device");
    }
    EXPECT_TRUE(fs::exists(file));
}

}  // namespace
}  // namespace calljournal
