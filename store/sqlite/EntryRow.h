#pragma once

#include <string>

#include "PreparedStatement.h"

namespace calljournal {

/// An entry with what is kept beside it, as it is in the table.
struct EntryRow {
    long long place = 0;  ///< Of its insertion; see placesBefore().
    long long schemaId = 0;
    std::string id;
    long long added = 0;    ///< The number of the change that inserted it.
    long long changed = 0;  ///< Of the last change that did more than mark it as seen.
    long long number = 0;   ///< Of its last change.
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

/// Columns of the table `e`, and how a row of them is fetched.
struct RowColumns {
    const char* select;
    bool (*fetch)(PreparedStatement& query, EntryRow& row);
};

inline constexpr RowColumns allColumns = {
    "select e.place, e.schema_id, e.unique_id, e.added, e.changed, e.change_number, e.is_seen, e.newest, "
    "e.numbers, e.name, e.body ",
    [](PreparedStatement& query, EntryRow& row) {
        return query.fetch(row.place, row.schemaId, row.id, row.added, row.changed, row.number, row.isSeen, row.time,
                           row.numbers, row.name, row.body);
    }};

/// Where the row is among others.
inline constexpr RowColumns cursorColumns = {"select e.place, e.newest ", [](PreparedStatement& query, EntryRow& row) {
                                                 return query.fetch(row.place, row.time);
                                             }};

/// What readers of entries get; the rest of the row says nothing.
inline constexpr RowColumns servedColumns = {
    "select e.place, e.unique_id, e.newest, e.body ",
    [](PreparedStatement& query, EntryRow& row) { return query.fetch(row.place, row.id, row.time, row.body); }};

}  // namespace calljournal
