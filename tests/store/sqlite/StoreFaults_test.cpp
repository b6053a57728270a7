#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <sys/resource.h>

#include "Faults.h"
#include "FaultyMemory.h"
#include "StoreTest.h"

namespace {

const std::string dialled = "CallLogDialledCalls";
const std::string anEntry = "<Entry><UniqueId>a</UniqueId></Entry>";

class StoreDisk : public StoreTest {
protected:
    StoreDisk() { installFaultyDisk(); }
    ~StoreDisk() override { repairDisk(); }
};

/// Five entries of several pages each, without ids.
std::string largeRequest() {
    std::string entries;
    for (int i = 0; i < 5; ++i) {
        entries += "<Entry><EntryId>" + std::string(20000, static_cast<char>('a' + i)) + "</EntryId></Entry>";
    }
    return writeRequest(dialled, entries);
}

std::string diskFull(const std::string& file) {
    return "store " + file + ": the disk is full; free some space and try again";
}

std::string diskTrouble(const std::string& file, int code) {
    return "store " + file + ": the disk fails or refuses (SQLite error " + std::to_string(code) +
           "); look for a full disk, a quota, a limit on file sizes or a broken disk";
}

TEST_F(StoreDisk, HasAnEntryBeforeTheReply) {
    store();
    for (int i = 0; i < 3; ++i) {
        const int before = disk.syncs;
        ask(writeRequest(dialled, "<Entry><UniqueId>a</UniqueId><EntryId>" + std::to_string(i) + "</EntryId></Entry>"));
        EXPECT_GT(disk.syncs, before);
    }
    const int before = disk.syncs;
    ask(deleteRequest(dialled, anEntry));
    EXPECT_GT(disk.syncs, before);
    const int afterDelete = disk.syncs;
    ask(readRequest(dialled));
    EXPECT_EQ(disk.syncs, afterDelete);
}

TEST_F(StoreDisk, HasTheNamesOfNewFolders) {
    const auto syncsToOpen = [&](const std::string& name) {
        const int before = disk.syncs;
        EXPECT_EQ(openingError(file(name)), "");
        return disk.syncs - before;
    };
    const int inOldFolder = syncsToOpen("journal.db");
    EXPECT_EQ(syncsToOpen("x/journal.db"), inOldFolder + 1);
    EXPECT_EQ(syncsToOpen("y/z/journal.db"), inOldFolder + 2);
    EXPECT_EQ(syncsToOpen("y/z/other.db"), inOldFolder);
}

TEST_F(StoreDisk, FailsTheRequestWhenItCannotSynchronise) {
    ask(writeRequest(dialled, anEntry));
    disk.syncError = EIO;
    EXPECT_EQ(ask(largeRequest()), failed(dialled, diskTrouble(file(), 1034)));
    repairDisk();
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, anEntry));
    EXPECT_NE(ask(largeRequest()).find("<Result>ok</Result>"), std::string::npos);
}

TEST_F(StoreDisk, LeavesTheStoreAsItWasWhereverItFails) {
    for (const int error : {ENOSPC, EIO}) {
        ask(writeRequest(dialled, anEntry));
        const std::string before = everything();
        const std::string reason = error == ENOSPC ? diskFull(file()) : diskTrouble(file(), 778);
        int refused = 0;
        for (int writes = 0;; ++writes) {
            disk.writeError = error;
            disk.writesLeft = writes;
            const std::string reply = ask(largeRequest());
            const bool hasFailed = disk.failedOperations > 0;
            repairDisk();
            if (!hasFailed) {
                EXPECT_NE(reply.find("<Result>ok</Result>"), std::string::npos);
                break;
            }
            ASSERT_EQ(reply, failed(dialled, reason)) << writes;
            ASSERT_EQ(everything(), before) << writes;
            ++refused;
        }
        EXPECT_GT(refused, 5);
        closeStore();
        EXPECT_EQ(runSql(file(), "pragma integrity_check"), "ok\n");
        EXPECT_EQ(runSql(file(), "select count(*) from entry"), "6\n");
        std::filesystem::remove(file());
    }
}

TEST_F(StoreDisk, IsReportedWhenItIsTooFullForANewStore) {
    for (int writes = 0;; ++writes) {
        disk.writeError = ENOSPC;
        disk.writesLeft = writes;
        const std::string error = openingError(file());
        const bool hasFailed = disk.failedOperations > 0;
        repairDisk();
        if (error.empty()) {
            EXPECT_GT(writes, 0);
            break;
        }
        ASSERT_TRUE(hasFailed);
        ASSERT_TRUE(error == diskFull(file()) || error.find(": the disk fails or refuses (") != std::string::npos)
            << error << " after " << writes;
    }
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, ""));
}

TEST_F(StoreDisk, TakesBackTheWholeExclusiveWorkWhenItIsFullInTheMiddle) {
    ask(writeRequest(dialled, anEntry));
    const std::string before = everything();
    const auto work = [&] {
        ask(largeRequest());
        disk.writeError = ENOSPC;
        disk.writesLeft = 0;
        ask(largeRequest());
    };
    EXPECT_THROW(store().exclusively(work), calljournal::StoreError);
    repairDisk();
    EXPECT_EQ(everything(), before);
    EXPECT_NO_THROW(store().exclusively([&] { ask(largeRequest()); }));
}

/// More than SQLite keeps in memory, so that it writes before the commit.
std::string hugeRequest() {
    std::string entries;
    for (int i = 0; i < 40; ++i) {
        entries += "<Entry><EntryId>" + std::string(1000000, 'x') + "</EntryId></Entry>";
    }
    return writeRequest(dialled, entries);
}

TEST_F(StoreDisk, MayFailInTheMiddleOfAnEntryAndTheStoreGoesOn) {
    ask(writeRequest(dialled, anEntry));
    for (const int error : {EIO, ENOSPC}) {
        const std::string before = everything();
        disk.writeError = error;
        disk.writesLeft = 3;
        EXPECT_EQ(ask(hugeRequest()), failed(dialled, error == EIO ? diskTrouble(file(), 778) : diskFull(file())));
        EXPECT_EQ(everything(), before);
        repairDisk();
        EXPECT_EQ(everything(), before);
        EXPECT_NE(ask(largeRequest()).find("<Result>ok</Result>"), std::string::npos);
        EXPECT_NE(everything(), before);
    }
    closeStore();
    EXPECT_EQ(runSql(file(), "select count(*) from entry"), "11\n");
}

TEST_F(StoreDisk, EndsExclusiveWorkAndItsRestIsRefused) {
    ask(writeRequest(dialled, anEntry));
    const std::string before = everything();
    std::string reply;
    const auto work = [&] {
        ask(largeRequest());
        disk.writeError = EIO;
        disk.writesLeft = 3;
        ask(hugeRequest());
        repairDisk();
        reply = ask(writeRequest(dialled, "<Entry><UniqueId>b</UniqueId></Entry>"));
    };
    EXPECT_THROW(store().exclusively(work), calljournal::StoreError);
    EXPECT_EQ(reply, failed(dialled, "store " + file() +
                                         ": an earlier failure has ended the work that this request is part of; start "
                                         "it again"));
    EXPECT_EQ(everything(), before);
}

TEST_F(StoreDisk, MayLimitTheSizeOfFiles) {
    store();
    closeStore();
    Child child([&](const Child::Say& say) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {80000, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &limit);
        const auto store = calljournal::openStore(file());
        say(store->processRequest(largeRequest()));
        say(store->processRequest(writeRequest(dialled, anEntry)));
    });
    EXPECT_EQ(child.nextLine(), failed(dialled, diskTrouble(file(), 778)));
    EXPECT_EQ(child.nextLine(), envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, anEntry));
}

using StoreMemory = StoreTest;

TEST_F(StoreMemory, IsReportedWhenItIsNotEnough) {
    ask(largeRequest());
    const std::string before = everything();
    memory.longest = 90000;
    const std::string reply = ask(readRequest(dialled));
    memory.longest = Memory::any;
    EXPECT_EQ(reply, failed(dialled, "there is not enough memory for this request"));
    EXPECT_EQ(everything(), before);
}

/// Asks `request` with the piece of memory at each place in turn missing, and `failures` of them, and checks that
/// each time it is done whole or not at all. Returns how often it was not.
int failAtEachPlace(const std::function<std::string()>& ask, const std::function<std::string()>& everything,
                    std::size_t failures) {
    const std::string before = everything();
    for (std::size_t place = 0;; ++place) {
        std::string reply;
        memory.left = place;
        memory.failures = failures;
        try {
            reply = ask();
        } catch (const std::bad_alloc&) {
        }
        const bool hasFailed = memory.failures < failures;
        memory = Memory();
        if (!hasFailed) {
            EXPECT_EQ(reply.find("<Result>failed"), std::string::npos);
            return static_cast<int>(place);
        }
        if (everything() != before) {
            ADD_FAILURE() << "changed with the piece " << place << " missing: " << reply;
            return 0;
        }
    }
}

TEST_F(StoreMemory, MayBeMissingAtAnyPlaceOfARequest) {
    ask(writeRequest(dialled, anEntry));
    ask(largeRequest());
    const auto all = [this] { return everything(); };
    const std::string requests[] = {readRequest(dialled), largeRequest(), deleteRequest(dialled, anEntry)};
    for (const std::size_t failures : {std::size_t{1}, Memory::any}) {
        for (const std::string& request : requests) {
            EXPECT_GT(failAtEachPlace([&] { return ask(request); }, all, failures), 3);
        }
        ask(writeRequest(dialled, anEntry));
    }
}

TEST_F(StoreMemory, MayBeMissingAtAnyPlaceOfTheFirstRequest) {
    ask(writeRequest(dialled, anEntry));
    const auto all = [this] {
        std::string content = everything();
        closeStore();
        store();
        return content;
    };
    EXPECT_GT(failAtEachPlace([&] { return ask(readRequest(dialled)); }, all, 1), 3);
}

}  // namespace
