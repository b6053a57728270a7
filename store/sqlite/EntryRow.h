#pragma once

#include <soci/soci.h>
#include <string>

#include "PreparedStatement.h"

namespace calljournal {

/// An entry with what is kept beside it, as it is in the table.
struct EntryRow {
    long long place = 0;  ///< Of its insertion, over all schemas.
    long long schemaId = 0;
    std::string id;
    long long checksum = 0;  ///< Of everything else here.
    long long added = 0;     ///< The number of the change that inserted it.
    long long changed = 0;   ///< Of the last change that did more than mark it as seen.
    long long number = 0;    ///< Of its last change.
    int isSeen = notIndexed;
    std::string time;
    std::string numbers;  ///< The keys of its numbers, a line feed behind each.
    std::string name;
    std::string body;

    /// The value of `isSeen` while the entry has no keys, since it was written without an indexer.
    static constexpr int notIndexed = -1;
};

/// The columns of a row, of the table `e`.
inline constexpr char rowColumns[] =
    "select e.place, e.schema_id, e.unique_id, e.checksum, e.added, e.changed, e.change_number, e.is_seen, e.newest, "
    "e.numbers, e.name, e.body ";

/// Has `query`, which begins with rowColumns, give its rows in `row`.
inline void exchangeRow(soci::statement& query, EntryRow& row) {
    for (long long* number : {&row.place, &row.schemaId}) {
        query.exchange(soci::into(*number));
    }
    query.exchange(soci::into(row.id));
    for (long long* number : {&row.checksum, &row.added, &row.changed, &row.number}) {
        query.exchange(soci::into(*number));
    }
    query.exchange(soci::into(row.isSeen));
    for (std::string* text : {&row.time, &row.numbers, &row.name, &row.body}) {
        query.exchange(soci::into(*text));
    }
}

/// Returns a query for rows; `from` is what follows the columns, and `values` are bound to it.
template <typename... Values>
soci::statement prepareRows(soci::session& session, const std::string& from, EntryRow& row, const Values&... values) {
    soci::statement query(session);
    exchangeRow(query, row);
    bindAndPrepare(query, rowColumns + from, values...);
    return query;
}

}  // namespace calljournal
