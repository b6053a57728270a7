#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "Store.h"

namespace calljournal {

/// Opens the store in the SQLite file that `url` names (see SqliteUrl.h), as openStore does. A read request whose reply
/// would be longer than `longestReply` bytes fails.
std::unique_ptr<Store> openSqliteStore(const std::string& url, EntryIndexer indexer, std::chrono::milliseconds timeout,
                                       std::size_t longestReply);

/// openStoreCopy() for a SQLite file.
std::unique_ptr<Store> openSqliteCopy(const std::string& url, EntryIndexer indexer, std::size_t longestReply);

}  // namespace calljournal
