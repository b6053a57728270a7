#include "StoreSchema.h"

#include <algorithm>
#include <iterator>
#include <soci/soci.h>
#include <string>
#include <vector>

#include "SqliteConnection.h"

namespace calljournal {

namespace {

/// What makes version N + 1 of version N, at index N; an empty file is version 0. Rows that were released stay as they
/// are: a later version is a further row.
///
/// `next_id` is the lowest id that no entry has had. `place` orders the entries of a schema by first insertion. `size` is
/// the length in bytes of id and body together; with it in the index, the length of a reply is known without reading the
/// bodies. Ids and bodies are bytes, not characters; SQLite keeps any bytes in a text column, another database would take
/// its binary type.
const std::vector<const char*> migrations[] = {
    {
        "create table calljournal_store (version integer not null, next_id bigint not null)",
        "insert into calljournal_store (version, next_id) values (1, 1)",
        "create table entry (unique_id text not null, schema_name varchar(32) not null, place bigint not null, "
        "size bigint not null, body text not null, primary key (unique_id, schema_name))",
        "create unique index entry_order on entry (schema_name, place, size)",
    },
};

static_assert(std::size(migrations) == storeVersion, "each version has its migration");

/// Returns the version of the tables, 0 for a file without any table.
int readVersion(SqliteConnection& connection) {
    std::vector<std::string> tables(256);
    connection.sql().get_table_names(), soci::into(tables);
    if (tables.empty()) {
        return 0;
    }
    if (std::find(tables.begin(), tables.end(), "calljournal_store") == tables.end()) {
        throw connection.error("it is the database of another program; name another file");
    }
    int version = 0;
    connection.sql() << "select max(version) from calljournal_store", soci::into(version);
    if (version < 1) {
        throw connection.error("it names no version that there ever was; name another file");
    }
    if (version > storeVersion) {
        throw connection.error("it was written by a newer calljournal (store version " + std::to_string(version) +
                               ", this one knows " + std::to_string(storeVersion) + "); install the newer one");
    }
    return version;
}

void migrate(SqliteConnection& connection) {
    WriteTransaction transaction(connection);
    // Read again: another process may have been faster.
    for (int version = readVersion(connection); version < storeVersion; ++version) {
        for (const char* statement : migrations[version]) {
            connection.sql() << statement;
        }
        const int reached = version + 1;
        connection.sql() << "update calljournal_store set version = :version", soci::use(reached);
    }
    transaction.commit();
}

}  // namespace

void prepareStore(SqliteConnection& connection) {
    const int version = readVersion(connection);
    if (connection.isReadOnly()) {
        if (version < storeVersion) {
            throw connection.error("it cannot be written, and has no tables of this version yet; make it writable");
        }
        return;
    }
    connection.makeDurable();
    if (version < storeVersion) {
        migrate(connection);
    }
}

}  // namespace calljournal
