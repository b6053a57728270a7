#include "KeyTable.h"

#include <algorithm>

namespace calljournal {

namespace {

bool isIn(const std::vector<std::string>& keys, const std::string& key) {
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

}  // namespace

KeyTable::KeyTable(soci::session& session, const std::string& table, const std::string& column)
    : add_([=, &session] {
          return prepare(session, "insert into " + table + " values (:schema, :key, :place)", soci::use(schemaId_),
                         soci::use(key_), soci::use(place_));
      }),
      remove_([=, &session] {
          return prepare(
              session,
              "delete from " + table + " where schema_id = :schema and " + column + " = :key and place = :place",
              soci::use(schemaId_), soci::use(key_), soci::use(place_));
      }),
      find_([=, &session] {
          return prepare(session,
                         "select count(*) from " + table + " where schema_id = :schema and " + column +
                             " = :key and place = :place",
                         soci::use(schemaId_), soci::use(key_), soci::use(place_), soci::into(count_));
      }),
      countAll_([=, &session] {
          return prepare(session, "select count(*) from " + table + " where schema_id = :schema", soci::use(schemaId_),
                         soci::into(count_));
      }),
      clear_([=, &session] { return prepare(session, "delete from " + table); }) {}

void KeyTable::change(long long schemaId, long long place, const std::vector<std::string>& before,
                      const std::vector<std::string>& now) {
    schemaId_ = schemaId;
    place_ = place;
    for (const std::string& key : before) {
        if (!isIn(now, key)) {
            key_ = key;
            remove_.run();
        }
    }
    for (const std::string& key : now) {
        if (!isIn(before, key)) {
            key_ = key;
            add_.run();
        }
    }
}

bool KeyTable::holds(long long schemaId, long long place, const std::vector<std::string>& keys) {
    schemaId_ = schemaId;
    place_ = place;
    return std::all_of(keys.begin(), keys.end(), [&](const std::string& key) {
        key_ = key;
        find_.fetchRow();
        return count_ == 1;
    });
}

long long KeyTable::count(long long schemaId) {
    schemaId_ = schemaId;
    countAll_.fetchRow();
    return count_;
}

}  // namespace calljournal
