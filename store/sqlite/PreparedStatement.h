#pragma once

#include <soci/soci.h>

namespace calljournal {

/// Returns `query` prepared on `session`, with `values`, each a soci::use or a soci::into, bound. Throws
/// soci::soci_error.
///
/// In steps, because a statement that is made of `session.prepare << query` keeps the connection open for ever where it
/// fails half-way.
template <typename... Values>
soci::statement prepare(soci::session& session, const char* query, const Values&... values) {
    soci::statement statement(session);
    (statement.exchange(values), ...);
    statement.alloc();
    statement.prepare(query);
    statement.define_and_bind();
    return statement;
}

}  // namespace calljournal
