#include "EntryTable.h"

#include <algorithm>
#include <tuple>

#include "EntryBody.h"
#include "Store.h"
#include "StoreWords.h"

namespace calljournal {

namespace {

/// Ids that the store gives stay below this, so that numbers of time stamp length, which a caller may choose as ids, do
/// not use them up.
constexpr long long idLimit = 1'000'000'000'000'000'000;
constexpr std::size_t maximumIdDigits = 18;

/// An id that a caller chose so far above those that were given is left to it: to go on behind it would use up the ids.
constexpr long long mostSkipped = 1'000'000'000'000;

/// How many rows are in memory while all entries are read and written at once.
constexpr int rowsAtOnce = 200;

/// A name is found by the beginnings of so many of its words.
constexpr std::size_t mostNameKeys = 16;

/// Returns the number whose text is `id` as the store writes it, without leading zeros; 0 if there is none.
long long numberOf(std::string_view id) {
    const bool isNumber = !id.empty() && id.size() <= maximumIdDigits && id[0] != '0' &&
                          id.find_first_not_of("0123456789") == std::string_view::npos;
    return isNumber ? std::stoll(std::string(id)) : 0;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        lines.push_back(text.substr(begin, end - begin));
        begin = end == std::string::npos ? end : end + 1;
    }
    return lines;
}

/// Returns the body without its element for the user's having seen it, whose text goes to `viewed`.
std::string withoutViewed(std::string_view body, std::string_view& viewed) {
    std::string rest;
    for (auto element = firstElement(body); element; element = firstElement(body)) {
        if (element->name == format::text::VIEWED && viewed.data() == nullptr) {
            viewed = element->text;
        } else {
            rest.append(element->whole);
        }
        body.remove_prefix(element->whole.size());
    }
    return rest.append(body);
}

/// Returns whether `now` says that the user has seen the entry, and nothing else that `before` does not say.
bool isOnlySeen(std::string_view before, std::string_view now) {
    std::string_view viewedBefore;
    std::string_view viewed;
    return withoutViewed(before, viewedBefore) == withoutViewed(now, viewed) && viewed == format::text::TRUE;
}

bool hasSameKeys(const EntryRow& one, const EntryRow& other) {
    return std::tie(one.isSeen, one.time, one.numbers, one.name) ==
           std::tie(other.isSeen, other.time, other.numbers, other.name);
}

}  // namespace

std::vector<std::string> nameKeys(const std::string& name) {
    std::vector<std::string> keys;
    for (std::size_t begin = 0; begin < name.size() && keys.size() < mostNameKeys;) {
        std::string key = name.substr(begin, longestNameKey);
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
            keys.push_back(std::move(key));
        }
        const std::size_t blank = name.find(' ', begin);
        begin = blank == std::string::npos ? blank : blank + 1;
    }
    return keys;
}

EntryTable::EntryTable(soci::session& session, const EntryIndexer& indexer)
    : session_(session),
      indexer_(indexer),
      numbers_(session, "entry_number", "number_key"),
      names_(session, "entry_name", "name_key"),
      readTotal_(session, "select schema_id, entries, unseen, bytes from stored_schema where schema_name = :schema"),
      writeTotal_(session,
                  "insert into stored_schema (schema_id, schema_name, entries, unseen, bytes) values "
                  "(:id, :schema, :entries, :unseen, :bytes) on conflict (schema_id) do update set "
                  "entries = excluded.entries, unseen = excluded.unseen, bytes = excluded.bytes"),
      listSchemas_(session, "select schema_id, schema_name from stored_schema order by schema_id"),
      readSetting_(session, "select value from setting where name = :name"),
      readStore_(session,
                 "select next_id, max(coalesce((select max(change_number) from entry), 0), "
                 "coalesce((select max(change_number) from removed_entry), 0)), "
                 "coalesce((select value from setting where name = :region), '') from calljournal_store"),
      writeStore_(session, "update calljournal_store set next_id = :id"),
      locate_(session,
              std::string(allColumns.select) + "from entry e where e.unique_id = :id and e.schema_id = :schema"),
      readLastPlace_(session, "select coalesce(max(place), 0) from entry where place < :end"),
      insert_(session,
              "insert into entry (place, schema_id, unique_id, added, changed, change_number, is_seen, newest, "
              "numbers, name, body) values (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11)"),
      update_(session,
              "update entry set changed = ?5, change_number = ?6, is_seen = ?7, newest = ?8, numbers = ?9, name = ?10, "
              "body = ?11 where place = ?1"),
      remove_(session, "delete from entry where place = :place"),
      remember_(session,
                "insert into removed_entry (change_number, schema_id, unique_id, added, body) values "
                "(:number, :schema, :id, :added, :body)"),
      forget_(session,
              "delete from removed_entry where change_number <= (select change_number from removed_entry "
              "order by change_number desc limit 1 offset :most)"),
      findId_(session, "select 1 from entry where unique_id = :id"),
      list_(session, std::string(servedColumns.select) +
                         "from entry e where e.place > :begin and e.place < :end order by e.place"),
      listBehind_(session, std::string(allColumns.select) +
                               "from entry e where e.place > :place and e.place < :end order by e.place limit :rows") {}

void EntryTable::begin(std::string_view schema) {
    total(schema);
    if (total_.id == 0) {
        total_.id = static_cast<long long>(schemas().size()) + 1;
        end_ = placesBefore(total_.id + 1);
    }
    readStore_.start(regionSetting).fetchRow(nextId_, changeNumber_, region_);
    firstId_ = nextId_;
    lastPlace_ = 0;
    isChanged_ = false;
    hasRemoved_ = false;
}

bool EntryTable::locate(std::string_view id) {
    const bool isThere = allColumns.fetch(locate_.start(id, total_.id), found_);
    if (isThere) {
        locate_.reset();
    }
    return isThere;
}

/// Derives the keys of row_.
void EntryTable::deriveKeys() {
    row_.isSeen = EntryRow::notIndexed;
    row_.time.clear();
    row_.numbers.clear();
    row_.name.clear();
    if (!indexer_) {
        return;
    }
    std::string text;
    appendServed(schema_, row_.id, row_.body, text);
    EntryKeys keys = indexer_(schema_, text, region_);
    row_.isSeen = keys.isSeen ? 1 : 0;
    row_.time = std::move(keys.time);
    row_.name = std::move(keys.name);
    for (const std::string& number : keys.numbers) {
        row_.numbers.append(number).append("\n");
    }
}

void EntryTable::put(std::string_view id, std::string_view body) {
    if (!locate(id)) {
        insert(id, body);
        return;
    }
    takeOver(id, body);
    row_.place = found_.place;
    const bool isSeenNow = isOnlySeen(found_.body, row_.body);
    if (isSeenNow && found_.isSeen != EntryRow::notIndexed) {
        // To derive the other keys again would cost a process that marks one entry the tables of all phone numbers.
        row_.isSeen = 1;
        row_.time = found_.time;
        row_.numbers = found_.numbers;
        row_.name = found_.name;
    } else {
        deriveKeys();
    }
    if (row_.body == found_.body && hasSameKeys(row_, found_)) {
        return;
    }
    row_.number = ++changeNumber_;
    row_.added = found_.added;
    row_.changed = isSeenNow && found_.isSeen == 0 ? found_.changed : row_.number;
    addToTotal(found_, -1);
    write(update_);
}

void EntryTable::insert(std::string_view id, std::string_view body) {
    found_ = EntryRow();
    takeOver(id, body);
    deriveKeys();
    row_.place = nextPlace();
    row_.number = row_.added = row_.changed = ++changeNumber_;
    write(insert_);
}

/// Returns the last place below `end`; 0 if there is none.
long long EntryTable::lastPlaceBefore(long long end) {
    long long place = 0;
    readLastPlace_.start(end).fetchRow(place);
    return place;
}

/// Returns the place behind the last entry of the schema.
long long EntryTable::nextPlace() {
    if (lastPlace_ == 0) {
        lastPlace_ = std::max(lastPlaceBefore(end_), placesBefore(total_.id));
    }
    return ++lastPlace_;
}

/// Makes row_ of an entry that comes in; its keys are yet to be derived.
void EntryTable::takeOver(std::string_view id, std::string_view body) {
    row_.schemaId = total_.id;
    row_.id = id;
    row_.body = body;
}

/// Writes row_, which was found_ before, with its keys.
void EntryTable::write(PreparedStatement& statement) {
    statement.run(row_.place, row_.schemaId, row_.id, row_.added, row_.changed, row_.number, row_.isSeen, row_.time,
                  row_.numbers, row_.name, row_.body);
    writeKeys();
    addToTotal(row_, 1);
}

/// Has the tables of keys follow row_, which had the keys of found_ in them before.
void EntryTable::writeKeys() {
    numbers_.change(row_.schemaId, row_.place, linesOf(found_.numbers), linesOf(row_.numbers));
    names_.change(row_.schemaId, row_.place, nameKeys(found_.name), nameKeys(row_.name));
}

void EntryTable::remove(std::string_view id) {
    if (!locate(id)) {
        return;
    }
    remove_.run(found_.place);
    numbers_.change(found_.schemaId, found_.place, linesOf(found_.numbers), {});
    names_.change(found_.schemaId, found_.place, nameKeys(found_.name), {});
    addToTotal(found_, -1);
    ++changeNumber_;
    remember_.run(changeNumber_, found_.schemaId, found_.id, found_.added, found_.body);
    hasRemoved_ = true;
}

void EntryTable::addToTotal(const EntryRow& row, long long sign) {
    total_.entries += sign;
    total_.unseen += row.isSeen == 0 ? sign : 0;
    total_.bytes += sign * (static_cast<long long>(row.id.size()) + static_cast<long long>(row.body.size()));
    isChanged_ = true;
}

std::string EntryTable::takeNextId() {
    std::string id = std::to_string(nextId_);
    while (nextId_ < idLimit && findId_.start(id).fetchRow()) {
        id = std::to_string(++nextId_);
    }
    if (nextId_ >= idLimit) {
        return {};
    }
    ++nextId_;
    return id;
}

void EntryTable::skipId(std::string_view id) {
    const long long number = numberOf(id);
    if (number >= nextId_ && number - nextId_ < mostSkipped) {
        nextId_ = number + 1;
    }
}

void EntryTable::finish() {
    if (!isChanged_) {
        return;
    }
    writeTotal_.run(total_.id, schema_, total_.entries, total_.unseen, total_.bytes);
    if (nextId_ != firstId_) {
        writeStore_.run(nextId_);
    }
    if (hasRemoved_) {
        forget_.run(mostRemembered);
    }
}

std::vector<EntryRow> EntryTable::rowsBehind(long long place) {
    std::vector<EntryRow> rows;
    listBehind_.start(place, end_, rowsAtOnce);
    while (allColumns.fetch(listBehind_, found_)) {
        rows.push_back(found_);
    }
    return rows;
}

void EntryTable::forEachRow(const std::function<void()>& use) {
    total_ = {total_.id};
    for (auto rows = rowsBehind(placesBefore(total_.id)); !rows.empty(); rows = rowsBehind(rows.back().place)) {
        for (EntryRow& row : rows) {
            found_ = row;
            row_ = std::move(row);
            use();
        }
    }
}

void EntryTable::index() {
    session_ << "reindex";
    numbers_.clear();
    names_.clear();
    for (const StoredSchema& schema : schemas()) {
        begin(schema.name);
        forEachRow([&] {
            deriveKeys();
            const bool isAsBefore = hasSameKeys(row_, found_);
            found_.numbers.clear();
            found_.name.clear();
            if (isAsBefore) {
                writeKeys();
                addToTotal(row_, 1);
            } else {
                write(update_);
            }
        });
        isChanged_ = true;
        finish();
    }
}

void EntryTable::forEach(std::string_view schema,
                         const std::function<void(std::string_view id, std::string_view body)>& visit) {
    const SchemaTotal total = this->total(schema);
    list_.start(placesBefore(total.id), end_);
    while (servedColumns.fetch(list_, found_)) {
        visit(found_.id, found_.body);
    }
}

SchemaTotal EntryTable::total(std::string_view schema) {
    schema_ = schema;
    total_ = SchemaTotal();
    readTotal_.start(schema).fetchRow(total_.id, total_.entries, total_.unseen, total_.bytes);
    end_ = placesBefore(total_.id + 1);
    return total_;
}

std::optional<std::string> EntryTable::setting(std::string_view name) {
    std::string value;
    return readSetting_.start(name).fetchRow(value) ? std::make_optional(value) : std::nullopt;
}

std::vector<StoredSchema> EntryTable::schemas() {
    std::vector<StoredSchema> schemas;
    StoredSchema schema = {};
    listSchemas_.start();
    while (listSchemas_.fetch(schema.id, schema.name)) {
        schemas.push_back(schema);
    }
    return schemas;
}

/// Appends what is wrong with the keys of found_.
void EntryTable::checkKeys(std::vector<IndexFault>& faults) {
    deriveKeys();
    const auto check = [&](bool isRight, const char* what) {
        if (!isRight) {
            faults.push_back({schema_, found_.id, what});
        }
    };
    check(row_.time == found_.time, "the time that it is found by is not that of its newest call");
    check(row_.isSeen == found_.isSeen, "it is found as seen or not seen, and its body says otherwise");
    check(row_.numbers == found_.numbers, "the numbers that it is found by are not those of its calls");
    check(row_.name == found_.name, "the name that it is found by is not its own");
    check(numbers_.holds(row_.schemaId, row_.place, linesOf(found_.numbers)), "it is not found by one of its numbers");
    check(names_.holds(row_.schemaId, row_.place, nameKeys(found_.name)), "it is not found by its name");
}

std::vector<IndexFault> EntryTable::checkIndex() {
    std::vector<IndexFault> faults;
    std::string finding;
    PreparedStatement check(session_, "pragma integrity_check");
    check.start();
    while (check.fetch(finding)) {
        if (finding != "ok") {
            faults.push_back({{}, {}, finding});
        }
    }
    for (const StoredSchema& schema : schemas()) {
        begin(schema.name);
        const SchemaTotal before = total_;
        long long numbers = 0;
        long long names = 0;
        forEachRow([&] {
            addToTotal(found_, 1);
            numbers += static_cast<long long>(linesOf(found_.numbers).size());
            names += static_cast<long long>(nameKeys(found_.name).size());
            checkKeys(faults);
        });
        if (before.entries != total_.entries || before.unseen != total_.unseen || before.bytes != total_.bytes) {
            faults.push_back({schema.name, {}, "its counts are not those of its entries"});
        }
        // All keys of all entries are there, so that any more are of none.
        if (numbers_.count(schema.id) > numbers || names_.count(schema.id) > names) {
            faults.push_back({schema.name, {}, "it has keys of no entry"});
        }
    }
    return faults;
}

}  // namespace calljournal
