#pragma once

#include <string>
#include <vector>

#include "PreparedStatement.h"

namespace calljournal {

/// The table of one kind of keys: by which of them which entries are found.
class KeyTable {
public:
    /// `table` has the columns schema_id, `column` and place.
    KeyTable(soci::session& session, const std::string& table, const std::string& column);
    KeyTable(const KeyTable&) = delete;
    KeyTable& operator=(const KeyTable&) = delete;

    /// Has the entry at `place`, which had the keys `before`, be found by the keys `now`.
    void change(long long schemaId, long long place, const std::vector<std::string>& before,
                const std::vector<std::string>& now);

    /// Returns whether the entry at `place` is found by each of `keys`.
    bool holds(long long schemaId, long long place, const std::vector<std::string>& keys);

    /// How many keys all entries of the schema have.
    long long count(long long schemaId);

    void clear() { clear_.run(); }

private:
    PreparedStatement add_;
    PreparedStatement remove_;
    PreparedStatement find_;
    PreparedStatement countAll_;
    PreparedStatement clear_;
};

}  // namespace calljournal
