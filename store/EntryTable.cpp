#include "EntryTable.h"

#include <algorithm>

namespace calljournal {

namespace {

/// Ids that the store gives stay below this, so that numbers of time stamp length, which a caller may choose as ids, do
/// not use them up.
constexpr long long idLimit = 1'000'000'000'000'000'000;
constexpr std::size_t maximumIdDigits = 18;

/// Returns the number whose text is `id` as the store writes it, without leading zeros; 0 if there is none.
long long numberOf(std::string_view id) {
    if (id.empty() || id.size() > maximumIdDigits || id[0] == '0') {
        return 0;
    }
    long long number = 0;
    for (const char c : id) {
        if (c < '0' || c > '9') {
            return 0;
        }
        number = number * 10 + (c - '0');
    }
    return number;
}

/// Executes a query for one row of numbers. Each fetch up to the last one matters: a query left in between would hold on
/// to the state of the file that it read.
void fetchRow(soci::statement& query) {
    query.execute();
    while (query.fetch()) {
    }
}

}  // namespace

EntryTable::EntryTable(soci::session& session)
    : put_((session.prepare << "insert into entry (schema_name, unique_id, place, size, body) values (:schema, :id, "
                               "(select coalesce(max(place), 0) + 1 from entry where schema_name = :schema), :size, "
                               ":body) on conflict (unique_id, schema_name) do update set size = excluded.size, "
                               "body = excluded.body",
            soci::use(schema_, "schema"), soci::use(id_, "id"), soci::use(size_, "size"), soci::use(body_, "body"))),
      remove_((session.prepare << "delete from entry where schema_name = :schema and unique_id = :id",
               soci::use(schema_, "schema"), soci::use(id_, "id"))),
      readNextId_((session.prepare << "select next_id from calljournal_store", soci::into(number_))),
      writeNextId_((session.prepare << "update calljournal_store set next_id = :number where next_id < :number",
                    soci::use(number_, "number"))),
      list_((session.prepare << "select unique_id, body from entry where schema_name = :schema order by place",
             soci::use(schema_, "schema"), soci::into(foundId_), soci::into(foundBody_))),
      find_((session.prepare << "select body from entry where schema_name = :schema and unique_id = :id",
             soci::use(schema_, "schema"), soci::use(id_, "id"), soci::into(foundBody_))),
      extent_((session.prepare << "select count(*), cast(coalesce(sum(size), 0) as bigint) from entry "
                                  "where schema_name = :schema",
               soci::use(schema_, "schema"), soci::into(count_), soci::into(number_))) {}

void EntryTable::put(std::string_view schema, std::string_view id, std::string_view body) {
    schema_ = schema;
    id_ = id;
    body_ = body;
    size_ = static_cast<long long>(id.size() + body.size());
    put_.execute(true);
}

void EntryTable::remove(std::string_view schema, std::string_view id) {
    schema_ = schema;
    id_ = id;
    remove_.execute(true);
}

std::string EntryTable::takeNextId() {
    fetchRow(readNextId_);
    if (number_ >= idLimit) {
        return {};
    }
    const std::string id = std::to_string(number_);
    ++number_;
    writeNextId_.execute(true);
    return id;
}

void EntryTable::skipId(std::string_view id) {
    number_ = numberOf(id) + 1;
    if (number_ > 1) {
        writeNextId_.execute(true);
    }
}

void EntryTable::forEach(std::string_view schema,
                         const std::function<void(std::string_view id, std::string_view body)>& visit) {
    schema_ = schema;
    list_.execute();
    while (list_.fetch()) {
        visit(foundId_, foundBody_);
    }
}

std::optional<std::string> EntryTable::find(std::string_view schema, std::string_view id) {
    schema_ = schema;
    id_ = id;
    std::optional<std::string> body;
    find_.execute();
    while (find_.fetch()) {
        body = foundBody_;
    }
    return body;
}

EntryTable::Extent EntryTable::extent(std::string_view schema) {
    schema_ = schema;
    fetchRow(extent_);
    return {static_cast<std::size_t>(count_), static_cast<std::size_t>(number_)};
}

}  // namespace calljournal
