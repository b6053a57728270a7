#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

#include "MissedCallItem.h"

/// What a journal's jobs take at the least: SQLite by its own interface, statements prepared once, the same settings as
/// the store's. Any error ends the program.
namespace bench {

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct FinishStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

class BareStatement {
public:
    BareStatement(sqlite3& database, const std::string& sql);

    /// Executes with these texts bound and calls `visit` for each row.
    void run(const std::vector<std::string>& values, const std::function<void(sqlite3_stmt& row)>& visit = {});

private:
    std::unique_ptr<sqlite3_stmt, FinishStatement> statement_;
};

/// The database in `file`, with a write-ahead log that is synchronised at each commit.
class BareDatabase {
public:
    explicit BareDatabase(const std::string& file);

    void execute(const std::string& sql);
    BareStatement prepare(const std::string& sql) { return {*database_, sql}; }
    std::size_t countOf(const std::string& table);

private:
    std::unique_ptr<sqlite3, CloseDatabase> database_;
};

/// The table `entry(id primary key, body)`.
class BareEntries {
public:
    explicit BareEntries(const std::string& file);

    void upsert(const std::string& id, const std::string& body) { upsert_.run({id, body}); }
    void begin() { database_.execute("begin immediate"); }
    void commit() { database_.execute("commit"); }
    std::size_t count() { return database_.countOf("entry"); }

private:
    BareDatabase database_;
    BareStatement upsert_;
};

/// A row as one who looks for it takes it over.
struct BareRow {
    std::string id;
    std::string body;
};

/// A table of calls with an index for each column that calls are found by.
class BareIndex {
public:
    explicit BareIndex(const std::string& file);

    void begin() { database_.execute("begin immediate"); }
    void commit() { database_.execute("commit"); }
    void insert(const MissedCallItem& entry, const std::string& foldedName, const std::string& body);

    /// The newest 50, of all or of those that meet the condition.
    std::vector<BareRow> newest() { return rows(newest_, {}); }
    std::vector<BareRow> ofNumber(const std::string& number) { return rows(ofNumber_, {number}); }
    std::vector<BareRow> ofName(const std::string& begin) { return rows(ofName_, {begin, begin + '\x7f'}); }
    std::vector<BareRow> between(const std::string& since, const std::string& until) {
        return rows(between_, {since, until});
    }

private:
    static std::vector<BareRow> rows(BareStatement& statement, const std::vector<std::string>& values);

    BareDatabase database_;
    BareStatement insert_;
    BareStatement newest_;
    BareStatement ofNumber_;
    BareStatement ofName_;
    BareStatement between_;
};

}  // namespace bench
