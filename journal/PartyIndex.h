#pragma once

#include <algorithm>
#include <cctype>
#include <deque>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "CallKinds.h"

namespace calljournal {

/// Finds the entry that a call belongs to. Numbers are compared by their keys, which may be costly to make, so entries
/// are looked up by their last digits first: two ways to signal one number end alike.
template <class Item>
class PartyIndex {
public:
    using Kind = format::CallKind<Item>;
    using Call = typename Kind::Call;
    using NumberKey = std::function<std::string(const std::string&)>;

    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// Indexes `entries`; both arguments must outlive the index.
    PartyIndex(const std::deque<Item>& entries, const NumberKey& numberKey) : entries_(entries), numberKey_(numberKey) {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            for (const Call& call : std::invoke(Kind::calls, entries[i])) {
                add(i, call);
            }
        }
    }

    /// Makes `call`, which the entry at `index` holds now, known.
    void add(std::size_t index, const Call& call) {
        if (!call.number.empty()) {
            std::vector<Place>& places = byEnding_[ending(call.number)];
            if (places.empty() || places.back().index != index || places.back().number != call.number) {
                places.push_back({index, call.number});
            }
        }
        byName_.emplace(name(entries_[index]), index);
    }

    /// Returns the index of the entry of the party that made `call`: the one that holds a call of that number or, for a
    /// call without a number that was not withheld either, the first one of that name. `none` if there is no such
    /// entry.
    std::size_t find(const Item& party, const Call& call) const {
        return call.number.empty() ? findName(party, call) : findNumber(call.number);
    }

private:
    struct Place {
        std::size_t index;
        std::string number;
    };

    std::size_t findName(const Item& party, const Call& call) const {
        const bool isWithheld = call.numberPresentation == CallLogEntryEvent::NOT_ALLOWED;
        const bool isNameless = party.getSurname().empty() && party.getFirstname().empty();
        const auto found = byName_.find(name(party));
        return isWithheld || isNameless || found == byName_.end() ? none : found->second;
    }

    std::size_t findNumber(const std::string& number) const {
        const auto found = byEnding_.find(ending(number));
        if (found == byEnding_.end()) {
            return none;
        }
        const std::vector<Place>& places = found->second;
        // Most calls signal a party's number as the last one did.
        const auto same =
            std::find_if(places.begin(), places.end(), [&](const Place& place) { return place.number == number; });
        if (same != places.end()) {
            return same->index;
        }
        const std::string key = numberKey_(number);
        const auto equal = std::find_if(places.begin(), places.end(),
                                        [&](const Place& place) { return numberKey_(place.number) == key; });
        return equal == places.end() ? none : equal->index;
    }

    static std::string name(const Item& party) { return party.getSurname() + '\n' + party.getFirstname(); }

    /// The last four digits.
    static std::string ending(const std::string& number) {
        std::string digits;
        for (auto letter = number.rbegin(); letter != number.rend() && digits.size() < 4; ++letter) {
            if (std::isdigit(static_cast<unsigned char>(*letter)) != 0) {
                digits += *letter;
            }
        }
        return digits;
    }

    const std::deque<Item>& entries_;
    const NumberKey& numberKey_;
    std::unordered_map<std::string, std::vector<Place>> byEnding_;
    std::unordered_map<std::string, std::size_t> byName_;
};

}  // namespace calljournal
