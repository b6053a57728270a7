#include <chrono>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>

#include "RunCommand.h"
#include "Store.h"

namespace {

TEST(FollowedList, SaysThatMoreWasDeletedAtOnceThanTheStoreRemembers) {
    const TemporaryFolder folder;
    const std::string store = folder.file("journal.db");
    std::string calls;
    std::string deletions;
    for (int i = 1; i <= 1100; ++i) {
        calls += R"({"Number":")" + std::to_string(i) + R"(","TimeDate":"2024-05-01 10:00:00"})" + "\n";
        deletions += "<Entry><UniqueId>" + std::to_string(i) + "</UniqueId></Entry>";
    }
    ASSERT_EQ(runProgram({COMMAND, "--store", store, "record", "missed", "--from", "-"}, calls).status, 0);

    Finished followed;
    std::thread following([&] {
        followed = runProgram({"/usr/bin/timeout", "--preserve-status", "-s", "INT", "2", COMMAND, "--store", store,
                               "--format", "table", "list", "missed", "--follow"});
    });
    std::this_thread::sleep_for(std::chrono::seconds(1));
    calljournal::openStore(store)->processRequest(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
        "<ReasonForMessage>delete_request</ReasonForMessage>" +
        deletions + "</Schema>");
    following.join();
    EXPECT_EQ(followed.status, 0);
    EXPECT_EQ(followed.err,
              "calljournal: more was deleted at once than the store remembers; not all of it is shown here\n");
    EXPECT_NE(followed.out.find("deleted: missed entry 1100: 1100, 1 call\n"), std::string::npos);
}

}  // namespace
