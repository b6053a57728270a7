#include "EntryTable.h"

#include <algorithm>

#include "EntryChecksum.h"
#include "PreparedStatement.h"

namespace calljournal {

namespace {

/// Ids that the store gives stay below this, so that numbers of time stamp length, which a caller may choose as ids, do
/// not use them up.
constexpr long long idLimit = 1'000'000'000'000'000'000;
constexpr std::size_t maximumIdDigits = 18;

/// Returns the number whose text is `id` as the store writes it, without leading zeros; 0 if there is none.
long long numberOf(std::string_view id) {
    const bool isNumber = !id.empty() && id.size() <= maximumIdDigits && id[0] != '0' &&
                          id.find_first_not_of("0123456789") == std::string_view::npos;
    return isNumber ? std::stoll(std::string(id)) : 0;
}

/// Executes a query for one row of numbers; returns whether there is one. Each fetch up to the last one matters: a query
/// left in between would hold on to the state of the file that it read.
bool fetchRow(soci::statement& query) {
    query.execute();
    bool isThere = false;
    while (query.fetch()) {
        isThere = true;
    }
    return isThere;
}

}  // namespace

EntryTable::EntryTable(soci::session& session)
    : locate_(prepare(session, "select place, checksum from entry where schema_name = :schema and unique_id = :id",
                      soci::use(schema_, "schema"), soci::use(id_, "id"), soci::into(place_), soci::into(checksum_))),
      readNextPlace_(prepare(session, "select coalesce(max(place), 0) + 1 from entry where schema_name = :schema",
                             soci::use(schema_, "schema"), soci::into(place_))),
      put_(prepare(session,
                   "insert into entry (schema_name, unique_id, place, size, checksum, body) values (:schema, "
                   ":id, :place, :size, :checksum, :body) on conflict (unique_id, schema_name) do update set "
                   "size = excluded.size, checksum = excluded.checksum, body = excluded.body",
                   soci::use(schema_, "schema"), soci::use(id_, "id"), soci::use(place_, "place"),
                   soci::use(size_, "size"), soci::use(checksum_, "checksum"), soci::use(body_, "body"))),
      remove_(prepare(session, "delete from entry where schema_name = :schema and unique_id = :id",
                      soci::use(schema_, "schema"), soci::use(id_, "id"))),
      addToTotal_(prepare(session,
                          "insert into schema_total (schema_name, entries, checksum) values (:schema, "
                          ":entries, :checksum) on conflict (schema_name) do update set entries = "
                          "schema_total.entries + excluded.entries, checksum = schema_total.checksum + "
                          "excluded.checksum",
                          soci::use(schema_, "schema"), soci::use(count_, "entries"),
                          soci::use(checksum_, "checksum"))),
      readTotal_(prepare(session, "select entries, checksum from schema_total where schema_name = :schema",
                         soci::use(schema_, "schema"), soci::into(count_), soci::into(number_))),
      readNextId_(prepare(session, "select next_id from calljournal_store", soci::into(number_))),
      writeNextId_(prepare(session, "update calljournal_store set next_id = :number where next_id < :number",
                           soci::use(number_, "number"))),
      countId_(prepare(session, "select count(*) from entry where unique_id = :id", soci::use(id_, "id"),
                       soci::into(count_))),
      list_(prepare(session,
                    "select unique_id, place, checksum, body from entry where schema_name = :schema "
                    "order by place",
                    soci::use(schema_, "schema"), soci::into(foundId_), soci::into(foundPlace_),
                    soci::into(foundChecksum_), soci::into(foundBody_))),
      extent_(prepare(session,
                      "select count(*), cast(coalesce(sum(size), 0) as bigint) from entry "
                      "where schema_name = :schema",
                      soci::use(schema_, "schema"), soci::into(count_), soci::into(number_))) {}

void EntryTable::addToTotal(int entries, long long checksum) {
    count_ = entries;
    checksum_ = checksum;
    addToTotal_.execute(true);
}

void EntryTable::put(std::string_view schema, std::string_view id, std::string_view body) {
    schema_ = schema;
    id_ = id;
    body_ = body;
    const bool isThere = fetchRow(locate_);
    const long long before = isThere ? checksum_ : 0;
    if (!isThere) {
        fetchRow(readNextPlace_);
    }
    size_ = static_cast<long long>(id.size()) + static_cast<long long>(body.size());
    checksum_ = entryChecksum(schema, id, place_, body);
    put_.execute(true);
    addToTotal(isThere ? 0 : 1, checksum_ - before);
}

void EntryTable::remove(std::string_view schema, std::string_view id) {
    schema_ = schema;
    id_ = id;
    if (fetchRow(locate_)) {
        remove_.execute(true);
        addToTotal(-1, -checksum_);
    }
}

std::string EntryTable::takeNextId() {
    fetchRow(readNextId_);
    if (number_ >= idLimit) {
        return {};
    }
    id_ = std::to_string(number_);
    fetchRow(countId_);
    if (count_ != 0) {
        throw StoreDamage("its next free id, " + id_ + ", is in use");
    }
    ++number_;
    writeNextId_.execute(true);
    return id_;
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
    long long entries = 0;
    long long checksums = 0;
    list_.execute();
    while (list_.fetch()) {
        if (entryChecksum(schema_, foundId_, foundPlace_, foundBody_) != foundChecksum_) {
            throw StoreDamage("an entry of " + schema_ + " is not as it was written");
        }
        ++entries;
        checksums += foundChecksum_;
        visit(foundId_, foundBody_);
    }
    count_ = 0;
    number_ = 0;
    fetchRow(readTotal_);
    if (count_ != entries || number_ != checksums) {
        throw StoreDamage(std::to_string(entries) + " entries of " + schema_ + " are left of " +
                          std::to_string(count_));
    }
}

EntryTable::Extent EntryTable::extent(std::string_view schema) {
    schema_ = schema;
    fetchRow(extent_);
    return {static_cast<std::size_t>(count_), static_cast<std::size_t>(number_)};
}

}  // namespace calljournal
