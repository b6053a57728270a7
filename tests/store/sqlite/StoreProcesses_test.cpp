#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <sqlite3.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "CheckedFiles.h"
#include "StoreTest.h"

namespace {

using std::chrono::milliseconds;

const std::string dialled = "CallLogDialledCalls";
const std::string anEntry = "<Entry><UniqueId>a</UniqueId></Entry>";

using StoreProcesses = StoreTest;

/// Writes entries without ids, one a request, and says the id of each that was acknowledged.
void writeEntries(const std::string& file, int count, const Child::Say& say) {
    const auto store = calljournal::openStore(file);
    const std::string before = envelope(dialled, "<Result>ok</Result><UniqueId>");
    const std::string begin = before.substr(0, before.size() - std::string("</Schema>").size());
    for (int i = 0; i < count; ++i) {
        const std::string reply = store->processRequest(writeRequest(dialled, "<Entry><EntryId>e</EntryId></Entry>"));
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

/// A connection of another program that keeps the file locked for writing, or with whatever else `statements` do.
class Lock {
public:
    explicit Lock(const std::string& file, const char* statements = "begin immediate") {
        sqlite3_open_v2(file.c_str(), &database_, SQLITE_OPEN_READWRITE, calljournal::checkedFiles());
        EXPECT_EQ(sqlite3_exec(database_, statements, nullptr, nullptr, nullptr), SQLITE_OK);
    }
    ~Lock() { sqlite3_close(database_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    sqlite3* database_ = nullptr;
};

class StoreWriters : public StoreTest, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Two, StoreWriters, testing::Values(2));
INSTANTIATE_TEST_SUITE_P(Eight, StoreWriters, testing::Values(8));

TEST_P(StoreWriters, LoseNothingIntoAFileThatNobodyHasCreatedYet) {
    const int writers = GetParam();
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

/// Calls `work` once, before the statement of this process's new connections that follows `statementsLeft` others.
class BetweenStatements {
public:
    BetweenStatements(int statementsLeft, std::function<void()> work)
        : statementsLeft_(statementsLeft), work_(std::move(work)) {
        current = this;
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(watch));
    }
    ~BetweenStatements() { sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(watch)); }
    BetweenStatements(const BetweenStatements&) = delete;
    BetweenStatements& operator=(const BetweenStatements&) = delete;

    bool hasCome() const { return statementsLeft_ < 0; }

private:
    static int watch(sqlite3* database, const char**, const void*) {
        return current->hasCome() ? SQLITE_OK : sqlite3_trace_v2(database, SQLITE_TRACE_STMT, begin, current);
    }

    static int begin(unsigned, void* self, void*, void*) {
        auto& between = *static_cast<BetweenStatements*>(self);
        if (!between.hasCome() && --between.statementsLeft_ < 0) {
            between.work_();
        }
        return 0;
    }

    static BetweenStatements* current;  // SQLite passes nothing on to `watch`

    int statementsLeft_;
    std::function<void()> work_;
};
BetweenStatements* BetweenStatements::current = nullptr;

TEST_F(StoreProcesses, MayCreateAStoreBetweenAnyTwoStatementsOfOneThatOpensIt) {
    for (const std::string mode : {"delete", "wal"}) {
        int statements = 0;
        for (bool isInTime = true; isInTime; ++statements) {
            const std::string name = file(mode + std::to_string(statements));
            runSql(name, "pragma journal_mode = " + mode);
            BetweenStatements creator(statements, [&] {
                try {
                    calljournal::openStore(name, {}, milliseconds(0));
                } catch (const calljournal::StoreError&) {  // locked by the one that opens it
                }
            });
            ASSERT_EQ(openingError(name), "") << mode << ' ' << statements;
            ASSERT_EQ(runSql(name, "select version from calljournal_store"), "5\n") << mode << ' ' << statements;
            isInTime = creator.hasCome();
        }
        EXPECT_GT(statements, 10);
    }
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
            const auto store = calljournal::openStore(file());
            for (say("open");;) {
                store->processRequest(writeRequest(dialled, entries));
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

TEST_F(StoreProcesses, GiveUpAtTheirTimeout) {
    const auto store = calljournal::openStore(file(), {}, milliseconds(50));
    const std::string locked =
        "store " + file() + ": another process has kept it locked for 50 ms; try again when that one is done";
    {
        const Lock lock(file());
        EXPECT_EQ(store->processRequest(writeRequest(dialled, anEntry)), failed(dialled, locked));
        EXPECT_EQ(store->processRequest(deleteRequest(dialled, anEntry)), failed(dialled, locked));
        EXPECT_EQ(store->processRequest(readRequest(dialled)), envelope(dialled, ""));
        EXPECT_THROW(store->exclusively([] { FAIL() << "work without the lock"; }), calljournal::StoreError);
    }
    EXPECT_EQ(store->processRequest(writeRequest(dialled, anEntry)),
              envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId>"));
}

/// Hold on to a file that has no write-ahead log yet, which keeps others from giving it one.
constexpr const char* readWithoutLog = "pragma journal_mode = delete; begin; select count(*) from entry";
constexpr const char* writeWithoutLog = "pragma journal_mode = delete; begin immediate";

TEST_F(StoreProcesses, WaitForThoseThatUseAFileWithoutAWriteAheadLog) {
    for (const char* statements : {readWithoutLog, writeWithoutLog}) {
        store();
        closeStore();
        Child child([&](const Child::Say& say) {
            const Lock lock(file(), statements);
            say("locked");
            std::this_thread::sleep_for(milliseconds(100));
        });
        EXPECT_EQ(child.nextLine(), "locked");
        EXPECT_EQ(openingError(file()), "");
        EXPECT_EQ(runSql(file(), "pragma journal_mode"), "wal\n");
    }
}

TEST_F(StoreProcesses, GiveUpOnThoseThatUseAFileWithoutAWriteAheadLog) {
    for (const char* statements : {readWithoutLog, writeWithoutLog}) {
        store();
        closeStore();
        const Lock lock(file(), statements);
        try {
            const auto store = calljournal::openStore(file(), {}, milliseconds(50));
            FAIL() << "opened";
        } catch (const calljournal::StoreError& error) {
            EXPECT_EQ(
                error.what(),
                "store " + file() + ": another process has kept it locked for 50 ms; try again when that one is done");
        }
    }
}

TEST_F(StoreProcesses, KeepOthersOutOfTheirExclusiveWork) {
    const auto other = calljournal::openStore(file(), {}, milliseconds(50));
    store().exclusively([&] {
        EXPECT_NE(other->processRequest(writeRequest(dialled, anEntry)).find("failed"), std::string::npos);
        ask(readRequest(dialled));
        EXPECT_NE(other->processRequest(writeRequest(dialled, anEntry)).find("failed"), std::string::npos);
    });
    EXPECT_EQ(other->processRequest(writeRequest(dialled, anEntry)),
              envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId>"));
}

}  // namespace
