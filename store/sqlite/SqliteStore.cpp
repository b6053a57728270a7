#include "SqliteStore.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <new>
#include <soci/soci.h>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "ClientUtils.h"
#include "EntryBody.h"
#include "EntryFinder.h"
#include "EntryTable.h"
#include "SqliteConnection.h"
#include "SqliteUrl.h"
#include "StoreRequest.h"
#include "StoreSchema.h"
#include "StoreWords.h"
#include "TemporaryFolder.h"

namespace calljournal {

namespace {

namespace text = format::text;

/// More than the tags that a reply adds to an entry, a picture clip's longer name included.
constexpr std::size_t tagsPerEntry = 64;
constexpr std::size_t envelopeSize = 128;

/// A longer reply grows as it comes. What a damaged file says of its size is not to be believed.
constexpr std::size_t largestReserve = std::size_t{1} << 30U;

constexpr int mostCopies = 50;
constexpr std::chrono::milliseconds pauseBetweenCopies{20};

constexpr char noMemory[] = "there is not enough memory for this request";

/// Appends an entry as readers get it.
void appendEntry(std::string_view schema, std::string_view id, std::string_view body, std::string& reply) {
    reply.append(openTag(text::ENTRY));
    appendServed(schema, id, body, reply);
    reply.append(closeTag(text::ENTRY));
}

/// Returns what a reply of `schema` begins with; without a schema, that is the XML declaration alone.
std::string beginReply(std::string_view schema) {
    std::string reply(text::XMLHEADER);
    if (!schema.empty()) {
        reply.append(schemaTagBegin).append(schema).append(schemaTagEnd);
    }
    return reply;
}

std::string failedReply(std::string_view schema, const std::string& reason) {
    return beginReply(schema) + xmlElement(resultElement, failedResult) +
           xmlElement(reasonElement, ClientUtils::escapeXMLString(reason)) +
           (schema.empty() ? std::string() : closeTag(text::SCHEMA));
}

class SqliteStore : public Store {
public:
    SqliteStore(const std::string& file, EntryIndexer indexer, std::chrono::milliseconds timeout,
                std::size_t longestReply)
        : SqliteStore(nullptr, file, file, std::move(indexer), timeout, longestReply) {}

    /// Uses `file`, which errors call `name`; `folder`, which it is in, goes with the store.
    SqliteStore(std::unique_ptr<TemporaryFolder> folder, const std::string& file, const std::string& name,
                EntryIndexer indexer, std::chrono::milliseconds timeout, std::size_t longestReply)
        : folder_(std::move(folder)),
          connection_(file, name, timeout),
          indexer_(std::move(indexer)),
          longestReply_(longestReply) {
        guarded([this] {
            prepareStore(connection_, [this] { index(); });
            indexNewEntries();
        });
    }

    std::string processRequest(const std::string& request) override {
        StoreRequest scanned;
        try {
            scanned = scanStoreRequest(request);
            if (!scanned.problem.empty()) {
                return failedReply(scanned.schema, scanned.problem);
            }
            return guarded(
                [&] { return scanned.action == StoreAction::read ? read(scanned.schema) : change(scanned); });
        } catch (const StoreError& failure) {
            return failedReply(scanned.schema, failure.what());
        } catch (const std::bad_alloc&) {
            return failedReply(scanned.schema, noMemory);
        } catch (const std::length_error&) {
            // No text can be as long as the reply would be, which is less than memory where addresses are short.
            return failedReply(scanned.schema, noMemory);
        } catch (const std::exception& failure) {
            return failedReply(scanned.schema, failure.what());
        }
    }

    void exclusively(const std::function<void()>& work) override {
        if (isExclusive_) {
            work();
            return;
        }
        const auto transaction =
            guarded([&] { return std::make_unique<Transaction>(connection_, Transaction::Scope::writing); });
        isExclusive_ = true;
        try {
            work();
            guarded([&] { transaction->commit(); });
        } catch (...) {
            isExclusive_ = false;
            throw;
        }
        isExclusive_ = false;
    }

    std::uint64_t changeCount() override {
        return guarded([this] { return ownChanges_ + static_cast<std::uint64_t>(connection_.dataVersion()); });
    }

    std::vector<FoundEntry> find(const EntryQuery& query) override {
        requireIndexer();
        return reading([&] { return finder().find(query); });
    }

    EntryCount count(std::string_view schema) override {
        const SchemaTotal total = reading([&] { return entries().total(schema); });
        return {static_cast<std::uint64_t>(total.entries), static_cast<std::uint64_t>(total.unseen)};
    }

    StoreChanges changes(std::uint64_t since) override {
        return reading([&] { return finder().changes(since); });
    }

    std::optional<std::string> setting(std::string_view name) override {
        return reading([&] { return entries().setting(name); });
    }

    void setSetting(std::string_view name, std::string_view value) override {
        if (name == regionSetting) {
            requireIndexer();
        }
        exclusively([&] {
            guarded([&] {
                const std::string key(name);
                const std::string text(value);
                connection_.sql() << "insert into setting (name, value) values (:name, :value) "
                                     "on conflict (name) do update set value = excluded.value",
                    soci::use(key), soci::use(text);
                if (name == regionSetting) {
                    index();
                }
                ++ownChanges_;
            });
        });
    }

    std::vector<IndexFault> checkIndex() override {
        requireIndexer();
        return reading([&] { return entries().checkIndex(); });
    }

private:
    std::string read(std::string_view schema) {
        const Transaction transaction(connection_, scope(Transaction::Scope::reading));
        const SchemaTotal total = entries().total(schema);
        std::string reply = beginReply(schema);
        reply.reserve(std::min(static_cast<std::size_t>(total.bytes) +
                                   static_cast<std::size_t>(total.entries) * tagsPerEntry + envelopeSize,
                               largestReserve));
        entries().forEach(schema, [&](std::string_view id, std::string_view body) {
            appendEntry(schema, id, body, reply);
            if (reply.size() + envelopeSize > longestReply_) {
                throw connection_.error("its " + std::string(schema) + " are more than one reply can hold (" +
                                        std::to_string(longestReply_) + " bytes); read them by pages");
            }
        });
        return reply.append(closeTag(text::SCHEMA));
    }

    void requireIndexer() const {
        if (!indexer_) {
            throw std::logic_error("a store that is opened without an indexer finds nothing");
        }
    }

    /// Derives the keys of all entries.
    void index() {
        if (indexer_) {
            entries().index();
        }
    }

    /// Gives entries that were written without an indexer their keys.
    void indexNewEntries() {
        int count = 0;
        if (indexer_ && !connection_.isReadOnly()) {
            connection_.sql() << "select count(*) from (select 1 from entry where is_seen < 0 limit 1)",
                soci::into(count);
        }
        if (count > 0) {
            Transaction transaction(connection_, Transaction::Scope::writing);
            index();
            transaction.commit();
        }
    }

    /// Writes or deletes entries.
    std::string change(const StoreRequest& request) {
        Transaction transaction(connection_, scope(Transaction::Scope::writing));
        // The reply comes first: where memory runs out, nothing is committed.
        std::string reply = beginReply(request.schema) + xmlElement(resultElement, okResult);
        entries().begin(request.schema);
        if (request.action == StoreAction::write) {
            reply += write(request);
        } else {
            for (const StoreEntry& entry : request.entries) {
                entries().remove(entry.id);
            }
        }
        entries().finish();
        reply += closeTag(text::SCHEMA);
        transaction.commit();
        ++ownChanges_;
        return reply;
    }

    /// Returns the elements with the ids of the entries written.
    std::string write(const StoreRequest& request) {
        // All ids of the request first, so that none given to one entry is that of a later one.
        for (const StoreEntry& entry : request.entries) {
            entries().skipId(entry.id);
        }
        std::string ids;
        for (const StoreEntry& entry : request.entries) {
            if (entry.id.empty()) {
                ids += xmlElement(text::UNIQUEID, insert(entry.body));
            } else {
                entries().put(entry.id, entry.body);
                ids += xmlElement(text::UNIQUEID, entry.id);
            }
        }
        return ids;
    }

    /// Returns the id that the entry got.
    std::string insert(std::string_view body) {
        std::string id = entries().takeNextId();
        if (id.empty()) {
            throw connection_.error("it has no free id left; give the entry an id");
        }
        entries().insert(id, body);
        return id;
    }

    /// Returns the prepared statements; fresh ones after a failure.
    EntryTable& entries() {
        if (!table_) {
            table_ = std::make_unique<EntryTable>(connection_.sql(), indexer_);
        }
        return *table_;
    }

    EntryFinder& finder() {
        if (!finder_) {
            finder_ = std::make_unique<EntryFinder>(connection_.sql(), entries());
        }
        return *finder_;
    }

    void dropStatements() {
        finder_.reset();
        table_.reset();
    }

    /// Runs `work` on one state of the database.
    template <class Work>
    auto reading(const Work& work) -> decltype(work()) {
        return guarded([&] {
            std::optional<Transaction> transaction;
            if (!isExclusive_) {
                transaction.emplace(connection_, Transaction::Scope::reading);
            }
            return work();
        });
    }

    /// Returns the scope for a request: `alone`, or a savepoint in the exclusive work that it belongs to.
    Transaction::Scope scope(Transaction::Scope alone) const {
        return isExclusive_ ? Transaction::Scope::savepoint : alone;
    }

    /// Runs `work` on the database and returns its result. A failure of the database leaves as a StoreError.
    template <class Work>
    auto guarded(const Work& work) -> decltype(work()) {
        try {
            connection_.refuseIfMoved();
            if (isExclusive_ && !connection_.isInTransaction()) {
                throw connection_.error(
                    "an earlier failure has ended the work that this request is part of; start it again");
            }
            return work();
        } catch (const soci::soci_error& failure) {
            dropStatements();
            throw connection_.error(failure);
        } catch (const StoreDamage& damage) {
            dropStatements();
            throw connection_.damage(damage.what());
        } catch (...) {
            dropStatements();
            throw;
        }
    }

    std::unique_ptr<TemporaryFolder> folder_;
    SqliteConnection connection_;
    EntryIndexer indexer_;
    std::size_t longestReply_;
    std::unique_ptr<EntryTable> table_;
    std::unique_ptr<EntryFinder> finder_;
    std::uint64_t ownChanges_ = 0;
    bool isExclusive_ = false;
};

/// A file, and what differs when it was written.
using FileState = std::tuple<std::string, std::uintmax_t, std::filesystem::file_time_type>;

/// The files that a store consists of. What else is beside them is made anew when it is opened.
std::vector<FileState> filesOf(const std::string& file) {
    std::vector<FileState> files;
    for (const std::string& path : {file, file + "-wal"}) {
        if (std::filesystem::exists(path)) {
            files.emplace_back(path, std::filesystem::file_size(path), std::filesystem::last_write_time(path));
        }
    }
    return files;
}

/// Copies the files of a store; false if one was written or removed meanwhile.
bool copyFiles(const std::string& file, const std::filesystem::path& target) {
    std::filesystem::remove(target.string() + "-wal");  // of an earlier attempt
    try {
        const auto files = filesOf(file);
        for (const auto& [path, size, time] : files) {
            std::filesystem::copy_file(path, target.string() + path.substr(file.size()),
                                       std::filesystem::copy_options::overwrite_existing);
        }
        return filesOf(file) == files;
    } catch (const std::filesystem::filesystem_error& failure) {
        if (failure.code() != std::errc::no_such_file_or_directory || !std::filesystem::exists(file)) {
            throw;
        }
        return false;
    }
}

}  // namespace

std::unique_ptr<Store> openSqliteStore(const std::string& url, EntryIndexer indexer, std::chrono::milliseconds timeout,
                                       std::size_t longestReply) {
    return std::make_unique<SqliteStore>(sqliteFile(url), std::move(indexer), timeout, longestReply);
}

std::unique_ptr<Store> openSqliteCopy(const std::string& url, EntryIndexer indexer, std::size_t longestReply) {
    const std::string file = sqliteFile(url);
    auto folder = std::make_unique<TemporaryFolder>();
    const std::filesystem::path copy = folder->path() / "journal.db";
    try {
        // The log is beside the file itself, not beside a link to it.
        const std::string itself = std::filesystem::canonical(file).string();
        for (int attempt = 1; !copyFiles(itself, copy); ++attempt) {
            if (attempt == mostCopies) {
                throw StoreError("store " + file + ": another process writes it all the time; try again later");
            }
            std::this_thread::sleep_for(pauseBetweenCopies);
        }
    } catch (const std::filesystem::filesystem_error& failure) {
        throw StoreError("store " + file + ": it cannot be copied to " + folder->path().string() + " (" +
                         failure.code().message() + "); make room there, or name another folder in TMPDIR");
    }
    return std::make_unique<SqliteStore>(std::move(folder), copy.string(), file, std::move(indexer),
                                         std::chrono::seconds(1), longestReply);
}

}  // namespace calljournal
