#include "BareSqlite.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

namespace {

void demand(bool isRight, sqlite3* database) {
    if (!isRight) {
        std::fprintf(stderr, "bare SQLite: %s\n", sqlite3_errmsg(database));
        std::exit(1);
    }
}

/// Makes the table, which has to be there before statements on it are prepared.
BareDatabase withTables(const std::string& file, const std::vector<const char*>& statements) {
    BareDatabase database(file);
    for (const char* statement : statements) {
        database.execute(statement);
    }
    return database;
}

std::string pageOf(const std::string& condition) {
    return "select id, body from call " + condition + " order by time desc, id desc limit 50";
}

std::string textOf(sqlite3_stmt& row, int column) {
    const void* const text = sqlite3_column_blob(&row, column);
    return {static_cast<const char*>(text), static_cast<std::size_t>(sqlite3_column_bytes(&row, column))};
}

}  // namespace

BareStatement::BareStatement(sqlite3& database, const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    demand(sqlite3_prepare_v3(&database, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) == SQLITE_OK,
           &database);
    statement_.reset(statement);
}

void BareStatement::run(const std::vector<std::string>& values, const std::function<void(sqlite3_stmt& row)>& visit) {
    sqlite3_stmt* const statement = statement_.get();
    int place = 0;
    for (const std::string& value : values) {
        sqlite3_bind_text(statement, ++place, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    }
    int state = sqlite3_step(statement);
    while (state == SQLITE_ROW) {
        visit(*statement);
        state = sqlite3_step(statement);
    }
    demand(state == SQLITE_DONE, sqlite3_db_handle(statement));
    sqlite3_reset(statement);
}

BareDatabase::BareDatabase(const std::string& file) {
    sqlite3* database = nullptr;
    const int state = sqlite3_open(file.c_str(), &database);
    database_.reset(database);
    demand(state == SQLITE_OK, database);
    sqlite3_busy_timeout(database, 30000);
    execute("pragma journal_mode = wal");
    execute("pragma synchronous = full");
}

void BareDatabase::execute(const std::string& sql) {
    demand(sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, database_.get());
}

std::size_t BareDatabase::countOf(const std::string& table) {
    std::size_t count = 0;
    prepare("select count(*) from " + table).run({}, [&](sqlite3_stmt& row) {
        count = static_cast<std::size_t>(sqlite3_column_int64(&row, 0));
    });
    return count;
}

BareEntries::BareEntries(const std::string& file)
    : database_(withTables(file, {"create table if not exists entry (id primary key, body)"})),
      upsert_(database_.prepare(
          "insert into entry (id, body) values (?, ?) on conflict (id) do update set body = excluded.body")) {}

BareIndex::BareIndex(const std::string& file)
    : database_(withTables(file, {"create table if not exists call (id integer primary key, time text, number text, "
                                  "name text, body text)",
                                  "create index if not exists call_time on call (time)",
                                  "create index if not exists call_number on call (number, time)",
                                  "create index if not exists call_name on call (name, time)"})),
      insert_(database_.prepare("insert into call (time, number, name, body) values (?, ?, ?, ?)")),
      newest_(database_.prepare(pageOf(""))),
      ofNumber_(database_.prepare(pageOf("where number = ?"))),
      ofName_(database_.prepare(pageOf("where name >= ? and name < ?"))),
      between_(database_.prepare(pageOf("where time >= ? and time <= ?"))) {}

void BareIndex::insert(const MissedCallItem& entry, const std::string& foldedName, const std::string& body) {
    const auto& call = entry.getMissedCallInfoList().front();
    insert_.run({call.timeDate, call.number, foldedName, body});
}

std::vector<BareRow> BareIndex::rows(BareStatement& statement, const std::vector<std::string>& values) {
    std::vector<BareRow> found;
    statement.run(values, [&](sqlite3_stmt& row) { found.push_back({textOf(row, 0), textOf(row, 1)}); });
    return found;
}

}  // namespace bench
