#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "Entry.h"
#include "NumberMatcher.h"

namespace calljournal {

/// Finds the entries that are one party's: those with a number in common, and with a number in common with one of these.
class SharedNumbers {
public:
    /// Adds an entry with the keys of its numbers.
    void add(std::string id, const std::vector<std::string>& numberKeys);

    /// Returns the ids of each party that has several entries, in the order in which they were added.
    std::vector<std::vector<std::string>> parties();

private:
    std::size_t firstOf(std::size_t entry);

    std::vector<std::string> ids_;
    std::vector<std::size_t> earlier_;  ///< Of each entry, one of its party that was added before it, or itself.
    std::unordered_map<std::string, std::size_t> byNumber_;
};

/// Returns one entry in the place of `entries`, which are one party's, newest first: the first one with the newest calls
/// of them all, its name, picture and entry id those of the newest that has one. A missed one was seen if all were.
template <class Item>
Item joinedEntry(const std::vector<Item>& entries, const NumberMatcher& numberKey) {
    Item joined = entries.front();
    auto calls = callsOf(joined);
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        takeOverParty(joined, *entry);
    }
    for (std::size_t i = 1; i < entries.size(); ++i) {
        calls.insert(calls.end(), callsOf(entries[i]).begin(), callsOf(entries[i]).end());
    }
    // A list's own sort is stable.
    calls.sort([](const auto& first, const auto& second) { return first.timeDate > second.timeDate; });
    std::invoke(format::CallKind<Item>::setCalls, joined, decltype(calls)());
    for (const auto& call : calls) {
        joined.appendCallInfoToList(call);
    }
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        joined.setViewed(
            std::all_of(entries.begin(), entries.end(), [](const Item& entry) { return entry.getViewed(); }));
    }
    if constexpr (std::is_same_v<Item, DialledCallItem>) {
        joined.setJournalSeviceGroupBy(numberKey(calls.front().number));
    }
    return joined;
}

}  // namespace calljournal
