#ifndef CALLJOURNAL_CALLRECORD_H
#define CALLJOURNAL_CALLRECORD_H

#include <string>

#include "ItemJson.h"
#include "Journal.h"
#include "KindInterface.h"
#include "Time.h"

namespace calljournal {

/// The key that marks a call whose number was withheld, in place of "Number".
constexpr char withheldKey[] = "Withheld";

/// The log that a call of each kind belongs to unless it says otherwise.
inline CallLogEntryEvent::_LogTarget usualTargetLog(const MissedCallItem&) {
    return CallLogEntryEvent::IN_NO_ANSWER;
}
inline CallLogEntryEvent::_LogTarget usualTargetLog(const DialledCallItem&) {
    return CallLogEntryEvent::OUT_ANSWERED;
}
inline CallLogEntryEvent::_LogTarget usualTargetLog(const ReceivedCallItem&) {
    return CallLogEntryEvent::IN_ANSWERED;
}
inline CallLogEntryEvent::_LogTarget usualTargetLog(const ForwardedCallItem&) {
    return CallLogEntryEvent::IN_ANSWERED;
}

/// Makes a call of a flat object of the party's and the call's elements: {"Surname": ..., "Number": ..., "TimeDate":
/// ...}. What is absent gets the value that a phone would give: the time now, a presentation that fits. Throws
/// ValueError that names the element at fault.
template <class Item>
NewCall<Item> newCallFromJson(const Json& json) {
    NewCall<Item> call;
    call.call.targetLog = usualTargetLog(call.party);
    call.call.timeDate = currentTime();
    bool isWithheld = false;
    for (const auto& [key, value] : json.items()) {
        if (key == withheldKey) {
            isWithheld = jsonFlag(value, key);
        } else if (key != format::text::UNIQUEID && takePartyValue(key, value, call.party)) {
            continue;
        } else if (!takeCallValue<Item>(key, value, call.call)) {
            throw ValueError(key + ": a " + KindInterface<Item>::name + " call has no such element");
        }
    }
    if (isWithheld == !call.call.number.empty()) {
        throw ValueError("a call has either a number or is withheld");
    }
    using Presentation = CallLogEntryEvent::_PresentationValue;
    const auto give = [&](const char* key, Presentation& presentation, Presentation value) {
        presentation = json.contains(key) ? presentation : value;
    };
    const bool isNamed = !call.party.getSurname().empty() || !call.party.getFirstname().empty();
    give("NumberPresentation", call.call.numberPresentation,
         isWithheld ? CallLogEntryEvent::NOT_ALLOWED : CallLogEntryEvent::ALLOWED);
    give("NamePresentation", call.call.namePresentation,
         isNamed ? CallLogEntryEvent::ALLOWED : CallLogEntryEvent::NOT_AVAILABLE);
    return call;
}

}  // namespace calljournal

#endif
