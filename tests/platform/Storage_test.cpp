#include "Storage.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <sys/statvfs.h>
#include <unistd.h>

#include "HostPlatform.h"

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();

/// A folder of its own. /proc stands for a full disk: it is there on every Linux and has room for nothing.
class HostStorage : public testing::Test {
protected:
    void SetUp() override {
        std::string name = testing::TempDir() + "calljournal-storage-XXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        folder = name;
    }

    void TearDown() override {
        calljournal::setDataDirectory("");
        fs::current_path("/");
        fs::remove_all(folder);
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }

    std::string file(const std::string& name, const std::string& content = "content") const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

    fs::path folder;
};

std::uint32_t freeSpace(const std::string& directory) {
    struct statvfs info {};
    EXPECT_EQ(::statvfs(directory.c_str(), &info), 0);
    const std::uint64_t bytes = std::uint64_t{info.f_bavail} * info.f_frsize;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(bytes, most));
}

/// Others fill the disk, too, so the answer lies between what is free before and after; or, if they are quick, next
/// time.
bool tellsFreeSpace(const std::string& directory) {
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::uint32_t before = freeSpace(directory);
        const std::uint32_t asked = Storage::UserDiskSpace(directory);
        const std::uint32_t after = freeSpace(directory);
        if (asked >= std::min(before, after) && asked <= std::max(before, after)) {
            return true;
        }
    }
    return false;
}

}  // namespace

TEST_F(HostStorage, TellsTheFreeSpaceInBytes) {
    EXPECT_TRUE(tellsFreeSpace(folder.string()));
    EXPECT_GT(Storage::UserDiskSpace(folder.string()), 0u);
    EXPECT_EQ(Storage::UserDiskSpace("/proc"), 0u);
}

TEST_F(HostStorage, TellsTheFreeSpaceOfEachFileSystem) {
    // Among them are small ones, where 32 bits hold more than what is free.
    std::ifstream mounts("/proc/mounts");
    std::string device;
    for (std::string directory; mounts >> device >> directory; std::getline(mounts, device)) {
        struct statvfs info {};
        if (::statvfs(directory.c_str(), &info) == 0) {
            EXPECT_TRUE(tellsFreeSpace(directory)) << directory;
        }
    }
}

TEST_F(HostStorage, AnswersForTheNearestExistingAncestor) {
    ASSERT_GT(freeSpace("/"), 0u);
    for (const char* const directory : {"/proc/", "/proc/missing", "/proc/missing/", "/proc//missing//deep/deeper/"}) {
        EXPECT_EQ(Storage::UserDiskSpace(directory), 0u) << directory;
    }
    for (const char* const directory : {"/", "//", "/missing", "/missing/", "/missing/proc/", "/procmissing/x"}) {
        EXPECT_GT(Storage::UserDiskSpace(directory), 0u) << directory;
    }
    EXPECT_GT(Storage::UserDiskSpace(path("missing/deep")), 0u);
    EXPECT_GT(Storage::UserDiskSpace(file("name") + "/below"), 0u);
}

TEST_F(HostStorage, TakesARelativeDirectoryFromTheCurrentOne) {
    fs::current_path("/proc");
    EXPECT_EQ(Storage::UserDiskSpace("missing/deep"), 0u);
    EXPECT_EQ(Storage::UserDiskSpace("missing"), 0u);
    EXPECT_EQ(Storage::UserDiskSpace("."), 0u);
    EXPECT_EQ(Storage::UserDiskSpace(""), 0u);
    EXPECT_GT(Storage::UserDiskSpace("/missing"), 0u);
    fs::current_path(folder);
    EXPECT_GT(Storage::UserDiskSpace("missing/deep"), 0u);
    EXPECT_GT(Storage::UserDiskSpace(""), 0u);
}

TEST_F(HostStorage, HasNoFreeSpaceWhereItMayNotLook) {
    fs::current_path(folder);
    fs::permissions(folder, fs::perms::none);
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0;
    ASSERT_TRUE(!isRoot || ::seteuid(nobody) == 0);
    const std::uint32_t asked[] = {Storage::UserDiskSpace(""), Storage::UserDiskSpace("missing/deep")};
    ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
    fs::permissions(folder, fs::perms::owner_all);
    EXPECT_EQ(asked[0], 0u);
    EXPECT_EQ(asked[1], 0u);
}

TEST_F(HostStorage, FollowsAnExistingLinkOnly) {
    fs::create_directory_symlink("/proc", folder / "full");
    fs::create_directory_symlink("/proc/missing", folder / "dangling");
    EXPECT_EQ(Storage::UserDiskSpace(path("full")), 0u);
    EXPECT_GT(Storage::UserDiskSpace(path("dangling")), 0u);
}

TEST_F(HostStorage, TakesAnyBytesForADirectory) {
    EXPECT_EQ(Storage::UserDiskSpace("/proc/" + std::string(100000, 'x')), 0u);
    std::string deep = "/proc";
    for (int level = 0; level < 100000; ++level) {
        deep += "/x";
    }
    EXPECT_EQ(Storage::UserDiskSpace(deep), 0u);
    // The name goes on behind the zero byte, so this is not the folder /proc.
    EXPECT_GT(Storage::UserDiskSpace(std::string("/proc\0x", 7)), 0u);
}

TEST_F(HostStorage, LetsAFolderStandForThePhonesData) {
    ASSERT_GT(Storage::UserDiskSpace("/data/"), 0u);
    calljournal::setDataDirectory("/proc");
    EXPECT_EQ(Storage::UserDiskSpace("/data/"), 0u);
    EXPECT_EQ(Storage::UserDiskSpace("/data"), 0u);
    EXPECT_EQ(Storage::UserDiskSpace("/data/import/"), 0u);
    EXPECT_GT(Storage::UserDiskSpace("/database/"), 0u);
    EXPECT_GT(Storage::UserDiskSpace("/"), 0u);
    EXPECT_GT(Storage::UserDiskSpace(path("data/")), 0u);

    calljournal::setDataDirectory("/proc/missing/");
    EXPECT_EQ(Storage::UserDiskSpace("/data/"), 0u);
    EXPECT_GT(Storage::UserDiskSpace("/database/"), 0u);
    calljournal::setDataDirectory(path("missing"));
    EXPECT_GT(Storage::UserDiskSpace("/data/"), 0u);
    calljournal::setDataDirectory("");
    EXPECT_GT(Storage::UserDiskSpace("/data/"), 0u);
}

TEST_F(HostStorage, TellsAFilesSizeInBytes) {
    EXPECT_EQ(Storage::fileSize(file("empty", "")), 0u);
    EXPECT_EQ(Storage::fileSize(file("name", std::string(12345, 'x'))), 12345u);
    fs::create_symlink(path("name"), folder / "link");
    EXPECT_EQ(Storage::fileSize(path("link")), 12345u);
}

TEST_F(HostStorage, SaturatesTheSizeOfAHugeFile) {
    const std::string huge = file("huge", "");
    fs::resize_file(huge, std::uintmax_t{most} - 1);
    EXPECT_EQ(Storage::fileSize(huge), 4294967294u);
    fs::resize_file(huge, std::uintmax_t{most} + 1);
    EXPECT_EQ(Storage::fileSize(huge), 4294967295u);
    fs::resize_file(huge, std::uintmax_t{5000000000});
    EXPECT_EQ(Storage::fileSize(huge), 4294967295u);
}

TEST_F(HostStorage, GivesNoSizeToWhatIsNoFile) {
    EXPECT_EQ(Storage::fileSize(path("missing")), 0u);
    EXPECT_EQ(Storage::fileSize(folder.string()), 0u);
    EXPECT_EQ(Storage::fileSize(""), 0u);
    EXPECT_EQ(Storage::fileSize("/dev/null"), 0u);
    EXPECT_EQ(Storage::fileSize(file("name") + "/below"), 0u);
    EXPECT_EQ(Storage::fileSize(file("name") + std::string("\0x", 2)), 0u);
    EXPECT_EQ(Storage::fileSize(std::string(1000000, 'x')), 0u);
}

TEST_F(HostStorage, DeletesAFile) {
    const std::string name = file("name");
    Storage::deleteFile_noEx(name);
    EXPECT_FALSE(fs::exists(name));
    Storage::deleteFile_noEx(name);
    EXPECT_TRUE(fs::exists(folder));
}

TEST_F(HostStorage, DeletesNoDirectory) {
    fs::create_directory(folder / "empty");
    Storage::deleteFile_noEx(path("empty"));
    Storage::deleteFile_noEx(path("empty/"));
    Storage::deleteFile_noEx(folder.string());
    EXPECT_TRUE(fs::is_directory(folder / "empty"));
}

TEST_F(HostStorage, DeletesALinkButNotWhatItLeadsTo) {
    fs::create_directory(folder / "directory");
    const std::string inside = file("directory/inside");
    const std::string target = file("target");
    fs::create_directory_symlink(path("directory"), folder / "directoryLink");
    fs::create_symlink(target, folder / "fileLink");

    Storage::deleteFile_noEx(path("directoryLink/"));
    EXPECT_TRUE(fs::exists(fs::symlink_status(folder / "directoryLink")));
    Storage::deleteFile_noEx(path("directoryLink"));
    Storage::deleteFile_noEx(path("fileLink"));
    EXPECT_FALSE(fs::exists(fs::symlink_status(folder / "directoryLink")));
    EXPECT_FALSE(fs::exists(fs::symlink_status(folder / "fileLink")));
    EXPECT_TRUE(fs::exists(inside));
    EXPECT_TRUE(fs::exists(target));
}

TEST_F(HostStorage, ThrowsNothingWhateverItIsToDelete) {
    const std::string name = file("name");
    Storage::deleteFile_noEx("");
    Storage::deleteFile_noEx("/proc/version");
    Storage::deleteFile_noEx(name + "/below");
    Storage::deleteFile_noEx(std::string(1000000, 'x'));
    // A different name, which the operating system would take for the file's.
    Storage::deleteFile_noEx(name + std::string("\0x", 2));
    EXPECT_TRUE(fs::exists(name));
}
