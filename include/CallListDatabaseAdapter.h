#ifndef CALLJOURNAL_CALLLISTDATABASEADAPTER_H
#define CALLJOURNAL_CALLLISTDATABASEADAPTER_H

#include <deque>
#include <string>

#include "CallBackItem.h"
#include "CallJournalExport.h"
#include "CallListDatabaseAdapterHelper.h"
#include "DataAccessServiceIfc.h"
#include "DialledCallItem.h"
#include "ForwardedCallItem.h"
#include "MissedCallItem.h"
#include "ReceivedCallItem.h"
#include "StorageSpace.h"

/// The journal service's door to the data access service: it wraps call log entries into requests and reads the missed
/// call list.
///
///     CallListDatabaseAdapterHelper::init();
///     CallListDatabaseAdapter adapter;
///     adapter.init(&service);
///     adapter.updateMissedEntry(entry, CallListDatabaseAdapterHelper::WRITEREQUEST);
///
/// The service stays the caller's; it must outlive the adapter or be taken away by `init(nullptr)`. One thread at a
/// time. An exception of the service passes through every operation.
class CALLJOURNAL_EXPORT CallListDatabaseAdapter {
public:
    /// No service: each request is answered "failed".
    CallListDatabaseAdapter();
    virtual ~CallListDatabaseAdapter();

    /// Uses `dataAccessService` from now on, or none if it is null.
    void init(DataAccessServiceIfc* dataAccessService);

    /// Returns the service's reply to `request`, or "failed" without a service.
    std::string processRequest(const std::string& request);

    /// Returns whether `reason` is exactly "delete_request".
    bool isDeleteRequest(const std::string& reason) const;

    /// Sends `entries`, ready-made `Entry` elements, with `reason` to the schema `schemaName` and returns the reply.
    /// Nothing is escaped. An empty reason or schema name leaves out its element. Request and reply go to the log at
    /// level 5.
    std::string updateEntries(const std::string& entries, const std::string& reason, const std::string& schemaName);

    /// Sends one entry with the item body `body`; an empty body sends no `Entry` element. The reply is dropped.
    void updateEntry(const std::string& body, const std::string& reason, const std::string& schemaName);

    /// Writes or deletes one entry of its kind. `reason` is "write_request", or "delete_request" which sends nothing
    /// but the unique id. The reply is dropped.
    void updateMissedEntry(const MissedCallItem& item, const std::string& reason);
    void updateDialledEntry(const DialledCallItem& item, const std::string& reason);
    void updateReceivedEntry(const ReceivedCallItem& item, const std::string& reason);
    void updateForwardedEntry(const ForwardedCallItem& item, const std::string& reason);

    /// Deletes the conversation rows of one call log entry. The id is not escaped; with an empty one the request goes
    /// out without an entry. The reply is dropped.
    void deleteFromConversationsTable(const std::string& callLogId);

    /// Fills `list` from the reply to CallListDatabaseAdapterHelper::readMissedCallList(). Always true.
    bool populateMissedCallListFromXml(const std::string& reply, std::deque<MissedCallItem>& list);

    /// Sorts `list` newest first (see isMissedCallOrdered), takes out the entries without calls and deletes them from
    /// the service, in the list's order. When the service throws, the entry at hand and those after it are still in the
    /// list. While a request is under way, a list of hundreds may still hold entries that are deleted already.
    void normalizeMissedCallList(std::deque<MissedCallItem>& list);

    /// Reads the list from `reply` and normalises it.
    void processMissedCallDbXml(const std::string& reply, std::deque<MissedCallItem>& list);

private:
    DataAccessServiceIfc* service_;
};

/// Returns whether `first` comes before `second`: its key is greater, bytes compared as unsigned. The key is the time
/// and date of the newest call, or the entry id of an item without calls. Equal keys are in no order.
CALLJOURNAL_EXPORT bool isMissedCallOrdered(const MissedCallItem& first, const MissedCallItem& second);

#endif
