#include "EntryView.h"

#include "Words.h"

namespace calljournal {

namespace {

using Notes = std::vector<std::string>;

/// Name and number of a party that took part: "Name (number)", or what there is of it.
std::string namedNumber(const std::string& name, const std::string& number) {
    return name.empty() || number.empty() ? name + number : name + " (" + number + ")";
}

void addParty(const char* relation, const std::string& name, const std::string& number, Notes& notes) {
    if (!name.empty() || !number.empty()) {
        notes.push_back(relation + namedNumber(name, number));
    }
}

void addConnected(const CallInfo& call, Notes& notes) {
    if (call.connectedNumber != call.number) {
        addParty("connected to ", fullName(call.connectedFirstname, call.connectedSurname), call.connectedNumber,
                 notes);
    }
}

void addTransfer(const Redirecting& call, Notes& notes) {
    if (call.transferType == TransferNumber::TRANSFER_DESTINATION_NUMBER) {
        notes.emplace_back("transfer destination");
    } else if (call.transferType == TransferNumber::TRANSFER_GROUP_NUMBER) {
        notes.emplace_back("transferred group");
    }
}

}  // namespace

std::string shownNumber(const CallInfo& call) {
    if (!call.number.empty()) {
        return call.number;
    }
    return call.numberPresentation == CallLogEntryEvent::NOT_ALLOWED ? "(withheld)" : "(unknown)";
}

Notes notesOn(const MissedCallItem::MissedCallInfo& call) {
    Notes notes;
    addParty("group ", call.groupName, call.groupNumber, notes);
    addParty("deflected by ", call.deflectName, call.deflectNumber, notes);
    if (call.completedElsewhere) {
        notes.emplace_back("answered elsewhere");
    }
    return notes;
}

Notes notesOn(const DialledCallItem::DialledCallInfo& call) {
    Notes notes;
    addConnected(call, notes);
    addTransfer(call, notes);
    if (call.isBluetoothCall) {
        notes.emplace_back("Bluetooth");
    }
    return notes;
}

Notes notesOn(const ReceivedCallItem::ReceivedCallInfo& call) {
    Notes notes;
    addParty("deflected by ", call.deflectName, call.deflectNumber, notes);
    addTransfer(call, notes);
    return notes;
}

Notes notesOn(const ForwardedCallItem::ForwardedCallInfo& call) {
    Notes notes;
    addConnected(call, notes);
    addTransfer(call, notes);
    return notes;
}

Notes notesOn(const CallBackCall& call) {
    Notes notes;
    if (call.callBack.getCallBackType() != CallBackItem::NOTYPE) {
        notes.emplace_back(format::toWord(call.callBack.getCallBackType()));
    }
    if (call.callBack.getCallBackState() != CallBackItem::NOSTATE) {
        notes.emplace_back(format::toWord(call.callBack.getCallBackState()));
    }
    addParty("device ", "", call.callBack.getDeviceId(), notes);
    return notes;
}

std::string describe(const EntryView& entry) {
    return entry.kind + " entry " + entry.uniqueId + ": " + entry.name + (entry.name.empty() ? "" : ", ") +
           entry.number + ", " + std::to_string(entry.calls) + (entry.calls == 1 ? " call" : " calls");
}

}  // namespace calljournal
