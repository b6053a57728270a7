#pragma once

#include <functional>
#include <stdexcept>

namespace calljournal {

class SqliteConnection;

/// The version of the tables and pages that this program reads and writes. Versions count from 1; each earlier one comes
/// with the statements that make this one of it.
constexpr int storeVersion = 5;

/// What an older version stored is not what it wrote. `what()` says where, for people.
class StoreDamage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Creates the tables in an empty file, or brings those of an older version up to date and calls `indexEntries`, in one
/// transaction; gives the pages checksums if they have none; makes the connection durable. Throws StoreError, with the
/// file as it was, if it holds another program's tables, was written by a newer version, or must be written and cannot
/// be. Throws soci::soci_error, or StoreDamage if an entry of an older version was changed or lost.
void prepareStore(SqliteConnection& connection, const std::function<void()>& indexEntries);

}  // namespace calljournal
