#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <list>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Entry.h"
#include "EntryIndex.h"
#include "Journal.h"
#include "NumberMatcher.h"
#include "Store.h"
#include "StoredEntry.h"

namespace calljournal {

/// An entry that calls were put into.
template <class Item>
struct RecordedEntry {
    Item item;
    bool isNew = false;
    bool isChanged = false;  ///< False for one that was only looked at.
};

/// Puts calls into the entries of their parties. What is read from the store for one call is kept for the next ones, so
/// the store must not change in between.
template <class Item>
class PartyEntries {
public:
    PartyEntries(Store& store, NumberMatcher numberKey) : store_(store), numberKey_(std::move(numberKey)) {}

    /// Puts a call into the entry that holds a call of that number or, if it has no number and is not withheld, that of
    /// the same name; else into a new one. Of several entries it is the first in the list that holds the number as the
    /// call signals it, or else in another form. What the call says of its party replaces what the entry says.
    void add(const NewCall<Item>& call) {
        const std::string key = numberKey_(call.call.number);
        const std::size_t at = key.empty() ? placeOfName(call) : placeOfNumber(call.call.number, key);
        RecordedEntry<Item>& entry = entries_[at];
        takeOverParty(entry.item, call.party);
        if constexpr (std::is_same_v<Item, MissedCallItem>) {
            entry.item.setViewed(false);
        }
        if constexpr (std::is_same_v<Item, DialledCallItem>) {
            entry.item.setJournalSeviceGroupBy(key);
        }
        entry.item.addCallInfoToList(call.call);
        byName_.emplace(nameOf(entry.item), at);
        if (!entry.isChanged) {
            entry.isChanged = true;
            changed_.push_back(&entry);
        }
    }

    /// The entries that calls were put into, in the order of the calls.
    const std::vector<RecordedEntry<Item>*>& changed() const { return changed_; }

private:
    /// A number, and the entry that holds a call of it.
    struct Place {
        std::size_t entry;
        std::string number;
    };

    std::size_t placeOfNumber(const std::string& number, const std::string& key) {
        const auto [found, isFirst] = byNumber_.try_emplace(key);
        std::vector<Place>& places = found->second;
        if (isFirst) {
            places = storedPlaces(key);
        }
        // Most calls signal a party's number as the last one did.
        const auto same =
            std::find_if(places.begin(), places.end(), [&](const Place& place) { return place.number == number; });
        if (same != places.end()) {
            return same->entry;
        }
        places.push_back({places.empty() ? makeEntry() : places.front().entry, number});
        return places.back().entry;
    }

    std::size_t placeOfName(const NewCall<Item>& call) {
        const bool isWithheld = call.call.numberPresentation == CallLogEntryEvent::NOT_ALLOWED;
        const bool isNameless = call.party.getSurname().empty() && call.party.getFirstname().empty();
        if (isWithheld || isNameless) {
            return makeEntry();
        }
        const std::string name = nameOf(call.party);
        if (lookedUp_.insert(name).second) {
            if (const auto stored = storedPlace(call.party)) {
                byName_.insert_or_assign(name, *stored);
            }
        }
        const auto found = byName_.find(name);
        return found == byName_.end() ? makeEntry() : found->second;
    }

    /// Returns the places of all numbers with that key in the store.
    std::vector<Place> storedPlaces(const std::string& key) {
        EntryQuery query = queryOfKind<Item>();
        query.numberKey = indexedNumber(key);
        std::vector<Place> places;
        for (const FoundEntry& found : store_.find(query)) {
            const std::optional<Item> item = storedEntry<Item>(found.text);
            for (const auto& call : item ? callsOf(*item) : Calls()) {
                if (numberKey_(call.number) == key) {
                    places.push_back({makeKnown(found.id, *item), call.number});
                }
            }
        }
        return places;
    }

    /// Returns the place of the first entry in the store with calls of a party of that name.
    std::optional<std::size_t> storedPlace(const Item& party) {
        EntryQuery query = queryOfKind<Item>();
        query.name = indexedName(party.getFirstname(), party.getSurname());
        query.limit = namesPerPage;
        for (auto page = store_.find(query); !page.empty(); page = store_.find(query)) {
            for (const FoundEntry& found : page) {
                const std::optional<Item> item = storedEntry<Item>(found.text);
                if (item && nameOf(*item) == nameOf(party) && !callsOf(*item).empty()) {
                    return makeKnown(found.id, *item);
                }
                query.after = found.cursor;
            }
        }
        return std::nullopt;
    }

    std::size_t makeKnown(const std::string& id, const Item& item) {
        const auto [found, isFirst] = byId_.emplace(id, entries_.size());
        if (isFirst) {
            entries_.push_back({item, false, false});
        }
        return found->second;
    }

    std::size_t makeEntry() {
        entries_.push_back({Item(), true, false});
        return entries_.size() - 1;
    }

    static std::string nameOf(const Item& party) { return party.getSurname() + '\n' + party.getFirstname(); }

    using Calls = std::list<typename format::CallKind<Item>::Call>;

    static constexpr std::size_t namesPerPage = 50;

    Store& store_;
    NumberMatcher numberKey_;
    std::deque<RecordedEntry<Item>> entries_;
    std::vector<RecordedEntry<Item>*> changed_;
    std::unordered_map<std::string, std::size_t> byId_;
    std::unordered_map<std::string, std::vector<Place>> byNumber_;
    std::unordered_map<std::string, std::size_t> byName_;
    std::unordered_set<std::string> lookedUp_;  ///< The names that were looked up in the store.
};

/// Makes each call-back an entry of its own.
template <>
class PartyEntries<StoredCallBack> {
public:
    PartyEntries(Store&, const NumberMatcher&) {}

    void add(const NewCall<StoredCallBack>& call) {
        entries_.push_back({call.party, true, true});
        changed_.push_back(&entries_.back());
    }

    const std::vector<RecordedEntry<StoredCallBack>*>& changed() const { return changed_; }

private:
    std::deque<RecordedEntry<StoredCallBack>> entries_;
    std::vector<RecordedEntry<StoredCallBack>*> changed_;
};

}  // namespace calljournal
