#include "StoreUrl.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "StoreError.h"

namespace calljournal {

namespace {

constexpr std::string_view sqliteScheme = "sqlite3://";

/// Returns the value of an environment variable that holds an absolute path, or an empty text.
std::string absolutePathFrom(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && value[0] == '/' ? value : std::string();
}

bool beginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// Tells whether `url` begins with a scheme: letters, digits, `+`, `-` or `.` and then `://`.
bool hasScheme(std::string_view url) {
    const std::size_t end = url.find("://");
    return end != std::string_view::npos && end > 0 && std::all_of(url.begin(), url.begin() + end, [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' ||
                      c == '-' || c == '.';
           });
}

}  // namespace

std::string defaultStoreUrl() {
    std::string folder = absolutePathFrom("XDG_DATA_HOME");
    if (folder.empty()) {
        const std::string home = absolutePathFrom("HOME");
        if (home.empty()) {
            throw StoreError("no default store: neither XDG_DATA_HOME nor HOME holds an absolute path; name a store");
        }
        folder = home + "/.local/share";
    }
    return std::string(sqliteScheme) + folder + "/calljournal/journal.db";
}

std::string storeFile(const std::string& url) {
    const bool isSqlite = beginsWith(url, sqliteScheme);
    if (!isSqlite && hasScheme(url)) {
        throw StoreError("store " + url + ": only SQLite files can be used; write sqlite3://PATH or a plain path");
    }
    const std::string path = isSqlite ? url.substr(sqliteScheme.size()) : url;
    if (path.empty()) {
        throw StoreError("store " + url + ": it names no file; write sqlite3://PATH or a plain path");
    }
    if (path.find('\0') != std::string::npos) {
        throw StoreError("store " + url.substr(0, url.find('\0')) + ": its path holds a zero byte; name another file");
    }
    return std::filesystem::absolute(path).string();
}

}  // namespace calljournal
