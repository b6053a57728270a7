#pragma once

#include <soci/soci.h>
#include <string>

#include "PreparedStatement.h"

namespace calljournal {

/// An entry with what is kept beside it, as it is in the table.
struct EntryRow {
    long long place = 0;  ///< Of its insertion; see placesBefore().
    long long schemaId = 0;
    std::string id;
    long long checksum = 0;  ///< Of schema, id, place and body.
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

/// All places of a schema are above this number and below that of the next schema, so its entries are beside each other
/// in the file.
constexpr long long placesBefore(long long schemaId) {
    constexpr long long placesOfASchema = 1LL << 40U;
    return schemaId * placesOfASchema;
}

/// Columns of the table `e`, and where a query for them puts what it finds.
struct RowColumns {
    const char* select;
    void (*exchange)(soci::statement& query, EntryRow& row);
};

inline constexpr RowColumns allColumns = {
    "select e.place, e.schema_id, e.unique_id, e.checksum, e.added, e.changed, e.change_number, e.is_seen, e.newest, "
    "e.numbers, e.name, e.body ",
    [](soci::statement& query, EntryRow& row) {
        query.exchange(soci::into(row.place));
        query.exchange(soci::into(row.schemaId));
        query.exchange(soci::into(row.id));
        query.exchange(soci::into(row.checksum));
        query.exchange(soci::into(row.added));
        query.exchange(soci::into(row.changed));
        query.exchange(soci::into(row.number));
        query.exchange(soci::into(row.isSeen));
        query.exchange(soci::into(row.time));
        query.exchange(soci::into(row.numbers));
        query.exchange(soci::into(row.name));
        query.exchange(soci::into(row.body));
    }};

/// Where the row is among others.
inline constexpr RowColumns cursorColumns = {"select e.place, e.newest ", [](soci::statement& query, EntryRow& row) {
                                                 query.exchange(soci::into(row.place));
                                                 query.exchange(soci::into(row.time));
                                             }};

/// What readers of entries get; the rest of the row says nothing.
inline constexpr RowColumns servedColumns = {"select e.place, e.unique_id, e.checksum, e.newest, e.body ",
                                             [](soci::statement& query, EntryRow& row) {
                                                 query.exchange(soci::into(row.place));
                                                 query.exchange(soci::into(row.id));
                                                 query.exchange(soci::into(row.checksum));
                                                 query.exchange(soci::into(row.time));
                                                 query.exchange(soci::into(row.body));
                                             }};

/// Returns a query for `columns`, which go to `row`; `from` is what follows them, and `values` are bound to it.
template <typename... Values>
soci::statement prepareRows(soci::session& session, const RowColumns& columns, const std::string& from, EntryRow& row,
                            const Values&... values) {
    soci::statement query(session);
    columns.exchange(query, row);
    bindAndPrepare(query, columns.select + from, values...);
    return query;
}

}  // namespace calljournal
