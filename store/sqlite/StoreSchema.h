#pragma once

#include <functional>

namespace calljournal {

class SqliteConnection;

/// The version of the tables that this program reads and writes. Versions count from 1; each later one comes with the
/// statements that make it of the one before.
constexpr int storeVersion = 3;

/// Creates the tables in an empty file, or brings those of an older version up to date and calls `indexEntries`, in one
/// transaction; makes the connection durable. Throws StoreError, with the file as it was, if it holds another program's tables, was
/// written by a newer version, or must be written and cannot be. Throws soci::soci_error.
void prepareStore(SqliteConnection& connection, const std::function<void()>& indexEntries);

}  // namespace calljournal
