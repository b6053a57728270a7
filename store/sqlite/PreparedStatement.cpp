#include "PreparedStatement.h"

#include <soci/sqlite3/soci-sqlite3.h>

namespace calljournal {

using namespace sqlite_api;

sqlite3* handleOf(soci::session& session) {
    return static_cast<soci::sqlite3_session_backend*>(session.get_backend())->conn_;
}

void PreparedStatement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

/// Returns the index of a parameter, or 0 where there is none.
int PreparedStatement::indexOf(const char* name) const {
    return sqlite3_bind_parameter_index(statement_.get(), name);
}

/// Ends what the statement was doing; prepares it first if that was not done yet.
void PreparedStatement::reset() {
    if (statement_) {
        sqlite3_reset(statement_.get());  // says again how the last row ended
        return;
    }
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(handleOf(session_), sql_.c_str(), static_cast<int>(sql_.size()) + 1,
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    statement_.reset(statement);
    check(code);
}

void PreparedStatement::bind(int index, long long value) {
    check(sqlite3_bind_int64(statement_.get(), index, value));
}

void PreparedStatement::bind(int index, std::string_view value) {
    // No address is no text but null.
    check(sqlite3_bind_text(statement_.get(), index, value.empty() ? "" : value.data(), static_cast<int>(value.size()),
                            SQLITE_STATIC));
}

void PreparedStatement::read(int index, long long& value) {
    value = sqlite3_column_int64(statement_.get(), index);
}

void PreparedStatement::read(int index, int& value) {
    value = sqlite3_column_int(statement_.get(), index);
}

void PreparedStatement::read(int index, std::string& value) {
    // As bytes: for characters SQLite would make a copy that ends in a zero.
    const void* const bytes = sqlite3_column_blob(statement_.get(), index);
    value.assign(static_cast<const char*>(bytes),
                 static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), index)));
}

bool PreparedStatement::next() {
    const int code = sqlite3_step(statement_.get());
    if (code == SQLITE_ROW) {
        return true;
    }
    sqlite3_reset(statement_.get());
    check(code == SQLITE_DONE ? SQLITE_OK : code);
    return false;
}

void PreparedStatement::check(int code) {
    if (code != SQLITE_OK) {
        throw soci::sqlite3_soci_error(sqlite3_errmsg(handleOf(session_)), code);
    }
}

}  // namespace calljournal
