#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "Duration.h"
#include "Entry.h"
#include "Text.h"
#include "Wording.h"

namespace calljournal {

/// An entry of any kind as people see it in a list.
struct EntryView {
    std::string kind;
    bool isUnviewed = false;
    std::string uniqueId;
    std::string time;    ///< Of the newest call.
    std::string name;    ///< "First Last".
    std::string number;  ///< Of the newest call; "(withheld)" or "(unknown)" where there is none.
    std::size_t calls = 0;
    std::string duration;  ///< Of the newest call.
    std::string note;      ///< Group, deflecting party, transfer, answered elsewhere.
};

/// "(withheld)" or "(unknown)" for a call without a number that may be shown.
std::string shownNumber(const CallInfo& call);
inline std::string shownNumber(const CallBackCall& call) {
    return call.number;
}

// What a call of each kind has to say beside who and when.
#define CALLJOURNAL_NOTES(Kind, word) std::vector<std::string> notesOn(const Kind##CallItem::Kind##CallInfo& call);
CALLJOURNAL_CALL_KINDS(CALLJOURNAL_NOTES)
#undef CALLJOURNAL_NOTES
std::vector<std::string> notesOn(const CallBackCall& call);

template <class Item>
EntryView viewOf(const Item& item) {
    const auto& calls = callsOf(item);
    EntryView shown;
    shown.kind = KindInterface<Item>::name;
    shown.uniqueId = item.getUniqueId();
    shown.time = newestTime(item);
    shown.name = fullName(item.getFirstname(), item.getSurname());
    shown.calls = calls.size();
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        shown.isUnviewed = !item.getViewed();
    }
    if (!calls.empty()) {
        const auto& newest = calls.front();
        shown.number = shownNumber(newest);
        if constexpr (std::is_base_of_v<Duration, std::decay_t<decltype(newest)>>) {
            shown.duration = newest.duration;
        }
        shown.note = joined(notesOn(newest));
    }
    return shown;
}

/// A sentence on an entry: "missed entry 12: Ann Smith, 0301234, 2 calls".
std::string describe(const EntryView& entry);

}  // namespace calljournal
