#include "Store.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

#include "Salvage.h"
#include "SqliteSalvage.h"
#include "SqliteStore.h"
#include "SqliteUrl.h"
#include "StoreUrl.h"

namespace calljournal {

namespace {

/// Readers take no longer text at once.
constexpr std::size_t longestReply = std::numeric_limits<std::int32_t>::max();

/// A database that stores can be kept in.
struct Engine {
    std::string_view scheme;
    std::string_view what;  ///< What its stores are, for people.
    std::string_view form;  ///< How a URL of one is written.
    std::string_view mark;  ///< What the file of one begins with, and other files do not; not empty.
    std::string (*file)(const std::string& url);  ///< The absolute path of the file that a URL means.
    std::unique_ptr<Store> (*open)(const std::string& url, EntryIndexer indexer, std::chrono::milliseconds timeout,
                                   std::size_t longestReply);
    std::unique_ptr<Store> (*openCopy)(const std::string& url, EntryIndexer indexer, std::size_t longestReply);
    Salvage (*salvage)(const std::string& url);
};

/// A URL without a scheme is one of the first engine's.
constexpr Engine engines[] = {
    {"sqlite3", "SQLite files", "sqlite3://PATH or a plain path", "SQLite format 3", sqliteFile, openSqliteStore,
     openSqliteCopy, salvageSqliteStore},
};

/// What can be opened, for the sentence on a scheme that cannot.
std::string joined(std::string_view Engine::*words) {
    std::string text;
    for (const Engine& engine : engines) {
        text.append(text.empty() ? "" : ", ").append(engine.*words);
    }
    return text;
}

/// Throws StoreError if there is none for the scheme.
const Engine& engineOf(const std::string& url) {
    const std::string_view scheme = schemeOf(url);
    for (const Engine& engine : engines) {
        if (scheme.empty() || scheme == engine.scheme) {
            return engine;
        }
    }
    throw StoreError("store " + url + ": only " + joined(&Engine::what) + " can be used; write " +
                     joined(&Engine::form));
}

}  // namespace

std::unique_ptr<Store> openStore(const std::string& url, EntryIndexer indexer, std::chrono::milliseconds timeout) {
    return engineOf(url).open(url, std::move(indexer), timeout, longestReply);
}

std::unique_ptr<Store> openStoreCopy(const std::string& url, EntryIndexer indexer) {
    return engineOf(url).openCopy(url, std::move(indexer), longestReply);
}

Salvage salvageStore(const std::string& url) {
    return engineOf(url).salvage(url);
}

std::string storeFile(const std::string& url) {
    return engineOf(url).file(url);
}

bool beginsLikeAStore(std::string_view bytes) {
    return std::any_of(std::begin(engines), std::end(engines),
                       [&](const Engine& engine) { return bytes.substr(0, engine.mark.size()) == engine.mark; });
}

}  // namespace calljournal
