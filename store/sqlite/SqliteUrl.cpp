#include "SqliteUrl.h"

#include <filesystem>

#include "StoreError.h"
#include "StoreUrl.h"

namespace calljournal {

std::string sqliteFile(const std::string& url) {
    const std::string_view scheme = schemeOf(url);
    const std::string path = scheme.empty() ? url : url.substr(scheme.size() + schemeEnd.size());
    if (path.empty()) {
        throw StoreError("store " + url + ": it names no file; write sqlite3://PATH or a plain path");
    }
    if (path.find('\0') != std::string::npos) {
        throw StoreError("store " + url.substr(0, url.find('\0')) + ": its path holds a zero byte; name another file");
    }
    return std::filesystem::absolute(path).string();
}

}  // namespace calljournal
