#ifndef CALLJOURNAL_ENTRYVIEW_H
#define CALLJOURNAL_ENTRYVIEW_H

#include <string>
#include <type_traits>
#include <vector>

#include "CallBacks.h"
#include "CallKinds.h"
#include "KindInterface.h"
#include "Wording.h"

namespace calljournal {

/// An entry of any kind as people see it in a list.
struct EntryView {
    std::string kind;
    bool isUnviewed;
    std::string uniqueId;
    std::string time;    ///< Of the newest call.
    std::string name;    ///< "First Last".
    std::string number;  ///< Of the newest call; "(withheld)" or "(unknown)" where there is none.
    std::size_t calls;
    std::string duration;  ///< Of the newest call.
    std::string note;      ///< Group, deflecting party, transfer, answered elsewhere.
};

/// "First Last", or what there is of it.
std::string fullName(const std::string& firstname, const std::string& surname);

/// "(withheld)" or "(unknown)" for a call without a number that may be shown.
std::string shownNumber(const CallInfo& call);

/// Name and number of a party that took part: "Name (number)", or what there is of it.
std::string namedNumber(const std::string& name, const std::string& number);

namespace view {

// What a call of each kind has to say beside who and when.
void addNotes(const MissedCallItem::MissedCallInfo& call, std::vector<std::string>& notes);
void addNotes(const DialledCallItem::DialledCallInfo& call, std::vector<std::string>& notes);
void addNotes(const ReceivedCallItem::ReceivedCallInfo& call, std::vector<std::string>& notes);
void addNotes(const ForwardedCallItem::ForwardedCallInfo& call, std::vector<std::string>& notes);

}  // namespace view

template <class Item>
EntryView viewOf(const Item& item) {
    const auto& calls = (item.*format::CallKind<Item>::calls)();
    EntryView shown;
    shown.kind = KindInterface<Item>::name;
    shown.isUnviewed = false;
    shown.uniqueId = item.getUniqueId();
    shown.name = fullName(item.getFirstname(), item.getSurname());
    shown.calls = calls.size();
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        shown.isUnviewed = !item.getViewed();
    }
    if (!calls.empty()) {
        const auto& newest = calls.front();
        shown.time = newest.timeDate;
        shown.number = shownNumber(newest);
        if constexpr (!std::is_same_v<Item, MissedCallItem>) {
            shown.duration = newest.duration;
        }
        std::vector<std::string> notes;
        view::addNotes(newest, notes);
        shown.note = joined(notes);
    }
    return shown;
}

EntryView viewOf(const StoredCallBack& stored);

/// One line on an entry: "missed entry 12: Ann Smith, 0301234, 2 calls".
std::string describe(const EntryView& entry);

}  // namespace calljournal

#endif
