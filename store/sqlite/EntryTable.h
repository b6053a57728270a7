#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <soci/soci.h>
#include <string>
#include <string_view>
#include <vector>

#include "EntryQuery.h"
#include "EntryRow.h"
#include "KeyTable.h"

namespace calljournal {

/// What is known of all entries of a schema together.
struct SchemaTotal {
    long long id = 0;  ///< What stands for the schema in the tables; 0 if there never was an entry of it.
    long long entries = 0;
    long long unseen = 0;
    long long bytes = 0;  ///< Of the ids and bodies.
};

struct StoredSchema {
    long long id;
    std::string name;
};

/// The stored entries and the tables of their keys. Every value is bound, never written into the SQL. Throws
/// soci::soci_error or std::bad_alloc; a table that threw must be thrown away, since a query that was left
/// in its middle holds on to the state of the file that it began with. All is to be called in a transaction.
class EntryTable {
public:
    /// Uses both, which must outlive the table. Entries get no keys if `indexer` is empty.
    EntryTable(soci::session& session, const EntryIndexer& indexer);
    EntryTable(const EntryTable&) = delete;
    EntryTable& operator=(const EntryTable&) = delete;

    /// Begins a request that changes entries of `schema`. Nothing else may be called until `finish` but what follows
    /// here.
    void begin(std::string_view schema);

    /// Inserts the entry behind all others of its schema, or gives the body to the one that has the id, in its place.
    void put(std::string_view id, std::string_view body);

    /// Inserts an entry whose id takeNextId has just returned.
    void insert(std::string_view id, std::string_view body);

    /// Deletes the entry if there is one.
    void remove(std::string_view id);

    /// Returns an id that no entry of any schema has had: the next decimal number; empty when none is left.
    std::string takeNextId();

    /// Has takeNextId return only numbers above `id`, if `id` is a decimal number that it could return.
    void skipId(std::string_view id);

    /// Writes what concerns all entries of the schema.
    void finish();

    /// Makes the keys of all entries anew, with the region that is set now.
    void index();

    /// Calls `visit` with each entry of `schema`, in order of first insertion. The views are valid during the call.
    void forEach(std::string_view schema, const std::function<void(std::string_view id, std::string_view body)>& visit);

    SchemaTotal total(std::string_view schema);

    /// Returns the value of a setting; nothing if it was never set.
    std::optional<std::string> setting(std::string_view name);

    /// The schemas that have had an entry, in the order of their ids.
    std::vector<StoredSchema> schemas();

    /// Returns the entries whose keys are not those of their bodies.
    std::vector<IndexFault> checkIndex();

private:
    bool locate(std::string_view id);
    void takeOver(std::string_view id, std::string_view body);
    long long lastPlaceBefore(long long end);
    long long nextPlace();
    void deriveKeys();
    void write(PreparedStatement& statement);
    void writeKeys();
    void addToTotal(const EntryRow& row, long long sign);
    std::vector<EntryRow> rowsBehind(long long place);
    /// Calls `use` for each row of the schema, which is row_ and found_ then. The totals begin at 0.
    void forEachRow(const std::function<void()>& use);
    void checkKeys(std::vector<IndexFault>& faults);

    soci::session& session_;
    const EntryIndexer& indexer_;

    // The state of the request.
    std::string schema_;
    SchemaTotal total_;
    std::string region_;
    long long nextId_ = 0;
    long long firstId_ = 0;
    long long lastPlace_ = 0;  ///< 0 until it is known.
    long long changeNumber_ = 0;
    bool isChanged_ = false;
    bool hasRemoved_ = false;

    long long end_ = 0;  ///< Of the places of the schema.

    EntryRow row_;    ///< As it is written.
    EntryRow found_;  ///< As it was read.

    KeyTable numbers_;
    KeyTable names_;
    PreparedStatement readTotal_;
    PreparedStatement writeTotal_;
    PreparedStatement listSchemas_;
    PreparedStatement readSetting_;
    PreparedStatement readStore_;
    PreparedStatement writeStore_;
    PreparedStatement locate_;
    PreparedStatement readLastPlace_;
    PreparedStatement insert_;
    PreparedStatement update_;
    PreparedStatement remove_;
    PreparedStatement remember_;
    PreparedStatement forget_;
    PreparedStatement findId_;
    PreparedStatement list_;
    PreparedStatement listBehind_;
};

/// The texts under which a folded name is found by the beginning of one of its words: the rest of the name from each of
/// them on, as far as `longestNameKey` goes.
std::vector<std::string> nameKeys(const std::string& name);

/// How many deleted entries the store remembers, for those who follow its changes.
constexpr long long mostRemembered = 1000;

/// A longer beginning of a name is found by this much of it.
constexpr std::size_t longestNameKey = 64;

}  // namespace calljournal
