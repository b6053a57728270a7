#include <filesystem>
#include <gtest/gtest.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <unistd.h>

#include "RunCommand.h"
#include "StoreTest.h"

namespace {

const std::string dialled = "CallLogDialledCalls";

std::string requestOfSize(int id, std::size_t size) {
    return writeRequest(dialled, "<Entry><UniqueId>" + std::to_string(id) + "</UniqueId><EntryId>" +
                                     std::string(size, 'x') + "</EntryId></Entry>");
}

bool isOk(const std::string& reply) {
    return reply.find("<Result>ok</Result>") != std::string::npos;
}

/// Puts a file system of 400 kB on `folder`, seen by this process and its children alone. Some machines do not let us.
bool mountSmallDisk(const std::string& folder) {
    const int ownUser = geteuid() == 0 ? 0 : CLONE_NEWUSER;
    return unshare(CLONE_NEWNS | ownUser) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=400k") == 0;
}

using FullDisk = StoreTest;

TEST_F(FullDisk, RefusesWithASentenceAndKeepsWhatIsThere) {
    Child child([&](const Child::Say& say) {
        if (!mountSmallDisk(folder())) {
            say("no disk");
            return;
        }
        int written = 0;
        std::string reply = ask(requestOfSize(written, 9000));
        for (; isOk(reply); reply = ask(requestOfSize(written, 9000))) {
            ++written;
        }
        say(reply);
        say(std::to_string(written));
        say(std::to_string(std::stoi(runSql(file(), "select count(*) from entry"))));
        const Finished command = runProgram(
            {COMMAND, "--store", file(), "record", "missed", "--number", "1", "--surname", std::string(90000, 'x')});
        say(std::to_string(command.status) + " " + command.out + command.err.substr(0, command.err.find('\n')));
        // A reader of the same moment sees all of it.
        const std::string all = ask(readRequest(dialled));
        say(all.find("<Result>failed") == std::string::npos ? "read" : all);
        closeStore();
        say(runSql(file(), "pragma integrity_check"));
    });
    const std::string reply = child.nextLine();
    if (reply == "no disk") {
        GTEST_SKIP() << "this machine lets nobody mount a small disk";
    }
    // SQLite tells a full disk from other trouble where the system does.
    EXPECT_TRUE(reply == failed(dialled, "store " + file() + ": the disk is full; free some space and try again") ||
                reply.find(": the disk fails or refuses (") != std::string::npos)
        << reply;
    const std::string written = child.nextLine();
    EXPECT_GT(std::stoi(written), 5);
    EXPECT_EQ(child.nextLine(), written);
    const std::string command = child.nextLine();
    EXPECT_EQ(command.substr(0, 2), "1 ") << command;
    EXPECT_NE(command.find("store " + file() + ": the disk "), std::string::npos) << command;
    EXPECT_EQ(child.nextLine(), "read");
    EXPECT_EQ(child.nextLine(), "ok");
    child.allLines();
}

TEST_F(FullDisk, RefusesTheCommandWithASentenceWhereFilesAreLimited) {
    const std::vector<std::string> record = {COMMAND, "--store", file(), "record", "missed", "--number", "1"};
    ASSERT_EQ(runProgram(record).status, 0);
    std::string shell = "trap '' XFSZ; ulimit -f 40; exec \"$@\" --surname " + std::string(90000, 'x');
    std::vector<std::string> limited = {"/bin/sh", "-c", shell, "sh"};
    limited.insert(limited.end(), record.begin(), record.end());
    const Finished finished = runProgram(limited);
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.out, "");
    EXPECT_NE(finished.err.find("store " + file() + ": the disk fails or refuses ("), std::string::npos)
        << finished.err;
    EXPECT_EQ(runSql(file(), "select count(*) from entry"), "1\n");
    const Finished check = runProgram({COMMAND, "check", file()});
    EXPECT_EQ(check.status, 0) << check.out;
}

TEST_F(FullDisk, RecordsNothingOfAFileOfCallsWhereTheLastKindDoesNotFit) {
    ASSERT_EQ(runProgram({COMMAND, "--store", file(), "record", "missed", "--number", "1"}).status, 0);
    const std::string calls = R"({"Kind":"missed","Number":"2"})"
                              "\n"
                              R"({"Kind":"callback","Number":"3","Surname":")" +
                              std::string(400000, 'x') + "\"}\n";
    const Finished finished = runProgram({"/bin/sh", "-c", "trap '' XFSZ; ulimit -f 400; exec \"$@\"", "sh", COMMAND,
                                          "--store", file(), "--region", "DE", "record", "--notify", "--from", "-"},
                                         calls);
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.out, "");
    EXPECT_EQ(finished.err.find("calljournal: store " + file() + ": the disk fails or refuses ("), 0u) << finished.err;
    EXPECT_EQ(runSql(file(), "select count(*) from entry"), "1\n");
    EXPECT_EQ(runProgram({COMMAND, "--store", file(), "settings", "region"}).out, "(not set)\n");
}

}  // namespace
