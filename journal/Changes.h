#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "JournalServiceObserverIfc.h"
#include "KindInterface.h"

namespace calljournal {

/// What became of one entry of a list.
template <class Item>
struct Change {
    JournalServiceObserverIfc::ActionType action;  ///< VIEWED if nothing else is different.
    Item entry;                                    ///< As it is now; a deleted one as it was.
};

/// Returns whether the user has seen the entry in between, and that is all.
inline bool isOnlySeen(const MissedCallItem& before, MissedCallItem now) {
    const bool isSeen = !before.getViewed() && now.getViewed();
    now.setViewed(false);
    return isSeen && now == before;
}

template <class Item>
bool isOnlySeen(const Item&, const Item&) {
    return false;
}

/// Returns what is different between two states of a list of calls: the entries that were added or changed, in the
/// order of their ids, and behind them those that were deleted.
template <class Item>
std::vector<Change<Item>> changesBetween(const std::deque<Item>& before, const std::deque<Item>& now) {
    static_assert(KindInterface<Item>::isCallLog, "call-backs are equal whatever their parties are called");
    using Action = JournalServiceObserverIfc;
    const auto byId = [](const std::deque<Item>& list) {
        std::map<std::string, const Item*> entries;
        for (const Item& entry : list) {
            entries.emplace(entry.getUniqueId(), &entry);
        }
        return entries;
    };
    const auto old = byId(before);
    const auto current = byId(now);
    std::vector<Change<Item>> changes;
    for (const auto& [id, entry] : current) {
        const auto found = old.find(id);
        if (found == old.end()) {
            changes.push_back({Action::ADDED, *entry});
        } else if (!(*found->second == *entry)) {
            changes.push_back({isOnlySeen(*found->second, *entry) ? Action::VIEWED : Action::CHANGED, *entry});
        }
    }
    for (const auto& [id, entry] : old) {
        if (current.count(id) == 0) {
            changes.push_back({Action::DELETED, *entry});
        }
    }
    return changes;
}

}  // namespace calljournal
