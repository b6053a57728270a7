#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "RunCommand.h"

namespace {

namespace fs = std::filesystem;

const std::string entry = R"({"Surname":"Smith"})";

/// The built command with a store that has a call, and its output redirected by a shell.
class Output : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(run("record missed --number 1 --time '2024-05-01 10:15:00'", "").status, 0);
        folder_.write("entry.xml", "<Surname>a</Surname>\n");
        folder_.write("people.csv", "First Name,Last Name,Mobile Phone\nAnn,Smith,0301234\n");
    }

    /// Runs `calljournal ARGUMENTS REDIRECTIONS` in the folder. Descriptor 3 is a pipe that nobody reads any more.
    Finished run(const std::string& arguments, const std::string& redirections) const {
        const std::string line = "exec 3> >(:); wait $!; cd " + folder_.file("") +
                                 "; exec " COMMAND " --store journal.db --region DE " + arguments + ' ' + redirections;
        return runProgram({"/bin/bash", "-c", line}, entry);
    }

    const TemporaryFolder folder_;
};

/// Every command, each with something to say on standard output.
const std::string commands[] = {
    "list missed",
    "--format table list all",
    "--format xml list missed",
    "list missed --follow",
    "record missed --number 1",
    "--format json record missed --number 1 --notify",
    "viewed 1 --notify",
    "delete missed 1",
    "encode missed",
    "decode missed",
    "check entry.xml",
    "check journal.db",
    "convert people.csv",
    "convert people.csv --to json",
    "convert people.csv --dry-run",
    "convert people.csv -o out.csv --force",
    "import --convert people.csv",
    "import --check --convert people.csv",
    "settings",
    "settings region",
    "settings region DE",
    "demo",
    "--help",
    "list --help",
    "--version",
};

std::string failure(const std::string& reason) {
    return "calljournal: standard output cannot be written (" + reason +
           "); send it elsewhere, and look at what is done before you repeat it\n";
}

TEST_F(Output, IsMissedByEveryCommandIfTheDiskIsFull) {
    for (const std::string& command : commands) {
        SCOPED_TRACE(command);
        const Finished finished = run(command, ">/dev/full");
        EXPECT_EQ(finished.status, 1);
        EXPECT_NE(finished.err.find(failure("No space left on device")), std::string::npos) << finished.err;
    }
}

TEST_F(Output, IsMissedIfItsFileGetsTooLarge) {
    const std::string line = "ulimit -f 1; exec " COMMAND " --help >" + folder_.file("out");
    const Finished finished = runProgram({"/bin/bash", "-c", line});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.err, failure("File too large"));
}

TEST_F(Output, IsMissedByEveryCommandIfItIsClosed) {
    for (const std::string& command : commands) {
        SCOPED_TRACE(command);
        const Finished finished = run(command, ">&-");
        EXPECT_EQ(finished.status, 1);
        EXPECT_NE(finished.err.find(failure("Bad file descriptor")), std::string::npos) << finished.err;
    }
}

TEST_F(Output, OfCompletionIsMissedToo) {
    const std::string line = "exec " COMMAND " --complete '' >/dev/full";
    const Finished finished = runProgram({"/bin/bash", "-c", line});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.err, failure("No space left on device"));
}

TEST_F(Output, IsMissedIfAFileMayNotBeSoLarge) {
    const std::string line = "ulimit -f 0; exec " COMMAND " --help >" + folder_.file("out");
    const Finished limited = runProgram({"/bin/bash", "-c", line});
    EXPECT_EQ(limited.status, 1);
}

TEST_F(Output, MayEndWhereNobodyReadsOn) {
    for (const std::string& command : commands) {
        SCOPED_TRACE(command);
        const Finished finished = run(command, ">&3");
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.err.find("standard output"), std::string::npos) << finished.err;
    }
}

TEST_F(Output, OfAClosedStandardErrorGoesNowhere) {
    for (const char* const redirection : {"2>&-", "2>/dev/full"}) {
        SCOPED_TRACE(redirection);
        EXPECT_EQ(run("list missed --limit x", redirection).status, 2);
        EXPECT_EQ(run("check nothing.xml", redirection).status, 1);
        EXPECT_EQ(run("list missed", std::string(">/dev/full ") + redirection).status, 1);
        const Finished converted = run("convert people.csv", redirection);
        EXPECT_EQ(converted.status, 0);
        EXPECT_NE(converted.out.find("Smith"), std::string::npos);
        EXPECT_EQ(run("convert people.csv -o out.csv --force", redirection).status, 0);
        EXPECT_NE(readFile(folder_.file("out.csv")).find("Smith"), std::string::npos);
    }
}

TEST_F(Output, IsNoFileThatTheCommandOpens) {
    // The descriptor that is free is not that of the contacts.
    EXPECT_EQ(run("convert people.csv -o out.csv", ">&- 2>&- <&-").status, 1);
    EXPECT_EQ(run("convert people.csv -o second.csv", "").status, 0);
    EXPECT_EQ(readFile(folder_.file("out.csv")), readFile(folder_.file("second.csv")));
}

TEST_F(Output, ComesBeforeTheFileIsConsumed) {
    ASSERT_EQ(run("convert people.csv -o contacts.csv", "").status, 0);
    for (const char* const redirection : {">/dev/full", ">&-", ">&3"}) {
        run("import --consume contacts.csv", redirection);
        EXPECT_TRUE(fs::exists(folder_.file("contacts.csv"))) << redirection;
    }
    EXPECT_EQ(run("import --consume contacts.csv", "").status, 0);
    EXPECT_FALSE(fs::exists(folder_.file("contacts.csv")));
}

TEST_F(Output, KeepsItsOrderBesideStandardError) {
    const Finished finished = run("check entry.xml nothing.xml entry.xml", "2>&1");
    const std::size_t problem = finished.out.find("calljournal: nothing.xml");
    EXPECT_NE(problem, std::string::npos);
    EXPECT_LT(finished.out.find("entry.xml:"), problem);
    EXPECT_GT(finished.out.rfind("entry.xml:"), problem);
}

}  // namespace
