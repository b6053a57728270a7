#pragma once

#include <map>
#include <string>
#include <vector>

#include "EntryQuery.h"
#include "EntryRow.h"
#include "EntryTable.h"

namespace calljournal {

/// Finds entries by their keys. Throws what an EntryTable throws, and is to be thrown away and called as one.
class EntryFinder {
public:
    /// Uses both, which must outlive the finder.
    EntryFinder(soci::session& session, EntryTable& table);
    EntryFinder(const EntryFinder&) = delete;
    EntryFinder& operator=(const EntryFinder&) = delete;

    /// As Store::find does.
    std::vector<FoundEntry> find(const EntryQuery& query);

    /// As Store::changes does.
    StoreChanges changes(std::uint64_t since);

private:
    struct NumberedChange {
        long long number;
        StoreChange change;
    };

    /// Returns what follows the columns in the queries for the wanted entries of a schema, which give them in turn.
    std::vector<std::string> whereFound(const EntryQuery& query);
    /// Reads the entry that is at the place of the cursor.
    void readEntry(FoundEntry& entry);
    void bind(const EntryQuery& query);
    /// Begins the query, prepared when it is new, with the parameters that it has.
    PreparedStatement& start(const std::string& sql);
    /// Returns whether the query `keys` gives more than `most` rows.
    bool isMoreThan(long long most, const std::string& keys);
    /// Returns what finds the wanted entries of those at the places that `keys` selects. The bodies are read last, of the
    /// page alone.
    std::string amongKeys(const std::string& keys, const std::string& conditions);
    /// Calls `use` for each row that the query gives in row_, until that returns false; `from` is what follows the
    /// columns.
    template <class Use>
    void forEachRow(const RowColumns& columns, const std::string& from, Use use);
    FoundEntry foundEntry(const std::string& schema) const;
    void appendChanged(std::uint64_t since, std::vector<NumberedChange>& changes);
    void appendRemoved(std::vector<NumberedChange>& changes);

    soci::session& session_;
    EntryTable& table_;
    PreparedStatement readNumbers_;
    PreparedStatement listRemoved_;

    // What the queries are bound to.
    EntryRow row_;
    long long schemaId_ = 0;
    long long limit_ = 0;
    long long place_ = 0;
    int isSeen_ = 0;
    std::string id_;
    std::string number_;
    std::string name_;
    std::string wholeKey_;
    std::string nameBegin_;
    std::string wordBegin_;
    std::string firstKey_;
    std::string endOfKeys_;
    std::string namePart_;
    std::string numberPart_;
    std::string since_;
    std::string until_;
    std::string time_;

    /// By their SQL.
    std::map<std::string, PreparedStatement> statements_;
};

}  // namespace calljournal
