#pragma once

#include <functional>
#include <optional>
#include <soci/soci.h>
#include <string>
#include <utility>

namespace calljournal {

/// Prepares `statement`, which was made of a session alone, as `query` with `values`, each a soci::use or a soci::into,
/// bound. Throws soci::soci_error.
///
/// In steps, because a statement that is made of `session.prepare << query` keeps the connection open for ever where it
/// fails half-way.
template <typename... Values>
void bindAndPrepare(soci::statement& statement, const std::string& query, const Values&... values) {
    (statement.exchange(values), ...);
    statement.alloc();
    statement.prepare(query);
    statement.define_and_bind();
}

template <typename... Values>
soci::statement prepare(soci::session& session, const std::string& query, const Values&... values) {
    soci::statement statement(session);
    bindAndPrepare(statement, query, values...);
    return statement;
}

/// A statement that is prepared when it is first used: a command uses few of those that there are.
class PreparedStatement {
public:
    explicit PreparedStatement(std::function<soci::statement()> prepare) : prepare_(std::move(prepare)) {}

    soci::statement* operator->() {
        if (!statement_) {
            statement_ = prepare_();
        }
        return &*statement_;
    }

    /// Executes a statement that gives no rows.
    void run() { (*this)->execute(true); }

    /// Executes a query for one row; returns whether there is one. Each fetch up to the last one matters: a query left
    /// in between would hold on to the state of the file that it read.
    bool fetchRow() {
        (*this)->execute();
        bool isThere = false;
        while ((*this)->fetch()) {
            isThere = true;
        }
        return isThere;
    }

private:
    std::function<soci::statement()> prepare_;
    std::optional<soci::statement> statement_;
};

}  // namespace calljournal
