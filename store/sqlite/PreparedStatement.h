#pragma once

#include <memory>
#include <soci/soci.h>
#include <string>
#include <string_view>

namespace sqlite_api {
struct sqlite3;
struct sqlite3_stmt;
}  // namespace sqlite_api

namespace calljournal {

/// Returns the connection of an SQLite session.
sqlite_api::sqlite3* handleOf(soci::session& session);

/// A statement by SQLite's own interface, since SOCI's takes about as long as the database does. It is prepared when it
/// is first used: a command uses few of those that there are.
///
///     PreparedStatement query(session, "select unique_id, body from entry where place > :place");
///     query.start(place);
///     while (query.fetch(id, body)) {
///     }
///
/// One that was left before its last row, and was not started again, holds on to the state of the file that it read.
/// All functions throw soci::soci_error.
class PreparedStatement {
public:
    /// Uses the session, which must outlive the statement.
    PreparedStatement(soci::session& session, std::string sql) : session_(session), sql_(std::move(sql)) {}

    /// Begins anew with `values`, numbers and texts in the order of the parameters. The texts must stay as they are until
    /// the last row was fetched.
    template <typename... Values>
    PreparedStatement& start(const Values&... values) {
        reset();
        int index = 0;
        (bind(++index, values), ...);
        return *this;
    }

    /// Gives a value to the parameter `name`, such as ":place", if the statement has it; behind start().
    template <typename Value>
    void bind(const char* name, const Value& value) {
        const int index = indexOf(name);
        if (index != 0) {
            bind(index, value);
        }
    }

    /// Reads the next row into `columns`; false, and nothing read, behind the last one.
    template <typename... Columns>
    bool fetch(Columns&... columns) {
        const bool isThere = next();
        if (isThere) {
            int index = 0;
            (read(index++, columns), ...);
        }
        return isThere;
    }

    /// Reads the only row that is wanted, as fetch() does.
    template <typename... Columns>
    bool fetchRow(Columns&... columns) {
        const bool isThere = fetch(columns...);
        reset();
        return isThere;
    }

    /// Executes a statement that gives no rows.
    template <typename... Values>
    void run(const Values&... values) {
        start(values...).fetchRow();
    }

    /// Leaves the rows that were not fetched.
    void reset();

private:
    struct Finalize {
        void operator()(sqlite_api::sqlite3_stmt* statement) const;
    };

    int indexOf(const char* name) const;
    void bind(int index, long long value);
    void bind(int index, std::string_view value);
    void read(int index, long long& value);
    void read(int index, int& value);
    void read(int index, std::string& value);
    bool next();
    void check(int code);

    soci::session& session_;
    std::string sql_;
    std::unique_ptr<sqlite_api::sqlite3_stmt, Finalize> statement_;
};

}  // namespace calljournal
