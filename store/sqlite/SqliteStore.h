#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "Store.h"

namespace calljournal {

/// Opens the store in the SQLite file that `url` names (see SqliteUrl.h), as openStore does.
std::unique_ptr<Store> openSqliteStore(const std::string& url, EntryIndexer indexer, std::chrono::milliseconds timeout);

}  // namespace calljournal
