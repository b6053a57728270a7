#include "EntryFinder.h"

#include <algorithm>
#include <tuple>

#include "EntryBody.h"

namespace calljournal {

namespace {

/// Up to so many entries are sorted by time; where more names begin alike, those wanted are soon met on the way through
/// all entries, newest first.
constexpr long long mostSorted = 200;

/// A page has room for so many entries at once.
constexpr std::size_t mostReserved = 500;

/// A page ends behind the entry with which its texts are this long.
constexpr std::size_t mostOfPage = std::size_t{16} << 20U;

/// Changes are read by pages of so many.
constexpr long long mostChanges = 1000;

/// Returns the text that comes, byte for byte, behind all that begin with `text`.
std::string endOf(std::string text) {
    while (!text.empty() && text.back() == '\xff') {
        text.pop_back();
    }
    if (!text.empty()) {
        text.back() = static_cast<char>(text.back() + 1);
    }
    return text;
}

/// What is asked of a row, whatever it was found by.
std::string conditions(const EntryQuery& query) {
    std::string text = "e.schema_id = :schema";
    const auto add = [&](bool isAsked, const char* condition) {
        text.append(isAsked ? " and " : "").append(isAsked ? condition : "");
    };
    add(!query.id.empty(), "e.unique_id = :id");
    add(!query.name.empty(), "e.name = :name");
    add(!query.nameBegin.empty(), "(substr(e.name, 1, length(:beginning)) = :beginning or instr(e.name, :word) > 0)");
    const bool isEither = !query.namePart.empty() && !query.numberPart.empty();
    add(isEither, "(instr(e.name, :part) > 0 or instr(e.numbers, :digits) > 0)");
    add(!isEither && !query.namePart.empty(), "instr(e.name, :part) > 0");
    add(!isEither && !query.numberPart.empty(), "instr(e.numbers, :digits) > 0");
    add(!query.since.empty(), "e.newest >= :since");
    // What is behind a cursor is before it; SQLite would look for the one and pass over the rest one by one.
    add(!query.until.empty() && !query.after, "e.newest <= :until");
    add(query.isSeen.has_value(), "e.is_seen = :seen");
    return text;
}

constexpr char behindCursor[] = " and (e.newest, e.place) < (:time, :place)";
constexpr char newestFirst[] = " order by e.newest desc, e.place desc limit :limit";

bool comesBefore(const FoundEntry& one, const FoundEntry& other) {
    return std::tie(one.cursor.time, one.cursor.place) > std::tie(other.cursor.time, other.cursor.place);
}

}  // namespace

EntryFinder::EntryFinder(soci::session& session, EntryTable& table)
    : session_(session),
      table_(table),
      readNumbers_(session,
                   "select max(coalesce((select max(change_number) from entry), 0), coalesce(max(change_number), 0)), "
                   "count(*), coalesce(min(change_number), 0) from removed_entry"),
      listRemoved_(
          session,
          "select r.change_number, s.schema_name, r.unique_id, r.body from removed_entry r join stored_schema s "
          "on s.schema_id = r.schema_id where r.change_number >= :since and r.added < :since and not exists "
          "(select 1 from entry e where e.unique_id = r.unique_id and e.schema_id = r.schema_id) "
          "order by r.change_number limit :limit") {}

PreparedStatement& EntryFinder::start(const std::string& sql) {
    PreparedStatement& query = statements_.try_emplace(sql, session_, sql).first->second;
    query.start();
    query.bind(":schema", schemaId_);
    query.bind(":limit", limit_);
    query.bind(":place", place_);
    query.bind(":seen", isSeen_);
    query.bind(":id", id_);
    query.bind(":key", number_);
    query.bind(":name", name_);
    query.bind(":whole", wholeKey_);
    query.bind(":beginning", nameBegin_);
    query.bind(":word", wordBegin_);
    query.bind(":first", firstKey_);
    query.bind(":end", endOfKeys_);
    query.bind(":part", namePart_);
    query.bind(":digits", numberPart_);
    query.bind(":since", since_);
    query.bind(":until", until_);
    query.bind(":time", time_);
    return query;
}

template <class Use>
void EntryFinder::forEachRow(const RowColumns& columns, const std::string& from, Use use) {
    PreparedStatement& query = start(columns.select + from);
    while (columns.fetch(query, row_) && use()) {
    }
    query.reset();
}

void EntryFinder::bind(const EntryQuery& query) {
    id_ = query.id;
    number_ = query.numberKey;
    name_ = query.name;
    wholeKey_ = query.name.substr(0, longestNameKey);
    nameBegin_ = query.nameBegin;
    wordBegin_ = ' ' + query.nameBegin;
    firstKey_ = query.nameBegin.substr(0, longestNameKey);
    endOfKeys_ = endOf(firstKey_);
    namePart_ = query.namePart;
    numberPart_ = query.numberPart;
    since_ = query.since;
    until_ = query.until;
    isSeen_ = query.isSeen.value_or(false) ? 1 : 0;
    time_ = query.after ? query.after->time : std::string();
    place_ = query.after ? query.after->place : 0;
}

bool EntryFinder::isMoreThan(long long most, const std::string& keys) {
    long long count = 0;
    start("select count(*) from (" + keys + " limit " + std::to_string(most + 1) + ")").fetchRow(count);
    return count > most;
}

std::string EntryFinder::amongKeys(const std::string& keys, const std::string& conditions) {
    const std::string found = "from (" + keys + ") k cross join entry e on e.place = k.place where " + conditions;
    // To put entries in order SQLite makes a table, which costs more than to find one.
    return isMoreThan(1, keys)
               ? "from (select e.place as found " + found + newestFirst + ") f cross join entry e on e.place = f.found"
               : found;
}

FoundEntry EntryFinder::foundEntry(const std::string& schema) const {
    FoundEntry entry{schema, row_.id, {}, {row_.time, row_.place}};
    entry.text.reserve(row_.body.size() + row_.id.size() + longestNameKey);
    appendServed(schema, row_.id, row_.body, entry.text);
    return entry;
}

std::vector<std::string> EntryFinder::whereFound(const EntryQuery& query) {
    const std::string asked = conditions(query);
    const std::string askedOfKeys = asked + (query.after ? behindCursor : "");
    if (!query.id.empty()) {
        return {"from entry e where " + askedOfKeys};
    }
    if (!query.numberKey.empty()) {
        return {
            amongKeys("select place from entry_number where schema_id = :schema and number_key = :key", askedOfKeys)};
    }
    if (!query.name.empty()) {
        return {amongKeys("select place from entry_name where schema_id = :schema and name_key = :whole", askedOfKeys)};
    }
    const std::string ofNames =
        "place from entry_name where schema_id = :schema and name_key >= :first and name_key < :end";
    if (!query.nameBegin.empty() && !isMoreThan(mostSorted, "select " + ofNames)) {
        return {amongKeys("select distinct " + ofNames, askedOfKeys)};
    }
    const std::string walk = "from entry e indexed by entry_newest where " + asked;
    if (query.after) {
        // Those of the cursor's time by themselves: SQLite finds the beginning of a time, and not a place in it.
        return {walk + " and e.newest = :time and e.place < :place" + newestFirst,
                walk + " and e.newest < :time" + newestFirst};
    }
    return {walk + newestFirst};
}

void EntryFinder::readEntry(FoundEntry& entry) {
    place_ = entry.cursor.place;
    forEachRow(servedColumns, "from entry e where e.place = :place", [&] {
        entry = foundEntry(entry.schema);
        return true;
    });
}

std::vector<FoundEntry> EntryFinder::find(const EntryQuery& query) {
    bind(query);
    // Of several schemas the bodies are read last: those of the page, and not a page of each schema.
    const bool isMixed = query.schemas.size() > 1;
    std::vector<FoundEntry> found;
    found.reserve(std::min(query.limit, mostReserved));
    std::size_t size = 0;
    const auto isFull = [&] { return query.limit > 0 && size >= mostOfPage; };
    for (const std::string& schema : query.schemas) {
        schemaId_ = table_.total(schema).id;
        if (schemaId_ == 0) {
            continue;
        }
        std::size_t count = 0;
        for (const std::string& from : whereFound(query)) {
            limit_ = query.limit > 0 ? static_cast<long long>(query.limit - count) : -1;
            forEachRow(isMixed ? cursorColumns : servedColumns, from, [&] {
                if (isMixed) {
                    found.push_back({schema, {}, {}, {row_.time, row_.place}});
                } else {
                    found.push_back(foundEntry(schema));
                    size += found.back().text.size();
                }
                ++count;
                return !isFull();
            });
            if (isFull()) {
                break;
            }
        }
    }
    if (!std::is_sorted(found.begin(), found.end(), comesBefore)) {
        std::sort(found.begin(), found.end(), comesBefore);
    }
    if (query.limit > 0 && found.size() > query.limit) {
        found.resize(query.limit);
    }
    for (std::size_t i = 0; isMixed && i < found.size(); ++i) {
        readEntry(found[i]);
        size += found[i].text.size();
        if (isFull()) {
            found.resize(i + 1);
        }
    }
    return found;
}

void EntryFinder::appendChanged(std::uint64_t since, std::vector<NumberedChange>& changes) {
    const auto first = static_cast<long long>(since);
    const auto schemas = table_.schemas();
    const auto nameOf = [&](long long id) {
        const auto found =
            std::find_if(schemas.begin(), schemas.end(), [&](const StoredSchema& row) { return row.id == id; });
        return found != schemas.end() ? found->name : std::string();
    };
    forEachRow(allColumns, "from entry e where e.change_number >= :place order by e.change_number limit :limit", [&] {
        const std::string schema = nameOf(row_.schemaId);
        const EntryAction action = row_.added >= first     ? EntryAction::added
                                   : row_.changed >= first ? EntryAction::changed
                                                           : EntryAction::seen;
        changes.push_back({row_.number, {action, foundEntry(schema)}});
        return true;
    });
}

void EntryFinder::appendRemoved(std::vector<NumberedChange>& changes) {
    std::string schema;
    row_.time.clear();
    listRemoved_.start(place_, limit_);
    while (listRemoved_.fetch(row_.number, schema, row_.id, row_.body)) {
        changes.push_back({row_.number, {EntryAction::removed, foundEntry(schema)}});
    }
}

StoreChanges EntryFinder::changes(std::uint64_t since) {
    StoreChanges result;
    long long last = 0;
    long long remembered = 0;
    long long oldest = 0;
    readNumbers_.start().fetchRow(last, remembered, oldest);
    result.number = static_cast<std::uint64_t>(last) + 1;
    if (since == 0) {
        return result;
    }
    result.isWhole = remembered < mostRemembered || static_cast<long long>(since) >= oldest;
    place_ = static_cast<long long>(since);
    limit_ = mostChanges;
    std::vector<NumberedChange> changes;
    appendChanged(since, changes);
    appendRemoved(changes);
    std::sort(changes.begin(), changes.end(),
              [](const NumberedChange& one, const NumberedChange& other) { return one.number < other.number; });
    if (changes.size() >= static_cast<std::size_t>(mostChanges)) {
        changes.resize(static_cast<std::size_t>(mostChanges));
        result.number = static_cast<std::uint64_t>(changes.back().number) + 1;
    }
    for (NumberedChange& change : changes) {
        result.entries.push_back(std::move(change.change));
    }
    return result;
}

}  // namespace calljournal
