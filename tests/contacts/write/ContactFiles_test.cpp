#include "ContactFiles.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "LargestFile.h"
#include "RunCommand.h"
#include "TemporaryPaths.h"

namespace calljournal {
namespace {

namespace fs = std::filesystem;

class ContactFilesTest : public ::testing::Test {
protected:
    ContactFilesOptions options(unsigned limit) const {
        ContactFilesOptions made;
        made.path = folder_.file("out.csv");
        made.limit = limit;
        made.place = [](const ContactOrigin& origin) { return "record " + std::to_string(origin.record); };
        return made;
    }

    static void add(ContactFiles& files, std::uint64_t count, const std::string& name = "Schmidt") {
        SpooledContact contact;
        contact.contact.lastName = name;
        for (contact.record = 1; contact.record <= count; ++contact.record) {
            files.add(contact);
        }
    }

    std::vector<std::string> written() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_.file(""))) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /// What `work` throws.
    template <class Work>
    static std::string failure(const Work& work) {
        try {
            work();
        } catch (const ContactFilesError& error) {
            return error.what();
        }
        return {};
    }

    const ::TemporaryFolder folder_;
};

typedef std::vector<std::string> Names;

TEST_F(ContactFilesTest, DeliverNothingThatReadsBackOtherwise) {
    EXPECT_EQ(failure([this] {
                  ContactFiles files(options(100));
                  add(files, 1, std::string(250, 'a'));
                  files.finish();
              }),
              "internal error, nothing was written: record 1: field lastName was written as \"" +
                  std::string(250, 'a') + "\" and is read as \"" + std::string(249, 'a') + '"');
    EXPECT_EQ(written(), Names());
}

TEST_F(ContactFilesTest, DeliverNothingWhileManyFilesAreStillToCome) {
    std::uint64_t added = 0;
    const std::string reason = failure([&] {
        ContactFiles files(options(100));
        add(files, 1, std::string(250, 'a'));
        for (; added < 10000; added += 100) {
            add(files, 100);
        }
    });
    EXPECT_EQ(reason.rfind("internal error, nothing was written: record 1: field lastName", 0), 0u) << reason;
    EXPECT_LE(added, 500u);
    EXPECT_EQ(written(), Names());
}

TEST_F(ContactFilesTest, LeaveNothingOnAFullDisk) {
    const std::string reason = failure([this] {
        ContactFiles files(options(0));
        const LargestFile limit(100000);
        add(files, 20000);
    });
    EXPECT_EQ(reason, folder_.file("out.csv") + ": File too large");
    EXPECT_EQ(written(), Names());
}

TEST_F(ContactFilesTest, AreDeliveredAllOrNone) {
    ContactFiles files(options(100));
    add(files, 250);
    files.finish();
    fs::remove(files.temporaryFiles()[1]);
    EXPECT_EQ(failure([&] { files.publish(); }), folder_.file("out-2.csv") + ": No such file or directory");
    EXPECT_EQ(written(), Names{fs::path(files.temporaryFiles()[2]).filename()});
}

TEST_F(ContactFilesTest, LeaveTheOldFilesWhereOneCannotBeDelivered) {
    ContactFilesOptions overwriting = options(100);
    overwriting.overwrite = true;
    folder_.write("out-1.csv", "mine");
    folder_.write("out-3.csv", "mine, too");
    {
        ContactFiles files(overwriting);
        add(files, 350);
        files.finish();
        fs::remove(files.temporaryFiles()[2]);
        EXPECT_EQ(failure([&] { files.publish(); }), folder_.file("out-3.csv") + ": No such file or directory");
        // A signal that ends the process now leaves no further names, either.
        removeTemporaries(holdTemporaries());
        EXPECT_EQ(written(), (Names{"out-1.csv", "out-3.csv"}));
    }
    EXPECT_EQ(written(), (Names{"out-1.csv", "out-3.csv"}));
    EXPECT_EQ(readFile(folder_.file("out-1.csv")), "mine");
    EXPECT_EQ(readFile(folder_.file("out-3.csv")), "mine, too");
}

TEST_F(ContactFilesTest, ReplaceOldFilesAndLeaveNoOtherNames) {
    ContactFilesOptions overwriting = options(100);
    overwriting.overwrite = true;
    folder_.write("out-1.csv", "mine");
    folder_.write("out-2.csv", "mine, too");
    ContactFiles files(overwriting);
    add(files, 150);
    files.finish();
    files.publish();
    EXPECT_EQ(written(), (Names{"out-1.csv", "out-2.csv"}));
    EXPECT_EQ(readFile(folder_.file("out-1.csv")).substr(0, 8), "LastName");
    EXPECT_EQ(readFile(folder_.file("out-2.csv")).substr(0, 8), "LastName");
}

TEST_F(ContactFilesTest, ReplaceOldFilesWhateverTheLengthOfTheirNames) {
    ContactFilesOptions overwriting = options(100);
    overwriting.overwrite = true;
    // A temporary name, the longest in use, has the 255 bytes that a name may have.
    overwriting.path = folder_.file(std::string(243, 'a') + ".csv");
    const std::string first = folder_.write(std::string(243, 'a') + "-1.csv", "mine");
    ContactFiles files(overwriting);
    add(files, 150);
    files.finish();
    files.publish();
    EXPECT_EQ(readFile(first).substr(0, 8), "LastName");
}

TEST_F(ContactFilesTest, TakeThePlaceOfFilesOnly) {
    ContactFilesOptions overwriting = options(100);
    overwriting.overwrite = true;
    const std::string reason = ": is no file that could be overwritten; name another one";
    ASSERT_EQ(::mkfifo(folder_.file("out.csv").c_str(), 0600), 0);
    EXPECT_EQ(failure([&] { const ContactFiles files(overwriting); }), folder_.file("out.csv") + reason);
    EXPECT_TRUE(fs::is_fifo(folder_.file("out.csv")));

    fs::remove(folder_.file("out.csv"));
    fs::create_symlink("/dev/null", folder_.file("out.csv"));
    EXPECT_EQ(failure([&] { const ContactFiles files(overwriting); }), folder_.file("out.csv") + reason);

    fs::remove(folder_.file("out.csv"));
    fs::create_directory(folder_.file("out-2.csv"));
    ContactFiles files(overwriting);
    add(files, 250);
    files.finish();
    EXPECT_EQ(failure([&] { files.publish(); }), folder_.file("out-2.csv") + reason);
}

TEST_F(ContactFilesTest, OverwriteNothingThatCameMeanwhile) {
    ContactFiles files(options(100));
    add(files, 101);
    files.finish();
    folder_.write("out-2.csv", "mine");
    EXPECT_EQ(failure([&] { files.publish(); }),
              folder_.file("out-2.csv") + ": is there already; --force overwrites it");
    EXPECT_EQ(readFile(folder_.file("out-2.csv")), "mine");
}

}  // namespace
}  // namespace calljournal
