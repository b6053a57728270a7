#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "RunCommand.h"

namespace {

namespace fs = std::filesystem;

/// The files of a folder by name, and what is in them.
using Files = std::map<std::string, std::string>;

std::string people(int count) {
    std::string book = "First Name,Last Name,Mobile Phone\n";
    for (int i = 0; i < count; ++i) {
        book += "Ann,Smith" + std::to_string(i) + ",0301" + std::to_string(1000 + i) + '\n';
    }
    return book;
}

int faults = 0;

/// The command in a folder of its own, whose disk fails in every way in turn.
class OutputFaults : public ::testing::Test {
protected:
    OutputFaults() {
        fs::create_directory(before_);
        fs::create_directory(temporary_);
    }

    void write(const std::string& name, const std::string& text) const { folder_.write("before/" + name, text); }

    /// Runs the command in `work`, a fresh copy of the folder with what write() wrote, its disk failing as `fault` says.
    Finished run(const std::string& arguments, const std::string& fault = std::string()) const {
        fs::remove_all(work_);
        fs::remove(mark_);
        fs::copy(before_, work_, fs::copy_options::recursive);
        return runHere(arguments, fault.empty() ? ""
                                                : "LD_PRELOAD=" FAULTY_OUTPUT " CALLJOURNAL_FAULT='" + fault +
                                                      "' CALLJOURNAL_FAULT_MARK=" + mark_ +
                                                      " ASAN_OPTIONS=verify_asan_link_order=0 ");
    }

    /// Runs the command in `work` as it is.
    Finished runHere(const std::string& arguments, const std::string& variables = std::string()) const {
        return runProgram({"/bin/bash", "-c",
                           "cd " + work_ + "; export TMPDIR=" + temporary_ + ' ' + variables +
                               "; exec " COMMAND " --store journal.db " + arguments});
    }

    /// What the command has left: the user's files and the calls in the store.
    Files left() const {
        Files files;
        for (const fs::directory_entry& entry : fs::directory_iterator(work_)) {
            const std::string name = entry.path().filename().string();
            if (name.compare(0, 10, "journal.db") != 0) {
                files[name] = readFile(entry.path().string());
            }
        }
        files["calls"] = runHere("--format json list all").out + runHere("settings region").out;
        return files;
    }

    /// Has each write and each synchronisation fail in turn.
    void expectAllOrASentence(const std::string& arguments) const {
        SCOPED_TRACE(arguments);
        run("--version");
        const Files before = left();
        const Finished whole = run(arguments);
        ASSERT_EQ(whole.status, 0) << whole.err;
        const Files after = left();
        for (const char* const kind : {"write ", "full ", "sync ", "close "}) {
            bool isHit = true;
            for (int number = 1; isHit; ++number) {
                SCOPED_TRACE(kind + std::to_string(number));
                const Finished finished = run(arguments, kind + std::to_string(number));
                isHit = fs::exists(mark_);
                faults += isHit ? 1 : 0;
                expectAllOrASentence(finished, whole, before, after);
                ASSERT_TRUE(isHit || finished.status == 0);
                ASSERT_FALSE(HasFailure());
            }
        }
    }

    /// Has the command work on a store with a call.
    void writeStore() const {
        ASSERT_EQ(run("record missed --number 0 --time '2024-05-01 10:15:00'").status, 0);
        write("journal.db", readFile(work("journal.db")));
    }

    std::string work(const std::string& name) const { return work_ + '/' + name; }

private:
    void expectAllOrASentence(const Finished& finished, const Finished& whole, const Files& before,
                              const Files& after) const {
        const Files files = left();
        EXPECT_TRUE(fs::is_empty(temporary_));
        if (finished.status == 0) {
            EXPECT_EQ(finished.out, whole.out);
            EXPECT_EQ(files, after);
            return;
        }
        EXPECT_EQ(finished.status, 1);
        EXPECT_NE(finished.err + finished.out, "");
        EXPECT_EQ(finished.err.find("exception"), std::string::npos) << finished.err;
        EXPECT_TRUE(files == before || files == after) << finished.err;
        // What was acknowledged, or was in a file that is gone, is there.
        EXPECT_TRUE(files == after || finished.out != whole.out || whole.out.empty());
        EXPECT_TRUE(files.size() >= before.size() || finished.out == whole.out);
    }

    const TemporaryFolder folder_;
    const std::string before_ = folder_.file("before");
    const std::string work_ = folder_.file("work");
    const std::string temporary_ = folder_.file("tmp");
    const std::string mark_ = folder_.file("mark");
};

TEST_F(OutputFaults, LoseNoCallThatWasAcknowledged) {
    writeStore();
    expectAllOrASentence("record missed --number 1 --time '2024-05-01 10:15:00'");
    write("calls.json", R"({"Kind":"missed","Number":"2","TimeDate":"2024-05-01 10:15:00"})"
                        "\n"
                        R"({"Kind":"dialled","Number":"3","TimeDate":"2024-05-01 10:15:00"})"
                        "\n");
    expectAllOrASentence("record --notify --from calls.json");
}

TEST_F(OutputFaults, LeaveAnEntryAsItWasOrAsItWasToBe) {
    writeStore();
    for (const char* const arguments :
         {"viewed 1 --notify", "delete missed 1 --notify", "settings region GB", "list all"}) {
        expectAllOrASentence(arguments);
    }
}

TEST_F(OutputFaults, LeaveNoHalfFileOfContacts) {
    write("people.csv", people(3));
    write("out.csv", "what was there before\n");
    for (const char* const arguments : {"convert people.csv -o new.csv", "convert people.csv -o out.csv --force",
                                        "convert people.csv --to json", "convert people.csv --to vcard"}) {
        expectAllOrASentence(arguments);
    }
}

TEST_F(OutputFaults, LeaveAllFilesOfContactsOrNone) {
    write("people.csv", people(250));
    write("out-2.csv", "what was there before\n");
    expectAllOrASentence("convert people.csv -o out.csv --force");
}

TEST_F(OutputFaults, LoseNoContactOfAConsumedFile) {
    write("people.csv", people(3));
    ASSERT_EQ(run("convert people.csv -o contacts.csv").status, 0);
    write("contacts.csv", readFile(work("contacts.csv")));
    for (const char* const arguments :
         {"import contacts.csv", "import --consume contacts.csv", "--format table import --consume contacts.csv",
          "import --convert people.csv"}) {
        expectAllOrASentence(arguments);
    }
}

TEST_F(OutputFaults, AreSaidByWhatOnlyPrints) {
    write("entry.xml", "<Surname>a</Surname>\n");
    for (const char* const arguments : {"check entry.xml", "decode missed <entry.xml", "--help", "--version"}) {
        expectAllOrASentence(arguments);
    }
}

/// Says at the end how many faults there were, for who runs all of this for long.
class CountOfFaults : public testing::Environment {
public:
    void TearDown() override { std::cout << "faults injected: " << faults << std::endl; }
};

const testing::Environment* const countOfFaults = testing::AddGlobalTestEnvironment(new CountOfFaults);

}  // namespace
