#pragma once

#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "CallBacks.h"
#include "CallKinds.h"
#include "CallListDatabaseAdapter.h"
#include "JournalServiceObserverIfc.h"
#include "ReplyRecorder.h"
#include "Store.h"

namespace calljournal {

/// A request that the store did not carry out; `what()` is its reason, for people.
class JournalError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One call to be recorded: the party as an item without calls, and the call itself. A call without a number is
/// nobody's in particular and gets an entry of its own.
template <class Item>
struct NewCall {
    Item party;
    typename format::CallKind<Item>::Call call;
};

/// A call-back is its party's only call.
template <>
struct NewCall<StoredCallBack> {
    StoredCallBack party;
};

/// What a phone's journal service does with calls: keeps one entry for each party, newest call first, in the data
/// access service, and notifies its observers of what changed.
///
///     const std::unique_ptr<Store> store = openStore("journal.db");
///     Journal journal(*store);
///     journal.addObserver(display);
///     journal.record<MissedCallItem>({{party, call}});
///     for (const MissedCallItem& entry : journal.entries<MissedCallItem>()) ...
///
/// Item is MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem or StoredCallBack; call-backs are not
/// grouped by party, and nobody is notified of them. Every text survives the store, markup included. Operations throw
/// JournalError if the store refuses, and let its own exceptions pass; observers are notified only of what the store
/// acknowledged. One thread at a time.
class Journal {
public:
    /// Gives the same text for two ways to write one party's number. Both end with the same four digits.
    using NumberKey = std::function<std::string(const std::string& number)>;

    /// Uses `store`, which must outlive the journal, and what reads and then writes keeps other processes from writing
    /// in between. Numbers match when they are equal, unless there is a number key.
    explicit Journal(Store& store);

    /// The same with a service that others do not write to.
    explicit Journal(DataAccessServiceIfc& service);

    void setNumberKey(NumberKey numberKey) { numberKey_ = std::move(numberKey); }
    const NumberKey& numberKey() const { return numberKey_; }

    /// Shows each request and reply to `trace`.
    void setTrace(ReplyRecorder::Trace trace) { recorder_.setTrace(std::move(trace)); }

    /// Notifies `observer`, which must outlive the journal, of every change from now on.
    void addObserver(JournalServiceObserverIfc& observer) { observers_.push_back(&observer); }

    /// Returns all entries, the one with the newest call first. Missed entries without calls are deleted on the way.
    template <class Item>
    std::deque<Item> entries();

    /// Puts each call in front of its party's entry, making entries as needed, and writes the changed entries, up to
    /// 500 a request. An entry is the party's if it holds a call of that number or, for a call without a number, is of
    /// the same name. A name or picture that comes with a call replaces the entry's. Returns the written entries with
    /// their ids.
    template <class Item>
    std::vector<Item> record(const std::vector<NewCall<Item>>& calls);

    /// Marks a missed entry as seen. Throws JournalError if there is no such entry.
    MissedCallItem markViewed(const std::string& uniqueId);

    /// Deletes an entry and its conversation rows. Throws JournalError if there is no such entry.
    template <class Item>
    Item remove(const std::string& uniqueId);

private:
    /// Sends ready-made entries in requests of up to 500 and returns the ids that the store acknowledged.
    std::vector<std::string> send(const std::vector<std::string>& bodies, const std::string& schema);

    /// Returns the reply to a read request; throws JournalError if it is a refusal.
    std::string readReply(const std::string& schema);

    /// Writes the entries of `list` at the indices `changed` and gives new ones their ids.
    template <class Item>
    void write(std::deque<Item>& list, const std::vector<std::size_t>& changed);
    template <class Item>
    void announce(const Item& entry, JournalServiceObserverIfc::ActionType action);
    void announceUnviewed(const std::deque<MissedCallItem>& list);
    template <class Item>
    void announceUnviewed(const std::deque<Item>&) {}  // only missed calls are counted
    void notify(const std::string& message);

    ReplyRecorder recorder_;
    CallListDatabaseAdapter adapter_;
    NumberKey numberKey_;
    std::function<void(const std::function<void()>& work)> exclusively_;
    std::vector<JournalServiceObserverIfc*> observers_;
};

/// Returns the notification to observers of a changed entry, its texts carried as the store carries them. A
/// deleted entry's id is named.
template <class Item>
std::string notificationOf(const Item& entry, JournalServiceObserverIfc::ActionType action);

}  // namespace calljournal
