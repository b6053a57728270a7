#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <set>
#include <sqlite3.h>
#include <string>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "StoreTest.h"

namespace {

/// Faults of the disk, and what was asked of it.
struct Disk {
    std::atomic<int> syncs{0};
    int syncError = 0;   ///< errno of every further synchronisation; 0: it works.
    int writesLeft = 0;  ///< How many writes still work, while writeError is not 0.
    int writeError = 0;  ///< errno of the writes after those.
    int failedOperations = 0;
} disk;

int synchronise(int descriptor) {
    ++disk.syncs;
    if (disk.syncError != 0) {
        ++disk.failedOperations;
        errno = disk.syncError;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

/// Tells whether the next write fails, and sets errno if it does.
bool writeFails() {
    if (disk.writeError == 0 || disk.writesLeft-- > 0) {
        return false;
    }
    ++disk.failedOperations;
    errno = disk.writeError;
    return true;
}

ssize_t faultyWrite(int descriptor, const void* data, size_t size) {
    return writeFails() ? -1 : write(descriptor, data, size);
}

ssize_t faultyPwrite(int descriptor, const void* data, size_t size, off_t offset) {
    return writeFails() ? -1 : pwrite(descriptor, data, size, offset);
}

/// Puts the faulty disk under SQLite.
void installFaultyDisk() {
    sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
    vfs->xSetSystemCall(vfs, "write", reinterpret_cast<sqlite3_syscall_ptr>(faultyWrite));
    vfs->xSetSystemCall(vfs, "pwrite", reinterpret_cast<sqlite3_syscall_ptr>(faultyPwrite));
    vfs->xSetSystemCall(vfs, "pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(faultyPwrite));
}

}  // namespace

// SQLite has no way to replace these two; the program's own take the place of the C library's.
extern "C" int fsync(int descriptor) {
    return synchronise(descriptor);
}

extern "C" int fdatasync(int descriptor) {
    return synchronise(descriptor);
}

namespace {

using calljournal::SqlDataAccessService;
using std::chrono::milliseconds;

const std::string dialled = "CallLogDialledCalls";
const std::string anEntry = "<Entry><UniqueId>a</UniqueId></Entry>";

class StoreProcesses : public StoreTest {
protected:
    StoreProcesses() { installFaultyDisk(); }
    ~StoreProcesses() override { repairDisk(); }

    static void repairDisk() {
        disk.writeError = 0;
        disk.syncError = 0;
        disk.failedOperations = 0;
    }
};

/// Five entries of several pages each, without ids.
std::string largeRequest() {
    std::string entries;
    for (int i = 0; i < 5; ++i) {
        entries += "<Entry><EntryId>" + std::string(20000, static_cast<char>('a' + i)) + "</EntryId></Entry>";
    }
    return writeRequest(dialled, entries);
}

/// Writes entries without ids, one a request, and says the id of each that was acknowledged.
void writeEntries(const std::string& file, int count, const Child::Say& say) {
    SqlDataAccessService store(file);
    const std::string before = envelope(dialled, "<Result>ok</Result><UniqueId>");
    const std::string begin = before.substr(0, before.size() - std::string("</Schema>").size());
    for (int i = 0; i < count; ++i) {
        const std::string reply = store.processRequest(writeRequest(dialled, "<Entry><EntryId>e</EntryId></Entry>"));
        if (reply.compare(0, begin.size(), begin) != 0) {
            say("refused: " + reply);
            return;
        }
        say(reply.substr(begin.size(), reply.find('<', begin.size()) - begin.size()));
    }
}

std::string storedIds(const std::string& file) {
    return runSql(file, "select unique_id from entry order by unique_id");
}

std::string diskFull(const std::string& file) {
    return "store " + file + ": the disk is full; free some space and try again";
}

std::string diskTrouble(const std::string& file, int code) {
    return "store " + file + ": the disk fails or refuses (SQLite error " + std::to_string(code) +
           "); look for a full disk, a quota, a limit on file sizes or a broken disk";
}

/// A connection of another program that keeps the file locked for writing.
class Lock {
public:
    explicit Lock(const std::string& file) {
        sqlite3_open(file.c_str(), &database_);
        EXPECT_EQ(sqlite3_exec(database_, "begin immediate", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    ~Lock() { sqlite3_close(database_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    sqlite3* database_ = nullptr;
};

TEST_F(StoreProcesses, WriteAtTheSameTimeIntoAFileThatNobodyHasCreatedYet) {
    constexpr int writers = 4;
    constexpr int entriesOfEach = 25;
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < writers; ++i) {
        children.push_back(
            std::make_unique<Child>([&](const Child::Say& say) { writeEntries(file(), entriesOfEach, say); }));
    }
    std::set<std::string> acknowledged;
    for (const auto& child : children) {
        for (const std::string& id : child->allLines()) {
            EXPECT_TRUE(acknowledged.insert(id).second) << id;
        }
        EXPECT_TRUE(child->endedWell());
    }
    std::string expected;
    for (const std::string& id : acknowledged) {
        expected += id + "\n";
    }
    EXPECT_EQ(acknowledged.size(), static_cast<std::size_t>(writers * entriesOfEach));
    EXPECT_EQ(storedIds(file()), expected);
}

TEST_F(StoreProcesses, LoseNoAcknowledgedEntryWhenTheyAreKilled) {
    std::set<std::string> acknowledged;
    for (int round = 0; round < 12; ++round) {
        Child child([&](const Child::Say& say) { writeEntries(file(), 1000000, say); });
        for (int i = 0; i <= round * 3; ++i) {
            acknowledged.insert(child.nextLine());
        }
        child.kill();
        for (const std::string& id : child.allLines()) {
            acknowledged.insert(id);
        }
        child.endedWell();
        const std::string stored = "\n" + storedIds(file());
        for (const std::string& id : acknowledged) {
            ASSERT_NE(stored.find("\n" + id + "\n"), std::string::npos) << id << " in round " << round;
        }
        ASSERT_EQ(runSql(file(), "pragma integrity_check"), "ok\n");
    }
}

TEST_F(StoreProcesses, LeaveARequestWholeOrUndoneWhenTheyAreKilled) {
    std::string entries;
    for (int i = 0; i < 100; ++i) {
        entries += "<Entry><EntryId>e</EntryId></Entry>";
    }
    for (int round = 0; round < 12; ++round) {
        Child child([&](const Child::Say& say) {
            SqlDataAccessService store(file());
            for (say("open");;) {
                store.processRequest(writeRequest(dialled, entries));
            }
        });
        child.nextLine();
        std::this_thread::sleep_for(milliseconds(round));
        child.kill();
        child.endedWell();
        ASSERT_EQ(runSql(file(), "select count(*) % 100 from entry"), "0\n") << round;
    }
}

TEST_F(StoreProcesses, WaitForTheOneThatWrites) {
    store();
    closeStore();  // a forked child would take over what SQLite knows of an open file
    Child child([&](const Child::Say& say) {
        const Lock lock(file());
        say("locked");
        std::this_thread::sleep_for(milliseconds(300));
    });
    EXPECT_EQ(child.nextLine(), "locked");
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, ""));
    EXPECT_EQ(ask(writeRequest(dialled, anEntry)), envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId>"));
    EXPECT_TRUE(child.endedWell());
}

TEST_F(StoreProcesses, GiveUpWhenTheirPatienceIsAtItsEnd) {
    SqlDataAccessService store(file(), milliseconds(50));
    const std::string locked =
        "store " + file() + ": another process has kept it locked for 50 ms; try again when that one is done";
    {
        const Lock lock(file());
        EXPECT_EQ(store.processRequest(writeRequest(dialled, anEntry)), failed(dialled, locked));
        EXPECT_EQ(store.processRequest(deleteRequest(dialled, anEntry)), failed(dialled, locked));
        EXPECT_EQ(store.processRequest(readRequest(dialled)), envelope(dialled, ""));
        EXPECT_THROW(store.exclusively([] { FAIL() << "work without the lock"; }), calljournal::StoreError);
        EXPECT_EQ(store.findEntry(dialled, "a"), std::nullopt);
    }
    EXPECT_EQ(store.processRequest(writeRequest(dialled, anEntry)),
              envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId>"));
}

TEST_F(StoreProcesses, KeepOthersOutOfTheirExclusiveWork) {
    SqlDataAccessService other(file(), milliseconds(50));
    store().exclusively([&] {
        EXPECT_NE(other.processRequest(writeRequest(dialled, anEntry)).find("failed"), std::string::npos);
        ask(readRequest(dialled));
        EXPECT_NE(other.processRequest(writeRequest(dialled, anEntry)).find("failed"), std::string::npos);
    });
    EXPECT_EQ(other.processRequest(writeRequest(dialled, anEntry)),
              envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId>"));
}

// The disk

TEST_F(StoreProcesses, HaveAnEntryOnDiskBeforeTheReply) {
    store();
    for (int i = 0; i < 3; ++i) {
        const int before = disk.syncs;
        ask(writeRequest(dialled, anEntry));
        EXPECT_GT(disk.syncs, before);
    }
    const int before = disk.syncs;
    ask(deleteRequest(dialled, anEntry));
    EXPECT_GT(disk.syncs, before);
    const int afterDelete = disk.syncs;
    ask(readRequest(dialled));
    EXPECT_EQ(disk.syncs, afterDelete);
}

TEST_F(StoreProcesses, FailWhenTheDiskCannotSynchronise) {
    ask(writeRequest(dialled, anEntry));
    disk.syncError = EIO;
    EXPECT_EQ(ask(largeRequest()), failed(dialled, diskTrouble(file(), 1034)));
    repairDisk();
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, anEntry));
    EXPECT_NE(ask(largeRequest()).find("<Result>ok</Result>"), std::string::npos);
}

TEST_F(StoreProcesses, ChangeNothingWhereverTheDiskIsFull) {
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

TEST_F(StoreProcesses, AreToldWhenTheDiskIsTooFullForANewStore) {
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

TEST_F(StoreProcesses, LoseTheWholeExclusiveWorkWhenTheDiskIsFullInTheMiddle) {
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

TEST_F(StoreProcesses, AreToldOfALimitOnTheSizeOfFiles) {
    store();
    closeStore();
    Child child([&](const Child::Say& say) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {80000, 80000};
        setrlimit(RLIMIT_FSIZE, &limit);
        SqlDataAccessService store(file());
        say(store.processRequest(largeRequest()));
        say(store.processRequest(writeRequest(dialled, anEntry)));
    });
    EXPECT_EQ(child.nextLine(), failed(dialled, diskTrouble(file(), 778)));
    EXPECT_EQ(child.nextLine(), envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId>"));
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, anEntry));
}

}  // namespace
