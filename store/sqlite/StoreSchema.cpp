#include "StoreSchema.h"

#include <algorithm>
#include <iterator>
#include <soci/soci.h>
#include <string>
#include <vector>

#include "Checksum.h"
#include "EntryRow.h"
#include "EntryTable.h"
#include "PreparedStatement.h"
#include "SqliteConnection.h"

namespace calljournal {

namespace {

/// Throws StoreDamage if the query gives another number than 0.
void refuseLoss(soci::session& sql, const std::string& countOfLosses) {
    int count = 0;
    sql << countOfLosses, soci::into(count);
    if (count != 0) {
        throw StoreDamage("entries of it are lost");
    }
}

void refuseChange(bool isAsWritten, const std::string& schema) {
    if (!isAsWritten) {
        throw StoreDamage("an entry of " + schema + " is not as it was written");
    }
}

/// Inserts the entries of version 1 or 2, schema by schema in their order, without keys: these come of the bodies.
void copyEntries(soci::session& sql, int version) {
    std::string schema;
    EntryRow row;
    long long place = 0;
    long long checksum = 0;
    PreparedStatement read(sql, "select s.schema_id, s.schema_name, e.unique_id, e.place, e.body, " +
                                    std::string(version == 2 ? "e.checksum" : "0") +
                                    " from stored_schema s join old_entry e on e.schema_name = s.schema_name "
                                    "order by s.schema_id, e.place");
    PreparedStatement write(sql,
                            "insert into entry (place, schema_id, unique_id, added, changed, change_number, is_seen, "
                            "newest, numbers, name, body) values (?, ?, ?, 0, 0, 0, ?, '', '', '', ?)");
    read.start();
    while (read.fetch(row.schemaId, schema, row.id, place, row.body, checksum)) {
        refuseChange(version == 1 || checksum == checksumOfVersion2(schema, row.id, place, row.body), schema);
        row.place = std::max(row.place, placesBefore(row.schemaId)) + 1;
        write.run(row.place, row.schemaId, row.id, row.isSeen, row.body);
    }
}

/// Entries are found by the time of the newest call (`entry_newest` has all that a search for a part of a text
/// reads), by the keys of numbers, by the beginnings of names, by change. `place` is the order of insertion into a
/// schema; it may be given again once the last entry was deleted. `removed_entry` keeps what followers of changes have
/// yet to see. Ids and bodies are bytes, not characters; SQLite keeps any bytes in a text column.
constexpr const char* createTable[] = {
    "create table entry (place integer primary key, schema_id smallint not null, unique_id text not null, "
    "added bigint not null, changed bigint not null, change_number bigint not null, "
    "is_seen smallint not null, newest text not null, numbers text not null, name text not null, body text not null)",
    "create table entry_number (schema_id smallint not null, number_key text not null, place bigint not null, "
    "primary key (schema_id, number_key, place)) without rowid",
    "create table entry_name (schema_id smallint not null, name_key text not null, place bigint not null, "
    "primary key (schema_id, name_key, place)) without rowid",
    "create table removed_entry (change_number integer primary key, schema_id smallint not null, "
    "unique_id text not null, added bigint not null, body text not null)",
    "create table setting (name varchar(32) not null primary key, value text not null)",
    "create table stored_schema (schema_id integer primary key, schema_name varchar(32) not null, "
    "entries bigint not null, unseen bigint not null, bytes bigint not null)",
};
constexpr const char* createIndex[] = {
    "create unique index entry_id on entry (unique_id, schema_id)",
    "create index entry_newest on entry (schema_id, newest, place, is_seen, numbers, name)",
    "create index entry_change on entry (change_number)",
    "create index entry_without_keys on entry (is_seen) where is_seen < 0",
};

template <std::size_t count>
void carryOut(soci::session& sql, const char* const (&statements)[count]) {
    for (const char* statement : statements) {
        sql << statement;
    }
}

/// `next_id` is the lowest id that no entry has had.
void createTables(soci::session& sql) {
    sql << "create table calljournal_store (version integer not null, next_id bigint not null)";
    sql << "insert into calljournal_store (version, next_id) values (0, 1)";
    carryOut(sql, createTable);
    carryOut(sql, createIndex);
}

/// Makes the tables of those of version 1, which had nothing beside the entries, or 2, which had a checksum for each and
/// the sum of them for each schema.
template <int version>
void takeOverEntries(soci::session& sql) {
    if (version == 2) {
        refuseLoss(sql,
                   "select count(*) from schema_total t where entries <> (select count(*) from entry e where "
                   "e.schema_name = t.schema_name) or checksum <> (select coalesce(sum(e.checksum), 0) from entry "
                   "e where e.schema_name = t.schema_name)");
    }
    constexpr const char* before[] = {"drop index entry_order", "alter table entry rename to old_entry"};
    constexpr const char* schemas[] = {
        "insert into stored_schema (schema_name, entries, unseen, bytes) "
        "select distinct schema_name, 0, 0, 0 from old_entry order by schema_name"};
    constexpr const char* after[] = {
        "update stored_schema set "
        "entries = (select count(*) from entry e where e.schema_id = stored_schema.schema_id), "
        "bytes = (select coalesce(sum(length(cast(e.unique_id as blob)) + length(cast(e.body as blob))), 0) "
        "from entry e where e.schema_id = stored_schema.schema_id)",
        "drop table old_entry",
        "drop table if exists schema_total",
    };
    carryOut(sql, before);
    carryOut(sql, createTable);
    carryOut(sql, schemas);
    copyEntries(sql, version);
    carryOut(sql, after);
    carryOut(sql, createIndex);
}

/// Version 3 had checksums and sums, too.
void dropChecksums(soci::session& sql) {
    refuseLoss(sql,
               "select count(*) from stored_schema s where entries <> (select count(*) from entry e where "
               "e.schema_id = s.schema_id) or checksum <> (select coalesce(sum(e.checksum), 0) from entry e where "
               "e.schema_id = s.schema_id)");
    refuseLoss(sql, "select count(*) from entry where schema_id not in (select schema_id from stored_schema)");
    std::string schema;
    EntryRow row;
    long long checksum = 0;
    PreparedStatement read(sql,
                           "select s.schema_name, e.unique_id, e.place, e.body, e.checksum from entry e "
                           "join stored_schema s on s.schema_id = e.schema_id");
    read.start();
    while (read.fetch(schema, row.id, row.place, row.body, checksum)) {
        refuseChange(checksum == checksumOfVersion3(schema, row.id, row.place, row.body), schema);
    }
    constexpr const char* drop[] = {"alter table entry drop column checksum",
                                    "alter table stored_schema drop column checksum"};
    carryOut(sql, drop);
}

/// What makes the tables of version N, at index N - 1, those of today. Version 4 has them already, and pages without
/// checksums.
constexpr void (*migrations[])(soci::session& sql) = {takeOverEntries<1>, takeOverEntries<2>, dropChecksums};

constexpr int versionWithTables = 4;
static_assert(std::size(migrations) + 1 == versionWithTables && versionWithTables + 1 == storeVersion,
              "each version has its migration");

/// Throws StoreError if the file without a table has more pages than its first one and free ones: its tables were lost.
void refuseWhatHadTables(SqliteConnection& connection) {
    int pages = 0;
    int freePages = 0;
    connection.sql() << "pragma page_count", soci::into(pages);
    connection.sql() << "pragma freelist_count", soci::into(freePages);
    if (pages > 1 + freePages) {
        throw connection.damage("its list of tables is empty");
    }
}

/// Returns the version of the tables, 0 for a file without any table. To be called in a transaction: between two of its
/// statements another process may create the tables.
int readVersion(SqliteConnection& connection) {
    std::vector<std::string> tables(256);
    connection.sql().get_table_names(), soci::into(tables);
    if (tables.empty()) {
        refuseWhatHadTables(connection);
        return 0;
    }
    if (std::find(tables.begin(), tables.end(), "calljournal_store") == tables.end()) {
        throw connection.error("it is the database of another program; name another file");
    }
    int version = 0;
    connection.sql() << "select coalesce(max(version), 0) from calljournal_store", soci::into(version);
    if (version < 1) {
        throw connection.error("it names no version that there ever was; name another file");
    }
    if (version > storeVersion) {
        throw connection.error("it was written by a newer calljournal (store version " + std::to_string(version) +
                               ", this one knows " + std::to_string(storeVersion) + "); install the newer one");
    }
    return version;
}

int versionOf(SqliteConnection& connection) {
    Transaction look(connection, Transaction::Scope::reading);
    const int version = readVersion(connection);
    look.commit();
    return version;
}

void setVersion(SqliteConnection& connection, int version) {
    connection.sql() << "update calljournal_store set version = :version", soci::use(version);
}

void migrateTables(SqliteConnection& connection, const std::function<void()>& indexEntries) {
    Transaction transaction(connection, Transaction::Scope::writing);
    // Read again: another process may have been faster.
    const int version = readVersion(connection);
    if (version < versionWithTables) {
        if (version == 0) {
            createTables(connection.sql());
        } else {
            migrations[version - 1](connection.sql());
        }
        setVersion(connection, connection.hasPageChecksums() ? storeVersion : versionWithTables);
        indexEntries();
    }
    transaction.commit();
}

/// Writes all pages anew, with checksums; that is no part of a transaction.
void migratePages(SqliteConnection& connection) {
    if (!connection.hasPageChecksums()) {
        connection.givePageChecksums();
    }
    Transaction transaction(connection, Transaction::Scope::writing);
    setVersion(connection, storeVersion);
    transaction.commit();
}

}  // namespace

void prepareStore(SqliteConnection& connection, const std::function<void()>& indexEntries) {
    const int version = versionOf(connection);
    if (connection.isReadOnly()) {
        if (version == 0) {
            throw connection.error("it cannot be written, and has no tables yet; make it writable");
        }
        if (version < storeVersion) {
            throw connection.error("it cannot be written, and an older calljournal wrote it (store version " +
                                   std::to_string(version) +
                                   "); make it writable, so that it can be brought up to date");
        }
    } else {
        connection.makeDurable();
        if (version < versionWithTables) {
            migrateTables(connection, indexEntries);
        }
        if (versionOf(connection) < storeVersion) {
            migratePages(connection);
        }
    }
    if (!connection.hasPageChecksums()) {
        throw connection.damage("its pages have no checksums");
    }
}

}  // namespace calljournal
