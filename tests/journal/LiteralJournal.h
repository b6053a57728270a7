#pragma once

#include <deque>
#include <string>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "Filter.h"
#include "Journal.h"
#include "ReplyRecorder.h"

namespace calljournal {

/// What a Journal does, by literal rules on any data access service: it reads whole lists, as a phone does, and looks
/// through them from front to back.
class LiteralJournal {
public:
    LiteralJournal(DataAccessServiceIfc& service, const std::string& region);

    void addObserver(JournalServiceObserverIfc& observer) { observers_.push_back(&observer); }

    template <class Item>
    std::deque<Item> entries();

    template <class Item>
    std::vector<Item> record(const std::vector<NewCall<Item>>& calls);

    MissedCallItem markViewed(const std::string& uniqueId);

    template <class Item>
    Item remove(const std::string& uniqueId);

    std::vector<JoinedParty> changeRegion(const std::string& region);

    std::vector<AnyEntry> wantedEntries(const Filter& filter);

private:
    /// Makes one entry of each party that has several of one kind, and appends what was changed to `changes`.
    template <class Item>
    void join(std::vector<JoinedParty>& joined, std::vector<Change>& changes);
    template <class Item>
    void deleteEntry(const Item& entry);
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
    NumberMatcher numberKey_;
    std::vector<JournalServiceObserverIfc*> observers_;
};

/// Returns what is different between two states of a list of calls: the entries that were added or changed, in the
/// order of their ids, and behind them those that were deleted.
template <class Item>
std::vector<Change> changesBetween(const std::deque<Item>& before, const std::deque<Item>& now);

}  // namespace calljournal
