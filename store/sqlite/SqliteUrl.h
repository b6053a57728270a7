#pragma once

#include <string>

namespace calljournal {

/// Returns the absolute path of the file that `url` names: `sqlite3://PATH` or a plain path, every byte taken as it is.
/// Throws StoreError for an empty path or one with a zero byte.
std::string sqliteFile(const std::string& url);

}  // namespace calljournal
