#include <filesystem>
#include <string>
#include <sys/stat.h>

#include "Faults.h"
#include "StoreTest.h"

namespace {

/// The statements that make a store as an earlier version wrote it.
std::string dumpOf(int version) {
    return contentOf(VERSIONS "/version" + std::to_string(version) + ".sql");
}

class StoreVersions : public StoreTest {
protected:
    void writeVersion1() { runSql(file(), dumpOf(1)); }
    std::string version() const { return runSql(file(), "select version from calljournal_store"); }
};

/// The replies that version 1 gave of each schema, from its own table.
std::string entriesOfVersion1(const std::string& file, const std::string& schema) {
    return envelope(schema,
                    runSql(file,
                           "select coalesce(group_concat('<Entry><UniqueId>' || unique_id || '</UniqueId>' || body "
                           "|| '</Entry>', ''), '') from (select * from entry where schema_name = '" +
                               schema + "' order by place)"));
}

TEST_F(StoreVersions, OneIsBroughtUpToDateWithAllItsEntries) {
    writeVersion1();
    std::string before;
    for (const char* schema : {"CallLogMissedCalls", "CallLogDialledCalls", "CallLogReceivedCalls",
                               "CallLogForwardedCalls", "Conversations", "CallBacks"}) {
        std::string reply = entriesOfVersion1(file(), schema);
        reply.erase(reply.rfind('\n'), 1);  // what runSql() puts behind each value
        before += reply + "\n";
    }
    EXPECT_EQ(version(), "1\n");
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(ask(writeRequest("CallBacks", "<Entry><CallBackNumber>1</CallBackNumber></Entry>")),
              envelope("CallBacks", "<Result>ok</Result><UniqueId>7</UniqueId>"));
    closeStore();
    EXPECT_EQ(version(), "2\n");
    EXPECT_EQ(runSql(file(), "pragma integrity_check"), "ok\n");
}

TEST_F(StoreVersions, OneStaysWhatItWasUntilAllOfItIsBroughtUpToDate) {
    writeVersion1();
    installFaultyDisk();
    for (int writes = 0;; ++writes) {
        disk.writeError = ENOSPC;
        disk.writesLeft = writes;
        const std::string error = openingError(file());
        const bool hasFailed = disk.failedOperations > 0;
        repairDisk();
        if (!hasFailed) {
            EXPECT_EQ(error, "");
            EXPECT_GT(writes, 3);
            break;
        }
        if (!error.empty()) {
            ASSERT_EQ(version(), "1\n") << writes;
            ASSERT_EQ(runSql(file(), "select count(*) from entry"), "5\n") << writes;
        }
    }
    EXPECT_EQ(version(), "2\n");
}

TEST_F(StoreVersions, OneIsBroughtUpToDateOnceWhenSeveralProcessesOpenIt) {
    writeVersion1();
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < 4; ++i) {
        children.push_back(std::make_unique<Child>([&](const Child::Say& say) { say(openingError(file()) + "."); }));
    }
    for (const auto& child : children) {
        EXPECT_EQ(child->nextLine(), ".");
        EXPECT_TRUE(child->endedWell());
    }
    EXPECT_EQ(version(), "2\n");
    EXPECT_EQ(runSql(file(), "select count(*) from entry"), "5\n");
}

TEST_F(StoreVersions, OneThatCannotBeWrittenIsRefusedWithASentence) {
    writeVersion1();
    std::filesystem::permissions(file(), std::filesystem::perms(0444));
    std::filesystem::permissions(folder(), std::filesystem::perms(0777));
    Child child([&](const Child::Say& say) {
        becomeNobody();
        say(openingError(file()));
    });
    EXPECT_EQ(child.nextLine(),
              "store " + file() +
                  ": it cannot be written, and an older calljournal wrote it (store version 1); make it "
                  "writable, so that it can be brought up to date");
    EXPECT_TRUE(child.endedWell());
}

TEST_F(StoreVersions, ThatAreNewerAreRefusedWithASentence) {
    ask(writeRequest("CallBacks", "<Entry><UniqueId>a</UniqueId></Entry>"));
    closeStore();
    runSql(file(), "update calljournal_store set version = 3; pragma journal_mode = delete");
    const std::string content = contentOf(file());
    EXPECT_EQ(openingError(file()), "store " + file() +
                                        ": it was written by a newer calljournal (store version 3, this one knows 2); "
                                        "install the newer one");
    EXPECT_TRUE(contentOf(file()) == content);
}

}  // namespace
