#include "SqliteSalvage.h"

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "PageFile.h"
#include "SqliteUrl.h"
#include "StoreError.h"

namespace calljournal {

namespace {

/// An entry's place orders it within its schema.
using Place = std::int64_t;

/// What the rows say that were found on any page.
struct Rows {
    struct Entry {
        std::int64_t schemaId = 0;
        std::int64_t change = 0;  ///< The number of its last change.
        std::string id;
        std::string body;
    };

    std::map<std::int64_t, std::string> schemas;
    std::map<Place, Entry> entries;
    std::map<Place, std::pair<std::int64_t, std::string>> ids;  ///< Of all entries, by the index of ids.
};

bool areTexts(const Record& row, std::initializer_list<bool> columns) {
    return std::equal(row.values.begin(), row.values.end(), columns.begin(), columns.end(),
                      [](const RecordValue& value, bool isText) { return value.isText == isText; });
}

/// Takes a row over. Which table or index it is of, its columns show, which differ from each other's.
void takeOver(Record& row, Rows& rows) {
    std::vector<RecordValue>& values = row.values;
    if (row.isOfTable && areTexts(row, {false, false, true, false, false, false, false, true, true, true, true})) {
        // A page that is no longer in use may have an older version.
        Rows::Entry& entry = rows.entries[row.rowId];
        if (entry.change <= values[5].number) {
            entry = {values[1].number, values[5].number, std::move(values[2].text), std::move(values[10].text)};
        }
    } else if (row.isOfTable && areTexts(row, {false, true, false, false, false})) {
        rows.schemas[row.rowId] = std::move(values[1].text);
    } else if (!row.isOfTable && areTexts(row, {true, false, false})) {
        rows.ids[values[2].number] = {values[1].number, std::move(values[0].text)};
    }
}

std::string counted(int count, const std::string& what) {
    return count == 1 ? "1 " + what : std::to_string(count) + " " + what + "s";
}

}  // namespace

Salvage salvageSqliteStore(const std::string& url) {
    const std::string file = sqliteFile(url);
    std::error_code ignored;                                                    // a file that is not there has no pages
    PageFile pages(std::filesystem::weakly_canonical(file, ignored).string());  // the log is beside no link
    bool isFreeListWhole = true;
    const std::set<std::uint32_t> free = pages.freePages(isFreeListWhole);
    Rows rows;
    int damaged = 0;
    int broken = 0;
    for (const std::uint32_t number : pages.numbers()) {
        if (free.count(number) != 0) {
            continue;
        }
        damaged += pages.isWhole(number) ? 0 : 1;
        for (Record& row : pages.records(number, broken)) {
            takeOver(row, rows);
        }
    }
    const auto pageCount = static_cast<int>(pages.numbers().size());
    if (damaged == pageCount) {
        throw StoreError("store " + file + ": nothing of it is as this version writes it");
    }
    const auto schemaName = [&](std::int64_t id) {
        const auto found = rows.schemas.find(id);
        return found != rows.schemas.end() ? found->second : std::string();
    };
    Salvage salvage;
    for (auto& [place, entry] : rows.entries) {
        rows.ids.erase(place);
        salvage.entries.push_back({schemaName(entry.schemaId), std::move(entry.id), std::move(entry.body)});
    }
    if (damaged > 0) {
        salvage.losses.push_back(counted(damaged, "page") + " of " + std::to_string(pageCount) + " cannot be read");
    }
    if (pages.hasDamagedLog()) {
        salvage.losses.emplace_back("the write-ahead log is damaged, and with it some of the last changes");
    }
    if (!isFreeListWhole) {
        salvage.losses.emplace_back("the list of free pages cannot be read, so deleted entries may be among these");
    }
    if (broken > 0) {
        salvage.losses.push_back(counted(broken, "row") + " cannot be read to the end");
    }
    for (const auto& [place, entry] : rows.ids) {
        salvage.losses.push_back("entry " + entry.second + " of " + schemaName(entry.first) + " is lost");
    }
    return salvage;
}

}  // namespace calljournal
