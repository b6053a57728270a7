#include "KeyTable.h"

#include <algorithm>

namespace calljournal {

namespace {

bool isIn(const std::vector<std::string>& keys, const std::string& key) {
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

}  // namespace

KeyTable::KeyTable(soci::session& session, const std::string& table, const std::string& column)
    : add_(session, "insert into " + table + " values (:schema, :key, :place)"),
      remove_(session,
              "delete from " + table + " where schema_id = :schema and " + column + " = :key and place = :place"),
      find_(session,
            "select 1 from " + table + " where schema_id = :schema and " + column + " = :key and place = :place"),
      countAll_(session, "select count(*) from " + table + " where schema_id = :schema"),
      clear_(session, "delete from " + table) {}

void KeyTable::change(long long schemaId, long long place, const std::vector<std::string>& before,
                      const std::vector<std::string>& now) {
    for (const std::string& key : before) {
        if (!isIn(now, key)) {
            remove_.run(schemaId, key, place);
        }
    }
    for (const std::string& key : now) {
        if (!isIn(before, key)) {
            add_.run(schemaId, key, place);
        }
    }
}

bool KeyTable::holds(long long schemaId, long long place, const std::vector<std::string>& keys) {
    return std::all_of(keys.begin(), keys.end(),
                       [&](const std::string& key) { return find_.start(schemaId, key, place).fetchRow(); });
}

long long KeyTable::count(long long schemaId) {
    long long count = 0;
    countAll_.start(schemaId).fetchRow(count);
    return count;
}

}  // namespace calljournal
