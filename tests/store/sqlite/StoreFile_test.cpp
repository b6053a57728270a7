#include <filesystem>
#include <set>
#include <sqlite3.h>
#include <string>
#include <sys/stat.h>

#include "SqliteStore.h"
#include "StoreTest.h"

namespace {

const std::string dialled = "CallLogDialledCalls";
const std::string anEntry = "<Entry><UniqueId>a</UniqueId></Entry>";
const std::string anotherEntry = "<Entry><UniqueId>b</UniqueId></Entry>";

using StoreFile = StoreTest;

TEST_F(StoreFile, IsCreatedWithItsFoldersForTheUserAlone) {
    const std::string url = "sqlite3://" + file("x/y/journal.db");
    EXPECT_EQ(openingError(url), "");
    struct stat status {};
    for (const std::string& created : {file("x"), file("x/y")}) {
        ASSERT_EQ(stat(created.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0700U) << created;
    }
    EXPECT_TRUE(std::filesystem::is_regular_file(file("x/y/journal.db")));
}

TEST_F(StoreFile, MayHaveAnyName) {
    for (const std::string name : {"a b  c.db", "100%25.db", "what?mode=ro", "a#b", "it's \"it\"", "a=b", "back\\slash",
                                   "\xc3\xa4\xff\n", ":memory:", "-x", "{~}", "[_]"}) {
        {
            const auto store = calljournal::openStore(file(name));
            store->processRequest(writeRequest(dialled, anEntry));
        }
        EXPECT_TRUE(std::filesystem::is_regular_file(file(name))) << name;
        const auto store = calljournal::openStore(file(name));
        EXPECT_EQ(store->processRequest(readRequest(dialled)), envelope(dialled, anEntry)) << name;
    }
}

TEST_F(StoreFile, KeepsItsEntriesWhenItIsOpenedAgain) {
    ask(writeRequest(dialled, anEntry));
    ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry>"));
    const std::string before = everything();
    closeStore();
    EXPECT_EQ(everything(), before);
    closeStore();
    EXPECT_EQ(ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry>")),
              envelope(dialled, "<Result>ok</Result><UniqueId>2</UniqueId>"));
}

TEST_F(StoreFile, MayBeEmptyOrADatabaseWithoutTables) {
    writeFile(file(), "");
    EXPECT_EQ(ask(writeRequest(dialled, anEntry)), envelope(dialled, "<Result>ok</Result><UniqueId>a</UniqueId>"));
    runSql(file("bare.db"), "pragma user_version = 1");
    EXPECT_GT(std::filesystem::file_size(file("bare.db")), 0U);
    EXPECT_EQ(openingError(file("bare.db")), "");
}

TEST_F(StoreFile, RecordsItsVersionAndHasAWriteAheadLog) {
    store();
    EXPECT_EQ(runSql(file(), "select version from calljournal_store"), "5\n");
    EXPECT_EQ(runSql(file(), "pragma journal_mode"), "wal\n");
}

TEST_F(StoreFile, IsRefusedIfItIsNotADatabase) {
    for (const std::string& content : {std::string("x"), std::string("<?xml version=\"1.0\"?>"),
                                       std::string(100000, 'x'), std::string(5000, '\0')}) {
        writeFile(file(), content);
        EXPECT_EQ(openingError(file()),
                  "store " + file() + ": it is not a SQLite database; name another file or move this one away");
        EXPECT_EQ(contentOf(file()), content);
    }
}

TEST_F(StoreFile, IsLookedAtHoweverLongItIs) {
    writeFile(file(), "no database");
    std::filesystem::resize_file(file(), std::uintmax_t{5} << 30U);
    EXPECT_EQ(openingError(file()),
              "store " + file() + ": it is not a SQLite database; name another file or move this one away");
}

TEST_F(StoreFile, IsRefusedIfItIsTheDatabaseOfAnotherProgram) {
    runSql(file(), "create table entry (x); insert into entry values (1)");
    const std::string content = contentOf(file());
    EXPECT_EQ(openingError(file()), "store " + file() + ": it is the database of another program; name another file");
    EXPECT_EQ(contentOf(file()), content);
}

TEST_F(StoreFile, IsRefusedIfItNamesNoVersion) {
    store();
    closeStore();
    runSql(file(), "update calljournal_store set version = 0");
    EXPECT_EQ(openingError(file()), "store " + file() + ": it names no version that there ever was; name another file");
    runSql(file(), "delete from calljournal_store");
    EXPECT_NE(openingError(file()), "");
}

TEST_F(StoreFile, IsRefusedIfItIsADirectoryOrNoFile) {
    EXPECT_EQ(openingError(folder()), "store " + folder() + ": it is a directory; name a file in it");
    ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(openingError(file("pipe")), "store " + file("pipe") + ": it is not a regular file; name another one");
    EXPECT_EQ(openingError("/dev/null"), "store /dev/null: it is not a regular file; name another one");
}

TEST_F(StoreFile, IsRefusedIfItsFolderIsAFile) {
    writeFile(file("x"), "");
    EXPECT_EQ(openingError(file("x/journal.db")),
              "store " + file("x/journal.db") +
                  ": it cannot be opened (Not a directory); name another file or give access "
                  "to this one");
    EXPECT_EQ(
        openingError(file("x/y/journal.db")),
        "store " + file("x/y/journal.db") + ": its folder cannot be created (Not a directory); name another file");
}

TEST_F(StoreFile, IsRefusedIfItsNameIsTooLong) {
    const std::string path = file(std::string(300, 'x'));
    EXPECT_EQ(openingError(path), "store " + path +
                                      ": it cannot be opened (File name too long); name another file or give access to "
                                      "this one");
}

TEST_F(StoreFile, IsRefusedWhereItCannotBeCreated) {
    std::filesystem::permissions(folder(), std::filesystem::perms(0555));
    Child child([&](const Child::Say& say) {
        becomeNobody();
        say(openingError(file()));
        say(openingError(file("x/journal.db")));
    });
    EXPECT_EQ(child.nextLine(),
              "store " + file() +
                  ": it cannot be opened (Permission denied); name another file or give access to this "
                  "one");
    EXPECT_EQ(child.nextLine(), "store " + file("x/journal.db") +
                                    ": its folder cannot be created (Permission denied); name another file");
    EXPECT_TRUE(child.endedWell());
}

TEST_F(StoreFile, IsReadWhereItCannotBeWritten) {
    ask(writeRequest(dialled, anEntry));
    closeStore();
    const auto readAndWrite = [&](const Child::Say& say) {
        becomeNobody();
        const auto store = calljournal::openStore(file());
        say(store->processRequest(readRequest(dialled)));
        say(store->processRequest(writeRequest(dialled, anotherEntry)));
        say(store->processRequest(deleteRequest(dialled, anEntry)));
        say(store->processRequest(readRequest(dialled)));
    };
    const std::string refusal = failed(dialled, "store " + file() +
                                                    ": it cannot be written; make writable the file, its folder and "
                                                    "the files beside it that end in -wal and -shm");
    struct Case {
        const char* story;
        unsigned folderMode;
        unsigned fileMode;
    };
    for (const Case& row : {Case{"file", 0777, 0444}, Case{"folder", 0555, 0666}, Case{"both", 0555, 0444}}) {
        std::filesystem::permissions(folder(), std::filesystem::perms(row.folderMode));
        std::filesystem::permissions(file(), std::filesystem::perms(row.fileMode));
        Child child(readAndWrite);
        EXPECT_EQ(child.nextLine(), envelope(dialled, anEntry)) << row.story;
        EXPECT_EQ(child.nextLine(), refusal) << row.story;
        EXPECT_EQ(child.nextLine(), refusal) << row.story;
        EXPECT_EQ(child.nextLine(), envelope(dialled, anEntry)) << row.story;
        EXPECT_TRUE(child.endedWell()) << row.story;
        // A reader leaves the log and its index behind where it may create them.
        std::filesystem::permissions(folder(), std::filesystem::perms(0777));
        std::filesystem::remove(file("journal.db-wal"));
        std::filesystem::remove(file("journal.db-shm"));
    }
}

TEST_F(StoreFile, IsRefusedIfItIsEmptyAndCannotBeWritten) {
    writeFile(file(), "");
    std::filesystem::permissions(file(), std::filesystem::perms(0444));
    std::filesystem::permissions(folder(), std::filesystem::perms(0555));
    Child child([&](const Child::Say& say) {
        becomeNobody();
        say(openingError(file()));
    });
    EXPECT_EQ(child.nextLine(), "store " + file() + ": it cannot be written, and has no tables yet; make it writable");
    EXPECT_TRUE(child.endedWell());
}

TEST_F(StoreFile, IsRefusedIfItCannotBeRead) {
    store();
    closeStore();
    std::filesystem::permissions(folder(), std::filesystem::perms(0777));
    std::filesystem::permissions(file(), std::filesystem::perms(0));
    Child child([&](const Child::Say& say) {
        becomeNobody();
        say(openingError(file()));
    });
    EXPECT_EQ(child.nextLine(),
              "store " + file() +
                  ": it cannot be opened (Permission denied); name another file or give access to this "
                  "one");
    EXPECT_TRUE(child.endedWell());
}

TEST_F(StoreFile, IsRefusedIfItsLogIsADirectory) {
    store();
    closeStore();
    std::filesystem::create_directory(file("journal.db-wal"));
    EXPECT_EQ(openingError(file()),
              "store " + file() + ": it cannot be opened; give access to the file and its folder");
}

/// Has SQLite open files as on a file system on which processes cannot share memory.
class NoSharedMemory {
public:
    NoSharedMemory() { sqlite3_vfs_register(sqlite3_vfs_find("unix-dotfile"), 1); }
    ~NoSharedMemory() { sqlite3_vfs_register(usual_, 1); }
    NoSharedMemory(const NoSharedMemory&) = delete;
    NoSharedMemory& operator=(const NoSharedMemory&) = delete;

private:
    sqlite3_vfs* usual_ = sqlite3_vfs_find(nullptr);
};

TEST_F(StoreFile, IsRefusedWhereItCannotHaveAWriteAheadLog) {
    const NoSharedMemory fileSystem;
    EXPECT_EQ(openingError(file()),
              "store " + file() + ": its file system cannot carry a write-ahead log; name a file on a local disk");
}

TEST_F(StoreFile, IsForItsUserAloneInAnyFolder) {
    std::filesystem::permissions(folder(), std::filesystem::perms(0777));
    ask(writeRequest(dialled, "<Entry><EntryId>x</EntryId></Entry>"));
    for (const char* name : {"journal.db", "journal.db-wal", "journal.db-shm"}) {
        struct stat status = {};
        ASSERT_EQ(stat(file(name).c_str(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777U, 0600U) << name;
    }
}

TEST_F(StoreFile, IsDamagedWithoutATable) {
    store();
    closeStore();
    runSql(file(), "drop table entry");
    EXPECT_EQ(ask(readRequest(dialled)),
              failed(dialled, "store " + file() +
                                  ": it is damaged (no such table: entry); move it away, with the files beside it, and "
                                  "put a copy in its place; salvageStore() reads what is whole of it"));
}

// A reader that got an empty list would take every caller for a new one.
TEST_F(StoreFile, RefusesAReplyThatIsTooLong) {
    ask(writeRequest(dialled, "<Entry><EntryId>" + std::string(700, 'x') + "</EntryId></Entry>"));
    const std::string whole = ask(readRequest(dialled));
    closeStore();
    const auto replyOf = [&](std::size_t longest) {
        return calljournal::openSqliteStore(file(), {}, std::chrono::seconds(1), longest)
            ->processRequest(readRequest(dialled));
    };
    EXPECT_EQ(replyOf(2000), whole);
    EXPECT_EQ(replyOf(800), failed(dialled, "store " + file() + ": its " + dialled +
                                                " are more than one reply can hold (800 bytes); read them by pages"));
}

/// The names and bytes of all files in the folder.
std::string folderContent(const std::string& folder) {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.insert(entry.path().filename().string() + "\n" + contentOf(entry.path().string()));
    }
    std::string all;
    for (const std::string& file : files) {
        all += file;
    }
    return all;
}

class StoreCopy : public StoreFile {
protected:
    static constexpr const char* anEntry = "<Entry><UniqueId>a</UniqueId></Entry>";

    void leaveALog() {
        Child child([&](const Child::Say& say) {
            say(ask(writeRequest(dialled, anEntry)).find("ok") != std::string::npos ? "ok" : "failed");
            pause();
        });
        EXPECT_EQ(child.nextLine(), "ok");
        child.kill();
        child.endedWell();
    }
};

TEST_F(StoreCopy, LeavesFolderAndBytesAsTheyAre) {
    leaveALog();
    const std::string before = folderContent(folder());
    {
        const auto copy = calljournal::openStoreCopy(file());
        EXPECT_EQ(copy->processRequest(readRequest(dialled)), envelope(dialled, anEntry));
        EXPECT_NE(copy->processRequest(deleteRequest(dialled, anEntry)).find("ok"), std::string::npos);
    }
    EXPECT_TRUE(folderContent(folder()) == before);
}

TEST_F(StoreCopy, OfALinkHasTheLogOfTheFile) {
    leaveALog();
    std::filesystem::create_directory(file("links"));
    std::filesystem::create_symlink(file(), file("links/journal.db"));
    EXPECT_EQ(calljournal::openStoreCopy(file("links/journal.db"))->processRequest(readRequest(dialled)),
              envelope(dialled, anEntry));
}

TEST_F(StoreCopy, IsWholeWhileOthersWriteAndClose) {
    ask(writeRequest(dialled, anEntry));
    closeStore();
    Child child([&](const Child::Say& say) {
        say("begin");
        for (int i = 0; i < 300; ++i) {
            calljournal::openStore(file())->processRequest(writeRequest(dialled, anEntry));
        }
    });
    EXPECT_EQ(child.nextLine(), "begin");
    for (int i = 0; i < 40; ++i) {
        ASSERT_EQ(calljournal::openStoreCopy(file())->processRequest(readRequest(dialled)), envelope(dialled, anEntry));
    }
    EXPECT_TRUE(child.endedWell());
}

TEST_F(StoreCopy, IsBroughtUpToDateAloneAndNamesTheStore) {
    runSql(file(), contentOf(VERSIONS "/version2.sql"));
    const std::string before = folderContent(folder());
    EXPECT_NE(calljournal::openStoreCopy(file())->processRequest(readRequest(dialled)).find("Hara"), std::string::npos);
    EXPECT_TRUE(folderContent(folder()) == before);
    runSql(file(), "delete from entry");
    try {
        calljournal::openStoreCopy(file());
        FAIL();
    } catch (const calljournal::StoreError& error) {
        EXPECT_EQ(std::string(error.what()).substr(0, file().size() + 21), "store " + file() + ": it is damaged");
    }
}

TEST_F(StoreFile, IsFoundDamagedWhenItIs) {
    std::string entries;
    for (int i = 0; i < 500; ++i) {
        entries += "<Entry><EntryId>" + std::string(500, 'x') + "</EntryId></Entry>";
    }
    ask(writeRequest(dialled, entries));
    closeStore();
    std::string content = contentOf(file());
    content.replace(8192, content.size() - 8192, content.size() - 8192, '\xa5');
    writeFile(file(), content);
    const std::string damage = "store " + file() +
                               ": it is damaged (a page of it is not as it was written); move it away, with the files "
                               "beside it, and put a copy in its place; salvageStore() reads what is whole of it";
    EXPECT_EQ(ask(readRequest(dialled)), failed(dialled, damage));
    EXPECT_EQ(ask(readRequest(dialled)), failed(dialled, damage));
}

TEST_F(StoreFile, IsNoLongerUsedAfterItWasMovedOrDeleted) {
    ask(writeRequest(dialled, anEntry));
    std::filesystem::rename(file(), file("moved.db"));
    const std::string refusal =
        failed(dialled, "store " + file() + ": it was moved, replaced or deleted while it was open; open it again");
    EXPECT_EQ(ask(writeRequest(dialled, anotherEntry)), refusal);
    EXPECT_EQ(ask(readRequest(dialled)), refusal);
    std::filesystem::rename(file("moved.db"), file());
    EXPECT_EQ(ask(readRequest(dialled)), envelope(dialled, anEntry));
    std::filesystem::remove(file());
    EXPECT_EQ(ask(readRequest(dialled)), refusal);
}

}  // namespace
