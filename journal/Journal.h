#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "Entry.h"
#include "JournalServiceObserverIfc.h"
#include "NumberMatcher.h"
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

/// What became of an entry.
struct Change {
    JournalServiceObserverIfc::ActionType action;  ///< VIEWED if nothing else is different.
    AnyEntry entry;                                ///< As it is now; a deleted one as it was.
};

/// An entry that others of its party were joined to.
struct JoinedParty {
    AnyEntry entry;
    std::vector<std::string> joinedIds;
};

/// What a phone's journal service does with calls: keeps one entry for each party, newest call first, in the data
/// access service, and notifies its observers of what changed.
///
///     const std::unique_ptr<Store> store = openStore("journal.db", indexEntry);
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
    /// Uses `store`, which was opened with indexEntry and must outlive the journal. What reads and then writes keeps
    /// other processes from writing in between.
    explicit Journal(Store& store);

    Store& store() { return store_; }

    /// Shows each request and reply to `trace`.
    void setTrace(ReplyRecorder::Trace trace) { recorder_.setTrace(std::move(trace)); }

    /// Notifies `observer`, which must outlive the journal, of every change from now on.
    void addObserver(JournalServiceObserverIfc& observer) { observers_.push_back(&observer); }

    /// Returns the region that the store's numbers are dialled in; noRegion if none was set.
    std::string region() { return store_.setting(regionSetting).value_or(noRegion); }

    /// Returns what gives a number's key in the store's region.
    NumberMatcher numberKey() { return NumberMatcher(region()); }

    /// Reads the entries that the store finds, `query.limit` or at most 500 at a time, and calls `visit` with each, the
    /// one with the newest call first, until it returns false. It may take the entry. Missed entries without calls are
    /// deleted on the way, and what else the query's conditions are is for `visit` to check: an index may be wrong.
    void forEachEntry(EntryQuery query, const std::function<bool(AnyEntry& entry)>& visit);

    /// Returns all entries, the one with the newest call first. Missed entries without calls are deleted on the way.
    template <class Item>
    std::deque<Item> entries();

    /// Puts each call in front of its party's entry, making entries as needed, and writes the changed entries, up to
    /// 500 a request. An entry is the party's if it holds a call of that number, by its key, or, for a call without a
    /// number, is of the same name. A name or picture that comes with a call replaces the entry's. Returns the written
    /// entries with their ids.
    template <class Item>
    std::vector<Item> record(const std::vector<NewCall<Item>>& calls);

    /// Marks a missed entry as seen. Throws JournalError if there is no such entry.
    MissedCallItem markViewed(const std::string& uniqueId);

    /// Deletes an entry and its conversation rows. Throws JournalError if there is no such entry.
    template <class Item>
    Item remove(const std::string& uniqueId);

    /// Sets the store's region, and joins entries of one kind that share a number in it: the newest keeps its id and
    /// gets the newest calls of them all, up to ten; it was seen if all were, and is called what the newest one with a
    /// name is. The others are deleted. Returns the entries that others were joined to.
    std::vector<JoinedParty> changeRegion(const std::string& region);

    /// Does the same with a store that has no region. Does nothing with another one, and returns nothing.
    std::optional<std::vector<JoinedParty>> takeRegion(const std::string& region);

private:
    /// Sets the region if `isWanted`, which is asked in the same transaction.
    std::optional<std::vector<JoinedParty>> setRegion(const std::string& region, const std::function<bool()>& isWanted);

    std::vector<AnyEntry> readPage(const std::vector<FoundEntry>& page);

    /// Returns the entry of that id; throws JournalError if there is none.
    template <class Item>
    Item entryOf(const std::string& uniqueId);

    /// Writes the entries in requests of up to 500 and gives new ones their ids.
    template <class Item>
    void write(const std::vector<Item*>& entries);

    template <class Item>
    void deleteEntry(const Item& entry);

    /// Returns how many missed entries wait to be seen; 0 if nobody is to be notified.
    std::uint64_t unseenCount();

    /// Returns the ids of each party that has several entries, newest first.
    template <class Item>
    std::vector<std::vector<std::string>> partiesWithSeveral();

    /// Makes one entry of those with the ids, and appends what was changed to `changes`.
    template <class Item>
    JoinedParty join(const std::vector<std::string>& ids, std::vector<Change>& changes);

    template <class Item>
    void announce(const Item& entry, JournalServiceObserverIfc::ActionType action);
    /// Notifies observers of `count` unless Item is a kind that nobody counts.
    template <class Item>
    void announceUnseen(std::uint64_t count);
    void notify(const std::string& message);

    Store& store_;
    ReplyRecorder recorder_;
    CallListDatabaseAdapter adapter_;
    std::vector<JournalServiceObserverIfc*> observers_;
};

/// Returns the notification to observers of a changed entry, its texts carried as the store carries them. A
/// deleted entry's id is named.
template <class Item>
std::string notificationOf(const Item& entry, JournalServiceObserverIfc::ActionType action);

}  // namespace calljournal
