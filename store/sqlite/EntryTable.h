#pragma once

#include <cstddef>
#include <functional>
#include <soci/soci.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace calljournal {

/// What is stored is not what was written. `what()` says where, for people.
class StoreDamage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The stored entries, with the statements on them prepared once. Every value is bound, never written into the SQL.
/// Throws soci::soci_error, StoreDamage or std::bad_alloc; a table that threw must be thrown away, since a query that
/// was left in its middle holds on to the state of the file that it began with.
class EntryTable {
public:
    /// Uses `session`, which must outlive the table.
    explicit EntryTable(soci::session& session);
    EntryTable(const EntryTable&) = delete;
    EntryTable& operator=(const EntryTable&) = delete;

    /// Inserts the entry behind all others of `schema`, or gives the body to the one that has the id, in its place.
    void put(std::string_view schema, std::string_view id, std::string_view body);

    /// Deletes the entry if there is one.
    void remove(std::string_view schema, std::string_view id);

    /// Returns an id that no entry of any schema has had: the next decimal number; empty when none is left.
    std::string takeNextId();

    /// Has takeNextId return only numbers above `id`, if `id` is a decimal number that it could return.
    void skipId(std::string_view id);

    /// Calls `visit` with each entry of `schema`, in order of first insertion. The views are valid during the call.
    /// To be called in a transaction: throws StoreDamage at the end if an entry was changed or got lost.
    void forEach(std::string_view schema, const std::function<void(std::string_view id, std::string_view body)>& visit);

    /// How many entries a schema has, and how many bytes their ids and bodies.
    struct Extent {
        std::size_t entries;
        std::size_t bytes;
    };
    Extent extent(std::string_view schema);

private:
    /// Has the sums over schema_ follow a change of one entry.
    void addToTotal(int entries, long long checksum);

    // What the statements are bound to; they come first, since the statements keep their addresses.
    std::string schema_;
    std::string id_;
    std::string body_;
    long long place_ = 0;
    long long size_ = 0;
    long long checksum_ = 0;
    long long number_ = 0;
    long long count_ = 0;
    std::string foundId_;
    std::string foundBody_;
    long long foundPlace_ = 0;
    long long foundChecksum_ = 0;

    soci::statement locate_;
    soci::statement readNextPlace_;
    soci::statement put_;
    soci::statement remove_;
    soci::statement addToTotal_;
    soci::statement readTotal_;
    soci::statement readNextId_;
    soci::statement writeNextId_;
    soci::statement countId_;
    soci::statement list_;
    soci::statement extent_;
};

}  // namespace calljournal
