#include "PrivateCopy.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "RunCommand.h"

namespace {

using calljournal::CopyOptions;
using calljournal::copyPrivately;
using calljournal::CopyResult;

class PrivateCopy : public ::testing::Test {
protected:
    CopyResult copy(const std::string& source) {
        std::filesystem::remove(target_);
        return copyPrivately(source, target_, options_);
    }

    /// Makes a named pipe that a thread of its own writes `pieces` to, one at a time.
    std::thread writePipe(const std::string& path, const std::vector<std::string>& pieces) {
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
        return std::thread([path, pieces] {
            const int pipe = ::open(path.c_str(), O_WRONLY);
            for (const std::string& piece : pieces) {
                if (::write(pipe, piece.data(), piece.size()) < 0) {
                    break;
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
            ::close(pipe);
        });
    }

    const TemporaryFolder folder_;
    const std::string target_ = folder_.file("copy");
    CopyOptions options_;
};

TEST_F(PrivateCopy, HoldsTheSameBytesForThisUserAlone) {
    std::string bytes;
    for (int i = 0; i < 200000; ++i) {
        bytes += static_cast<char>(i % 256);
    }
    const CopyResult result = copy(folder_.write("source", bytes));
    EXPECT_EQ(result.state, CopyResult::made);
    EXPECT_EQ(readFile(target_), bytes);
    struct stat status = {};
    ASSERT_EQ(::stat(target_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(PrivateCopy, ReportsHowFarItIs) {
    std::vector<std::pair<std::uint64_t, std::uint64_t>> reported;
    options_.progress = [&](std::uint64_t done, std::uint64_t total) { reported.emplace_back(done, total); };
    copy(folder_.write("source", std::string(100000, 'x')));
    const std::vector<std::pair<std::uint64_t, std::uint64_t>> expected = {{65536, 100000}, {100000, 100000}};
    EXPECT_EQ(reported, expected);
}

TEST_F(PrivateCopy, GoesWithoutTheByteOrderMark) {
    EXPECT_TRUE(copy(folder_.write("source", "\xef\xbb\xbfName")).hadByteOrderMark);
    EXPECT_EQ(readFile(target_), "Name");
    EXPECT_FALSE(copy(folder_.write("source", "Name\xef\xbb\xbf")).hadByteOrderMark);
    EXPECT_EQ(readFile(target_), "Name\xef\xbb\xbf");
    EXPECT_TRUE(copy(folder_.write("source", "\xef\xbb\xbf")).hadByteOrderMark);
    EXPECT_EQ(readFile(target_), "");
    EXPECT_FALSE(copy(folder_.write("source", "\xef\xbb")).hadByteOrderMark);
    EXPECT_EQ(readFile(target_), "\xef\xbb");
}

TEST_F(PrivateCopy, NoticesUtf16) {
    EXPECT_TRUE(copy(folder_.write("source", std::string("\xff\xfeN\0", 4))).isUtf16);
    EXPECT_TRUE(copy(folder_.write("source", std::string("\xfe\xff\0N", 4))).isUtf16);
    EXPECT_FALSE(copy(folder_.write("source", "N\xff\xfe")).isUtf16);
}

TEST_F(PrivateCopy, TurnsIso8859IntoUtf8) {
    options_.fromLatin1 = true;
    copy(folder_.write("source", "M\xfcller \x80\xff"));
    EXPECT_EQ(readFile(target_), "Müller \xc2\x80ÿ");
}

TEST_F(PrivateCopy, ReadsAPipeToItsEnd) {
    std::thread writer = writePipe(folder_.file("pipe"), {"\xef", "\xbb\xbf", "Na", "me"});
    const CopyResult result = copy(folder_.file("pipe"));
    writer.join();
    EXPECT_EQ(result.state, CopyResult::made);
    EXPECT_TRUE(result.hadByteOrderMark);
    EXPECT_EQ(readFile(target_), "Name");
}

TEST_F(PrivateCopy, SaysWhyThereIsNothingToRead) {
    const CopyResult missing = copy(folder_.file("missing"));
    EXPECT_EQ(missing.state, CopyResult::unopened);
    EXPECT_EQ(missing.problem, "No such file or directory");
    std::filesystem::create_directory(folder_.file("folder"));
    const CopyResult directory = copy(folder_.file("folder"));
    EXPECT_EQ(directory.state, CopyResult::unopened);
    EXPECT_EQ(directory.problem, "Is a directory");
    EXPECT_FALSE(std::filesystem::exists(target_));
}

TEST_F(PrivateCopy, RefusesALargeFileWithoutReadingIt) {
    folder_.write("huge", "");
    std::filesystem::resize_file(folder_.file("huge"), 1024u * 1024u * 1024u);
    const CopyResult result = copy(folder_.file("huge"));
    EXPECT_EQ(result.state, CopyResult::stopped);
    EXPECT_EQ(result.problem, "has 1024 MiB; more than 256 MiB are not read");
    EXPECT_FALSE(std::filesystem::exists(target_));
}

TEST_F(PrivateCopy, TakesAFileOfExactlyTheLimit) {
    options_.mostBytes = 5;
    EXPECT_EQ(copy(folder_.write("source", "12345")).state, CopyResult::made);
    EXPECT_EQ(copy(folder_.write("source", "123456")).state, CopyResult::stopped);
}

TEST_F(PrivateCopy, StopsWhereAPipeDoesNotEnd) {
    options_.mostBytes = 1024u * 1024u;
    const CopyResult result = copy("/dev/zero");
    EXPECT_EQ(result.state, CopyResult::stopped);
    EXPECT_EQ(result.problem, "has more than 1 MiB, which is as much as is read");
    EXPECT_FALSE(std::filesystem::exists(target_));
}

TEST_F(PrivateCopy, DoesNotWaitForeverForAPipe) {
    options_.timeout = 50;
    ASSERT_EQ(::mkfifo(folder_.file("pipe").c_str(), 0600), 0);
    const CopyResult result = copy(folder_.file("pipe"));
    EXPECT_EQ(result.state, CopyResult::stopped);
    EXPECT_EQ(result.problem, "nothing came for 0.05 seconds");
    EXPECT_FALSE(std::filesystem::exists(target_));
}

TEST_F(PrivateCopy, TouchesNoFileThatIsThereAlready) {
    const std::string other = folder_.write("other", "other");
    const CopyResult result = copyPrivately(folder_.write("source", "x"), other, options_);
    EXPECT_EQ(result.state, CopyResult::stopped);
    EXPECT_EQ(result.problem, "cannot be copied to a temporary folder: File exists");
    EXPECT_EQ(readFile(other), "other");
}

}  // namespace
