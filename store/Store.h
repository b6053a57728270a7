#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "DataAccessServiceIfc.h"
#include "EntryQuery.h"
#include "StoreError.h"

namespace calljournal {

/// A data access service that keeps the entries in a database.
///
///     const std::unique_ptr<calljournal::Store> store = calljournal::openStore("sqlite3:///users/ann/journal.db");
///     CallListDatabaseAdapter adapter;
///     adapter.init(store.get());
///
/// Several processes may use one database; each waits its turn. One thread at a time for each object. A child made by
/// fork must open a store of its own.
class Store : public DataAccessServiceIfc {
public:
    /// Carries out one request and returns the reply, in the same envelope:
    ///
    ///     write_request, entries        <Result>ok</Result> and one <UniqueId> for each entry
    ///     delete_request, entries       <Result>ok</Result>
    ///     read_request                  one <Entry> for each stored entry, in order of first insertion
    ///     any of them, not carried out  <Result>failed</Result><Reason>why, for people</Reason>
    ///
    /// A read request whose reply would be longer than 2^31 - 1 bytes fails; no reader could take it.
    /// A request is done whole or not at all, and is on disk when the reply says "ok". What a request must look like is
    /// in StoreRequest.h. An entry keeps its bytes; only its id is always put in front, and a missed call's `Picture`
    /// is served as `PictureClip`. An entry that comes without an id gets the next decimal number, from 1, that no
    /// entry of any schema has had. Database errors are replies too. Throws std::bad_alloc if there is not even the
    /// memory for that reply.
    std::string processRequest(const std::string& request) override = 0;

    /// Runs `work`, whose requests to this store become one transaction: no other process writes in between, and all
    /// of it is on disk when the function returns. An exception of `work` rolls all of it back and passes through, so
    /// an "ok" counts only from the return on. A request that fails is rolled back alone. Throws StoreError if the
    /// transaction cannot begin or be committed.
    virtual void exclusively(const std::function<void()>& work) = 0;

    /// Returns a number that changes whenever the store may have changed, by this object or another process; compare it
    /// for equality with an earlier one of the same object. Cheap enough to be polled. Throws StoreError.
    virtual std::uint64_t changeCount() = 0;

    /// Returns the wanted entries, the one with the newest call first. Costs what the page costs, however many entries
    /// there are, except where the query says otherwise. The keys only find candidates: what is true of an entry is in
    /// its text. Throws StoreError; std::logic_error if the store was opened without an indexer.
    virtual std::vector<FoundEntry> find(const EntryQuery& query) = 0;

    /// Returns how many entries `schema` has; 0 for an unknown one. Throws StoreError.
    virtual EntryCount count(std::string_view schema) = 0;

    /// Returns what has changed since an earlier call returned the number `since`, the first thousand changes of it; with
    /// 0, nothing but the number to begin with. An entry that was written with the bytes that it had is not changed.
    /// Throws StoreError.
    virtual StoreChanges changes(std::uint64_t since) = 0;

    /// Returns the value of a setting; nothing if it was never set. Throws StoreError.
    virtual std::optional<std::string> setting(std::string_view name) = 0;

    /// Keeps the value of a setting. To set `regionSetting`, also to what it is, makes all keys anew, in the same
    /// transaction. Throws StoreError.
    virtual void setSetting(std::string_view name, std::string_view value) = 0;

    /// Returns the entries whose keys do not fit their bodies; reads and derives all. Throws StoreError;
    /// std::logic_error if the store was opened without an indexer.
    virtual std::vector<IndexFault> checkIndex() = 0;
};

/// The setting for the region that the store's numbers are dialled in: an ISO 3166-1 code such as "DE".
inline constexpr std::string_view regionSetting = "region";

/// Opens the store of `url`, `sqlite3://PATH` or a plain path, and creates it, its tables and its folders as needed.
/// Tables of an older version are brought up to date. Entries get the keys that `indexer` derives, also those that were
/// written without one; a store that is opened without it answers requests, and finds nothing. What cannot be written is opened for reading. A request waits for
/// other processes until `timeout`. Throws StoreError if no database is known for the scheme, or if the store cannot be
/// opened, is none, or was written by a newer version; it is then as it was.
std::unique_ptr<Store> openStore(const std::string& url, EntryIndexer indexer = {},
                                 std::chrono::milliseconds timeout = std::chrono::seconds(30));

/// Returns the absolute path of the file that the store of `url` is in, or would be in. Throws StoreError if no database
/// is known for the scheme, or if the URL names no file.
std::string storeFile(const std::string& url);

/// Opens a copy of the store of `url` in a temporary folder, which goes with the object: whatever is done with it leaves
/// the store, its folder and its version as they are. Errors name the store. Throws StoreError as openStore does, or if
/// the store cannot be copied, since another process writes it all the time, for instance.
std::unique_ptr<Store> openStoreCopy(const std::string& url, EntryIndexer indexer = {});

/// Whether a file that begins with `bytes` can be a store, so that its path is one to open.
bool beginsLikeAStore(std::string_view bytes);

}  // namespace calljournal
