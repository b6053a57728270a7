#include "CheckedFiles.h"

#include <fcntl.h>
#include <filesystem>
#include <sqlite3.h>
#include <string>
#include <unistd.h>

#include "StoreTest.h"

namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t logHeaderSize = 32;
constexpr std::size_t frameSize = pageSize + 24;

/// A connection to a database, with or without checksums.
class Database {
public:
    Database(const std::string& file, const char* vfs) {
        sqlite3_open_v2(file.c_str(), &database_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, vfs);
        int reserved = 8;
        sqlite3_file_control(database_, "main", SQLITE_FCNTL_RESERVE_BYTES, &reserved);
    }
    ~Database() { sqlite3_close(database_); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Returns the values of all rows, each followed by a space, or the name of the error.
    std::string run(const std::string& sql) {
        std::string values;
        const auto append = [](void* target, int columns, char** texts, char**) {
            for (int i = 0; i < columns; ++i) {
                *static_cast<std::string*>(target) += std::string(texts[i] != nullptr ? texts[i] : "NULL") + " ";
            }
            return 0;
        };
        const int code = sqlite3_exec(database_, sql.c_str(), append, &values, nullptr);
        return code == SQLITE_OK                                          ? values
               : sqlite3_extended_errcode(database_) == SQLITE_IOERR_DATA ? "damaged"
                                                                          : sqlite3_errmsg(database_);
    }

    bool hasChecksums() {
        int answer = 0;
        sqlite3_file_control(database_, "main", calljournal::areChecksumsThere, &answer);
        return answer == 1;
    }

    void control(int operation, int argument) { sqlite3_file_control(database_, "main", operation, &argument); }

    sqlite3_file* databaseFile() {
        sqlite3_file* found = nullptr;
        sqlite3_file_control(database_, "main", SQLITE_FCNTL_FILE_POINTER, &found);
        return found;
    }

private:
    sqlite3* database_ = nullptr;
};

const std::string makeTable =
    "pragma journal_mode = wal; create table t (id integer primary key, body text); create index i on t (body);";
const std::string fillTable =
    "with recursive n (x) as (select 1 union all select x + 1 from n where x < 200) "
    "insert into t select x, hex(zeroblob(200)) || x from n;";
const std::string readAll = "select count(*), sum(length(body)) from t; select count(*) from t where body >= ''";
const std::string all = "200 80492 200 ";

class CheckedFiles : public StoreTest {
protected:
    Database open() { return Database(file(), calljournal::checkedFiles()); }

    std::string log() const { return file("journal.db-wal"); }

    void makeDatabase() { EXPECT_EQ(open().run(makeTable + fillTable), "wal "); }

    /// Leaves the files as a process that is killed leaves them, with a log of `transactions` of one row each.
    void makeLog(int transactions) {
        makeDatabase();
        Child child([&](const Child::Say& say) {
            Database database = open();
            for (int i = 0; i < transactions; ++i) {
                database.run("insert into t (body) values ('more')");
            }
            say(database.run("select count(*) from t"));
            for (;;) {
                pause();
            }
        });
        EXPECT_EQ(child.nextLine(), std::to_string(200 + transactions) + " ");
        child.kill();
        EXPECT_FALSE(child.endedWell());
    }

    /// Makes the database as SQLite makes it without this.
    void makePlainDatabase() {
        sqlite3* plain = nullptr;
        sqlite3_open(file().c_str(), &plain);
        EXPECT_EQ(sqlite3_exec(plain, (makeTable + fillTable).c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(plain);
    }

    void expectEachPageIsChecked() {
        const std::string sound = contentOf(file());
        for (std::size_t page = 0; page < sound.size() / pageSize; ++page) {
            std::string content = sound;
            char& byte = content[page * pageSize + 100 + page * 331 % (pageSize - 100)];
            byte = static_cast<char>(byte ^ 4);
            writeFile(file(), content);
            EXPECT_EQ(open().run(readAll), "damaged") << page;
        }
    }
};

TEST_F(CheckedFiles, NoticeOneBitInAnyPage) {
    makeDatabase();
    expectEachPageIsChecked();
}

TEST_F(CheckedFiles, NoticeAPageInThePlaceOfAnother) {
    makeDatabase();
    std::string content = contentOf(file());
    content.replace(3 * pageSize, pageSize, content.substr(4 * pageSize, pageSize));
    writeFile(file(), content);
    EXPECT_EQ(open().run(readAll), "damaged");
}

TEST_F(CheckedFiles, AreReadAndTheirLogsWrittenBackByAnotherProgram) {
    makeLog(20);
    {
        Database other(file(), nullptr);
        EXPECT_EQ(other.run("select count(*) from t"), "220 ");
    }
    EXPECT_FALSE(std::filesystem::exists(log()));
    EXPECT_EQ(open().run("pragma integrity_check; select count(*) from t"), "ok 220 ");
}

TEST_F(CheckedFiles, NoticeAPageThatAnotherProgramWrote) {
    makeDatabase();
    EXPECT_EQ(Database(file(), nullptr).run("update t set body = 'other'"), "");
    EXPECT_EQ(open().run(readAll), "damaged");
}

TEST_F(CheckedFiles, LeaveADatabaseWithoutChecksumsAsItIs) {
    makePlainDatabase();
    {
        Database database = open();
        EXPECT_EQ(database.run(readAll), all);
        EXPECT_FALSE(database.hasChecksums());
        EXPECT_EQ(database.run("update t set body = body || 'x'"), "");
    }
    EXPECT_EQ(Database(file(), nullptr).run("pragma integrity_check"), "ok ");
}

TEST_F(CheckedFiles, GetChecksumsWhenADatabaseIsWrittenAnew) {
    makePlainDatabase();
    {
        Database database = open();
        EXPECT_EQ(database.run("pragma cache_size = 5"), "");  // most pages are written out before the commit
        database.control(calljournal::beginChecksums, pageSize);
        EXPECT_EQ(database.run("vacuum"), "");
        database.control(calljournal::endChecksums, 1);
        EXPECT_EQ(database.run(readAll), all);
        EXPECT_TRUE(database.hasChecksums());
        Database(file(), nullptr).run("pragma wal_checkpoint(truncate)");
    }
    expectEachPageIsChecked();
}

TEST_F(CheckedFiles, ReadPagesThatATransactionWroteOutTwice) {
    Database database = open();
    // With so few pages in memory most are written out before the commit, and again.
    EXPECT_EQ(database.run("pragma cache_size = 5;" + makeTable + fillTable), "wal ");
    EXPECT_EQ(database.run("begin; update t set body = body || 'x'; update t set body = body || 'y';"
                           "update t set body = substr(body, 1, length(body) - 2); commit;" +
                           readAll),
              all);
    EXPECT_EQ(database.run("begin; update t set body = 'lost'; update t set body = 'again'; rollback;" + readAll), all);
    EXPECT_EQ(
        database.run("begin; update t set body = 'first'; savepoint s; update t set body = 'second'; rollback to s;"
                     "commit; select count(*) from t where body = 'first'; pragma integrity_check"),
        "200 ok ");
    EXPECT_EQ(open().run("select count(*) from t where body = 'first'; pragma integrity_check"), "200 ok ");
}

TEST_F(CheckedFiles, GiveAPartOfAPageOnlyIfThePageIsRight) {
    makeDatabase();
    char part[512];
    {
        Database database = open();
        EXPECT_EQ(database.run(readAll), all);
        sqlite3_file* pages = database.databaseFile();
        EXPECT_EQ(pages->pMethods->xRead(pages, part, sizeof part, 2 * pageSize + 1024), SQLITE_OK);
        EXPECT_EQ(std::string(part, sizeof part), contentOf(file()).substr(2 * pageSize + 1024, sizeof part));
        std::string content = contentOf(file());
        content[2 * pageSize] = static_cast<char>(content[2 * pageSize] ^ 1);
        writeFile(file(), content);
        EXPECT_EQ(pages->pMethods->xRead(pages, part, sizeof part, 2 * pageSize + 1024), SQLITE_IOERR_DATA);
        EXPECT_EQ(pages->pMethods->xRead(pages, part, sizeof part, static_cast<sqlite3_int64>(content.size())),
                  SQLITE_IOERR_DATA);
    }
}

TEST_F(CheckedFiles, NoticeALogThatIsDamagedBeforeItsLastTransaction) {
    makeLog(6);
    const std::string database = contentOf(file());
    const std::string sound = contentOf(log());
    const std::size_t frames = (sound.size() - logHeaderSize) / frameSize;
    ASSERT_EQ(frames, 12U);
    const auto rows = [&](std::size_t changed) {
        writeFile(file(), database);
        std::filesystem::remove(file("journal.db-shm"));
        std::string content = sound;
        content[changed] = static_cast<char>(content[changed] ^ 1);
        writeFile(log(), content);
        return open().run("select count(*) from t");
    };
    for (std::size_t byte = 0; byte < logHeaderSize; ++byte) {
        EXPECT_EQ(rows(byte), "damaged") << byte;
    }
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const std::size_t begin = logHeaderSize + frame * frameSize;
        for (const std::size_t byte : {0U, 4U, 8U, 12U, 16U, 20U, 24U, 1000U, 4119U}) {
            // Of the last transaction nobody can say whether it was complete, unless it seems to be two.
            const bool isNoticed = frame < frames - 2 || (frame == frames - 2 && byte == 4);
            EXPECT_EQ(rows(begin + byte), isNoticed ? "damaged" : "205 ") << frame << ", byte " << byte;
        }
    }
    writeFile(file(), database);
    writeFile(log(), sound.substr(0, sound.size() - frameSize));
    EXPECT_EQ(open().run("select count(*) from t"), "205 ");
}

TEST_F(CheckedFiles, NoticeALogThatIsDamagedWhileItIsInUse) {
    Database database = open();
    EXPECT_EQ(database.run("pragma wal_autocheckpoint = 0;" + makeTable + fillTable), "0 wal ");
    std::string content = contentOf(log());
    for (std::size_t frame = 0; logHeaderSize + frame * frameSize < content.size(); ++frame) {
        char& byte = content[logHeaderSize + frame * frameSize + 2000];
        byte = static_cast<char>(byte ^ 1);
    }
    const int descriptor = ::open(log().c_str(), O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(write(descriptor, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    close(descriptor);
    EXPECT_EQ(open().run(readAll), "damaged");
}

}  // namespace
