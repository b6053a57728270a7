#include "TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "RunCommand.h"

namespace {

namespace fs = std::filesystem;

/// Folders for temporary files in a folder of the test.
class TemporaryFolders : public ::testing::Test {
protected:
    TemporaryFolders() { ::setenv("TMPDIR", all_.file("").c_str(), 1); }
    ~TemporaryFolders() override { ::unsetenv("TMPDIR"); }

    /// Makes a folder with a file and returns its path.
    std::string leave(const std::string& name, fs::perms permissions) const {
        const std::string folder = all_.file(name);
        fs::create_directory(folder);
        std::ofstream(folder + "/contacts.csv") << "Ann";
        fs::permissions(folder, permissions);
        return folder;
    }

    const ::TemporaryFolder all_;
};

TEST_F(TemporaryFolders, AreForTheirUserAlone) {
    const calljournal::TemporaryFolder folder;
    EXPECT_EQ(fs::status(folder.path()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(folder.path().parent_path(), fs::canonical(all_.file("")));
}

TEST_F(TemporaryFolders, GoWithTheNextIfAProcessLeftThem) {
    const std::string left = leave("calljournal-run-Ab0xyZ", fs::perms::owner_all);
    const calljournal::TemporaryFolder folder;
    EXPECT_FALSE(fs::exists(left));
    EXPECT_TRUE(fs::exists(folder.path()));
}

TEST_F(TemporaryFolders, StayWhileTheyAreUsed) {
    const calljournal::TemporaryFolder one;
    const calljournal::TemporaryFolder other;
    EXPECT_TRUE(fs::exists(one.path()));
    EXPECT_TRUE(fs::exists(other.path()));
}

TEST_F(TemporaryFolders, AreNotTakenForOthers) {
    for (const char* const name : {"calljournal-run-", "calljournal-run-Ab0xyZ1", "calljournal-run_Ab0xyZ",
                                   "calljournal-test-Ab0xy", "xcalljournal-run-Ab0xy"}) {
        const std::string stays = leave(name, fs::perms::owner_all);
        const calljournal::TemporaryFolder folder;
        EXPECT_TRUE(fs::exists(stays + "/contacts.csv")) << name;
    }
}

TEST_F(TemporaryFolders, AreNotTakenForThoseThatOthersMayRead) {
    const std::string stays = leave("calljournal-run-Ab0xyZ", fs::perms::owner_all | fs::perms::others_read);
    const calljournal::TemporaryFolder folder;
    EXPECT_TRUE(fs::exists(stays + "/contacts.csv"));
}

TEST_F(TemporaryFolders, AreNotTakenForThoseOfAnotherUser) {
    const std::string stays = leave("calljournal-run-Ab0xyZ", fs::perms::owner_all);
    constexpr uid_t nobody = 65534;
    if (::chown(stays.c_str(), nobody, nobody) != 0) {
        GTEST_SKIP() << "only root gives folders away";
    }
    const calljournal::TemporaryFolder folder;
    EXPECT_TRUE(fs::exists(stays + "/contacts.csv"));
}

TEST_F(TemporaryFolders, AreNoLinksAndNoFiles) {
    const std::string target = leave("target", fs::perms::owner_all);
    const std::string link = all_.file("calljournal-run-Ab0xyZ");
    fs::create_directory_symlink(target, link);
    const std::string file = all_.write("calljournal-run-Ab0xyY", "text");
    const calljournal::TemporaryFolder folder;
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_TRUE(fs::exists(target + "/contacts.csv"));
    EXPECT_TRUE(fs::exists(file));
}

}  // namespace
