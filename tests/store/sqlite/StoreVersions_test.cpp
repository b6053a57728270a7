#include <filesystem>
#include <string>
#include <sys/stat.h>

#include "Checksum.h"
#include "Faults.h"
#include "StoreTest.h"

namespace {

constexpr std::size_t pageSize = 4096;

/// The statements that make a store as an earlier version wrote it.
std::string dumpOf(int version) {
    return contentOf(VERSIONS "/version" + std::to_string(version) + ".sql");
}

class StoreVersions : public StoreTest, public testing::WithParamInterface<int> {
protected:
    void writeOldVersion() { runSql(file(), dumpOf(GetParam())); }
    std::string version() const { return runSql(file(), "select version from calljournal_store"); }
};

/// The replies that an old version gave of each schema, from its own table.
std::string entriesOfOldVersion(const std::string& file, int version, const std::string& schema) {
    const std::string entries = version < 3 ? "entry" : "entry natural join stored_schema";
    return envelope(schema, runSql(file,
                                   "select coalesce(group_concat('<Entry><UniqueId>' || unique_id || '</UniqueId>' || "
                                   "body || '</Entry>', ''), '') from (select * from " +
                                       entries + " where schema_name = '" + schema + "' order by place)"));
}

TEST_P(StoreVersions, OneIsBroughtUpToDateWithAllItsEntries) {
    writeOldVersion();
    std::string before;
    for (const char* schema : {"CallLogMissedCalls", "CallLogDialledCalls", "CallLogReceivedCalls",
                               "CallLogForwardedCalls", "Conversations", "CallBacks"}) {
        std::string reply = entriesOfOldVersion(file(), GetParam(), schema);
        reply.erase(reply.rfind('\n'), 1);  // what runSql() puts behind each value
        before += reply + "\n";
    }
    EXPECT_EQ(version(), std::to_string(GetParam()) + "\n");
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(ask(writeRequest("CallBacks", "<Entry><CallBackNumber>1</CallBackNumber></Entry>")),
              envelope("CallBacks", "<Result>ok</Result><UniqueId>7</UniqueId>"));
    closeStore();
    EXPECT_EQ(version(), "5\n");
    EXPECT_EQ(runSql(file(), "pragma integrity_check"), "ok\n");
}

TEST_P(StoreVersions, OneStaysWhatItWasUntilAllOfItIsBroughtUpToDate) {
    installFaultyDisk();
    for (const int errors : {1, INT_MAX}) {
        std::filesystem::remove(file());
        writeOldVersion();
        for (int writes = 0;; ++writes) {
            disk.writeError = ENOSPC;
            disk.writesLeft = writes;
            disk.errorsLeft = errors;
            const std::string error = openingError(file());
            const bool hasFailed = disk.failedOperations > 0;
            repairDisk();
            // Its tables first, then its pages.
            const std::string now = version();
            ASSERT_TRUE(now == std::to_string(GetParam()) + "\n" || now == "4\n" || error.empty()) << writes << now;
            ASSERT_EQ(runSql(file(), "select count(*) from entry; pragma integrity_check"), "5\nok\n") << writes;
            if (!hasFailed) {
                EXPECT_EQ(error, "");
                EXPECT_GT(writes, 3);
                break;
            }
        }
        EXPECT_EQ(version(), "5\n");
    }
}

TEST_P(StoreVersions, OneWithADamagedEntryIsRefused) {
    writeOldVersion();
    runSql(file(), "update entry set body = replace(body, 'Surname', 'Sername')");
    const std::string error = openingError(file());
    if (GetParam() == 1) {
        EXPECT_EQ(error, "");  // it had nothing to notice it by
        return;
    }
    EXPECT_EQ(error,
              "store " + file() +
                  ": it is damaged (an entry of CallLogDialledCalls is not as it was written); move it away, with the "
                  "files beside it, and put a copy in its place; salvageStore() reads what is whole of it");
    EXPECT_EQ(version(), std::to_string(GetParam()) + "\n");
}

TEST_P(StoreVersions, OneThatHasLostAnEntryIsRefused) {
    writeOldVersion();
    runSql(file(), "delete from entry where unique_id = '3'");
    const std::string error = openingError(file());
    EXPECT_EQ(error, GetParam() == 1
                         ? ""
                         : "store " + file() +
                               ": it is damaged (entries of it are lost); move it away, with the files beside it, and "
                               "put a copy in its place; salvageStore() reads what is whole of it");
}

TEST_P(StoreVersions, OneGetsPagesWithChecksums) {
    writeOldVersion();
    EXPECT_EQ(openingError(file()), "");
    std::string content = contentOf(file());
    for (std::size_t page = 0; page * pageSize < content.size(); ++page) {
        EXPECT_TRUE(calljournal::hasItsChecksum(page + 1, content.substr(page * pageSize, pageSize))) << page;
    }
}

TEST_P(StoreVersions, OneIsBroughtUpToDateOnceWhenSeveralProcessesOpenIt) {
    writeOldVersion();
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < 4; ++i) {
        children.push_back(std::make_unique<Child>([&](const Child::Say& say) { say(openingError(file()) + "."); }));
    }
    for (const auto& child : children) {
        EXPECT_EQ(child->nextLine(), ".");
        EXPECT_TRUE(child->endedWell());
    }
    EXPECT_EQ(version(), "5\n");
    EXPECT_EQ(runSql(file(), "select count(*) from entry"), "5\n");
}

TEST_P(StoreVersions, OneThatCannotBeWrittenIsRefusedWithASentence) {
    writeOldVersion();
    std::filesystem::permissions(file(), std::filesystem::perms(0444));
    std::filesystem::permissions(folder(), std::filesystem::perms(0777));
    Child child([&](const Child::Say& say) {
        becomeNobody();
        say(openingError(file()));
    });
    EXPECT_EQ(child.nextLine(),
              "store " + file() + ": it cannot be written, and an older calljournal wrote it (store version " +
                  std::to_string(GetParam()) + "); make it writable, so that it can be brought up to date");
    EXPECT_TRUE(child.endedWell());
}

TEST_P(StoreVersions, ThatAreNewerAreRefusedWithASentence) {
    ask(writeRequest("CallBacks", "<Entry><UniqueId>a</UniqueId></Entry>"));
    closeStore();
    runSql(file(), "update calljournal_store set version = 6; pragma journal_mode = delete");
    const std::string content = contentOf(file());
    EXPECT_EQ(openingError(file()), "store " + file() +
                                        ": it was written by a newer calljournal (store version 6, this one knows 5); "
                                        "install the newer one");
    EXPECT_TRUE(contentOf(file()) == content);
}

INSTANTIATE_TEST_SUITE_P(Old, StoreVersions, testing::Values(1, 2, 3));

}  // namespace
