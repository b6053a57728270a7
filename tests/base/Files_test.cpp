#include "Files.h"

#include <fstream>
#include <gtest/gtest.h>

#include "RunCommand.h"

namespace calljournal {

namespace {

std::string problemOf(std::istream& in) {
    try {
        readAll(in);
        return {};
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(Files, AreReadWholeHoweverLargeTheyAre) {
    const TemporaryFolder folder;
    const std::string file = folder.write("large", "x");
    std::ofstream(file).seekp(static_cast<std::streamoff>(mostInput) + 10).put('y');
    std::ifstream in(file);
    in.get();
    const std::string text = readAll(in);
    EXPECT_EQ(text.size(), mostInput + 10);
    EXPECT_EQ(text.back(), 'y');
}

TEST(Files, WithoutAnEndAreReadToALimit) {
    std::ifstream zeros("/dev/zero");
    EXPECT_EQ(problemOf(zeros), "has more than 256 MiB, which is as much as is read");
}

TEST(Files, ThatCannotBeReadAreNoEmptyOnes) {
    std::ifstream none("/no/such/file");
    EXPECT_EQ(problemOf(none), "cannot be read (No such file or directory)");
    std::ifstream folder("/tmp");
    EXPECT_EQ(problemOf(folder), "cannot be read (Is a directory)");
}

}  // namespace

}  // namespace calljournal
