#pragma once

#include <array>
#include <functional>
#include <string>
#include <type_traits>
#include <variant>

#include "CallKinds.h"
#include "KindInterface.h"

namespace calljournal {

// What entries of all kinds have in common.

#define CALLJOURNAL_ITEM(Kind, word) Kind##CallItem,
using AnyEntry = std::variant<CALLJOURNAL_CALL_KINDS(CALLJOURNAL_ITEM) StoredCallBack>;
#undef CALLJOURNAL_ITEM

/// A call-back as the only call of its entry; it must outlive this object.
struct CallBackCall {
    const StoredCallBack& callBack;
    const std::string& number;
    const std::string& timeDate;
};

/// Returns the calls of an entry, newest first.
template <class Item>
const auto& callsOf(const Item& entry) {
    return std::invoke(format::CallKind<Item>::calls, entry);
}
inline std::array<CallBackCall, 1> callsOf(const StoredCallBack& entry) {
    return {{{entry, entry.getNumber(), entry.getTimeDate()}}};
}

/// Returns the time of the newest call; empty without one.
template <class Item>
const std::string& newestTime(const Item& entry) {
    static const std::string none;
    const auto& calls = callsOf(entry);
    return calls.empty() ? none : calls.front().timeDate;
}

/// Replaces the name, the picture and the entry id of `entry` by those that `party` has.
template <class Item>
void takeOverParty(Item& entry, const Item& party) {
    if (!party.getSurname().empty() || !party.getFirstname().empty()) {
        entry.setSurname(party.getSurname());
        entry.setFirstname(party.getFirstname());
    }
    if (!party.getPictureClip().empty()) {
        entry.setPictureClip(party.getPictureClip());
    }
    if (!party.getEntryId().empty()) {
        entry.setEntryId(party.getEntryId());
    }
}

/// Calls `use(base, fields)` for each table of fields that `entry` has beside its calls, in the order in which they are
/// written; `base` is the entry as the class that the table is for.
template <class Item, class Use>
void forEachFieldTable(Item& entry, Use use) {
    using Plain = std::remove_const_t<Item>;
    if constexpr (KindInterface<Plain>::isCallLog) {
        using Party = std::conditional_t<std::is_const_v<Item>, const CallItemWithPicture, CallItemWithPicture>;
        use(static_cast<Party&>(entry), format::partyFields);
    }
    use(entry, format::CallKind<Plain>::itemFields);
}

}  // namespace calljournal
