#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "DataAccessServiceIfc.h"
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
};

/// Opens the store of `url`, `sqlite3://PATH` or a plain path, and creates it, its tables and its folders as needed.
/// Tables of an older version are brought up to date. What cannot be written is opened for reading. A request waits for
/// other processes until `timeout`. Throws StoreError if no database is known for the scheme, or if the store cannot be
/// opened, is none, or was written by a newer version; it is then as it was.
std::unique_ptr<Store> openStore(const std::string& url, std::chrono::milliseconds timeout = std::chrono::seconds(30));

/// Whether a file that begins with `bytes` can be a store, so that its path is one to open.
bool beginsLikeAStore(std::string_view bytes);

}  // namespace calljournal
