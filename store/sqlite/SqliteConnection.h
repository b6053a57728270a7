#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <string>

#include "PreparedStatement.h"
#include "StoreError.h"

namespace calljournal {

/// A SOCI session on one SQLite file, and all that is SQLite's own: opening, durability, locking, and what its errors
/// mean.
///
///     SqliteConnection connection("/users/ann/journal.db", "/users/ann/journal.db", std::chrono::seconds(30));
///     connection.makeDurable();
///     connection.sql() << "insert into ...";
///
/// One thread at a time; not to be used in a forked child.
class SqliteConnection {
public:
    /// Opens `file`, an absolute path that errors call `name`, and creates it and its folders as needed. Nothing is written into an existing
    /// file. A file that cannot be written is opened for reading. Work that another process holds up fails
    /// after `timeout`. Throws StoreError.
    SqliteConnection(std::string file, std::string name, std::chrono::milliseconds timeout);
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    soci::session& sql() { return *session_; }

    bool isReadOnly() const;

    /// Returns whether each page of the file has a checksum; known once the file was read or written.
    bool hasPageChecksums() const;

    /// Writes all pages anew, with checksums. Not in a transaction; throws soci::soci_error, with the file as it was.
    void givePageChecksums();

    /// Returns whether a transaction is open. The database itself ends one after some errors, a full disk for instance.
    bool isInTransaction() const;

    /// Has every commit from now on survive a kill and a power cut: write-ahead log, synchronised at each commit.
    /// Throws StoreError or soci::soci_error.
    void makeDurable();

    /// Executes a statement, a constant, that gives no rows and has no values, and keeps it prepared. Throws
    /// soci::soci_error.
    void execute(const char* statement);

    /// Executes statements that roll back. Not through SOCI, which needs memory and throws. After some errors there is
    /// nothing left to roll back; that is no failure.
    void rollback(const char* statements) noexcept;

    /// Returns a number that differs from the one before if another connection has changed the file in between.
    int dataVersion();

    /// Throws StoreError if the path no longer names the file that is open: what is written to that one is lost.
    void refuseIfMoved() const;

    /// Says what is wrong with this store and what to do.
    StoreError error(const std::string& problem) const;
    StoreError error(const soci::soci_error& failure) const;

    /// Says what about this store is not as it was written; empty if only the database knows.
    StoreError damage(const std::string& what) const;

private:
    void refuseWhatIsNoStore() const;
    void openFile();
    void connect(const std::string& uri);
    void probe();
    /// Waits a moment for a lock that another connection holds, asked for the first time with an `attempt` of 0. Returns
    /// 0 when the time is over.
    static int wait(void* connection, int attempt);

    std::string file_;
    std::string name_;
    std::chrono::milliseconds timeout_;
    std::chrono::steady_clock::time_point waitBegin_;
    std::unique_ptr<soci::session> session_;
    std::map<const char*, PreparedStatement> statements_;
};

/// A transaction, rolled back unless it was committed. Throws soci::soci_error.
class Transaction {
public:
    enum class Scope {
        reading,    ///< Sees one state of the file, whatever others write.
        writing,    ///< No other connection may write while it is open; its beginning waits for those that do.
        savepoint,  ///< A part of the one that is open, rolled back alone. The others fail inside of another.
    };

    Transaction(SqliteConnection& connection, Scope scope);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Commits; if it throws, nothing is committed.
    void commit();

private:
    SqliteConnection& connection_;
    Scope scope_;
    bool isDone_ = false;
};

}  // namespace calljournal
