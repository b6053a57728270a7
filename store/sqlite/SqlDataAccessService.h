#ifndef CALLJOURNAL_SQLDATAACCESSSERVICE_H
#define CALLJOURNAL_SQLDATAACCESSSERVICE_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "DataAccessServiceIfc.h"
#include "StoreError.h"
#include "StoreUrl.h"

namespace calljournal {

/// A data access service that keeps the entries in a SQLite file.
///
///     calljournal::SqlDataAccessService store("sqlite3:///users/ann/journal.db");
///     CallListDatabaseAdapter adapter;
///     adapter.init(&store);
///
/// Several processes may use one file; each waits its turn. One thread at a time for each object. A child made by fork
/// must open a service of its own.
class SqlDataAccessService : public DataAccessServiceIfc {
public:
    /// Opens the file of `url` (see StoreUrl.h) and creates it, its tables and its folders as needed. Tables of an
    /// older version are brought up to date. A file that cannot be written is opened for reading. `patience` is how
    /// long a request waits for other processes. Throws StoreError if the file cannot be opened, is not a store, or was
    /// written by a newer version; it is then as it was.
    explicit SqlDataAccessService(const std::string& url,
                                  std::chrono::milliseconds patience = std::chrono::seconds(30));
    ~SqlDataAccessService() override;

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
    std::string processRequest(const std::string& request) override;

    /// Runs `work`, whose requests to this service become one transaction: no other process writes in between, and all
    /// of it is on disk when the function returns. An exception of `work` takes all of it back and passes through, so
    /// an "ok" counts only from the return on. A request that fails is taken back alone. Throws StoreError if the
    /// transaction cannot begin or be committed.
    void exclusively(const std::function<void()>& work);

    /// Returns one entry's body as a read request serves it, id in front; nothing if there is no such entry. Throws
    /// StoreError.
    std::optional<std::string> findEntry(const std::string& schema, const std::string& uniqueId);

    /// Returns a number that changes whenever the store may have changed, by this object or another process; compare it
    /// for equality with an earlier one of the same object. Cheap enough to be polled. Throws StoreError.
    std::uint64_t changeCount();

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace calljournal

#endif
