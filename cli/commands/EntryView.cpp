#include "EntryView.h"

#include "CallBackJson.h"
#include "PrintableText.h"
#include "Words.h"

namespace calljournal {

std::string fullName(const std::string& firstname, const std::string& surname) {
    return firstname.empty() || surname.empty() ? firstname + surname : firstname + ' ' + surname;
}

std::string shownNumber(const CallInfo& call) {
    if (!call.number.empty()) {
        return call.number;
    }
    return call.numberPresentation == CallLogEntryEvent::NOT_ALLOWED ? "(withheld)" : "(unknown)";
}

std::string namedNumber(const std::string& name, const std::string& number) {
    return name.empty() || number.empty() ? name + number : name + " (" + number + ")";
}

namespace view {

namespace {

void addParty(const char* relation, const std::string& name, const std::string& number,
              std::vector<std::string>& notes) {
    if (!name.empty() || !number.empty()) {
        notes.push_back(relation + namedNumber(name, number));
    }
}

void addConnected(const CallInfo& call, std::vector<std::string>& notes) {
    if (call.connectedNumber != call.number) {
        addParty("connected to ", fullName(call.connectedFirstname, call.connectedSurname), call.connectedNumber,
                 notes);
    }
}

void addTransfer(const Redirecting& call, std::vector<std::string>& notes) {
    if (call.transferType == TransferNumber::TRANSFER_DESTINATION_NUMBER) {
        notes.emplace_back("transfer destination");
    } else if (call.transferType == TransferNumber::TRANSFER_GROUP_NUMBER) {
        notes.emplace_back("transferred group");
    }
}

}  // namespace

void addNotes(const MissedCallItem::MissedCallInfo& call, std::vector<std::string>& notes) {
    addParty("group ", call.groupName, call.groupNumber, notes);
    addParty("deflected by ", call.deflectName, call.deflectNumber, notes);
    if (call.completedElsewhere) {
        notes.emplace_back("answered elsewhere");
    }
}

void addNotes(const DialledCallItem::DialledCallInfo& call, std::vector<std::string>& notes) {
    addConnected(call, notes);
    addTransfer(call, notes);
    if (call.isBluetoothCall) {
        notes.emplace_back("Bluetooth");
    }
}

void addNotes(const ReceivedCallItem::ReceivedCallInfo& call, std::vector<std::string>& notes) {
    addParty("deflected by ", call.deflectName, call.deflectNumber, notes);
    addTransfer(call, notes);
}

void addNotes(const ForwardedCallItem::ForwardedCallInfo& call, std::vector<std::string>& notes) {
    addConnected(call, notes);
    addTransfer(call, notes);
}

}  // namespace view

EntryView viewOf(const StoredCallBack& stored) {
    const CallBackItem& item = stored.item;
    EntryView shown;
    shown.kind = callBackKind;
    shown.isUnviewed = false;
    shown.uniqueId = stored.uniqueId;
    shown.time = item.getTimeDate();
    shown.name = fullName(item.getFirstname(), item.getSurname());
    shown.number = item.getNumber();
    shown.calls = 1;
    std::vector<std::string> notes;
    if (item.getCallBackType() != CallBackItem::NOTYPE) {
        notes.emplace_back(format::toWord(item.getCallBackType()));
    }
    if (item.getCallBackState() != CallBackItem::NOSTATE) {
        notes.emplace_back(format::toWord(item.getCallBackState()));
    }
    if (!item.getDeviceId().empty()) {
        notes.push_back("device " + item.getDeviceId());
    }
    shown.note = joined(notes);
    return shown;
}

std::string describe(const EntryView& entry) {
    const std::string name = entry.name.empty() ? std::string() : printable(entry.name) + ", ";
    return entry.kind + " entry " + entry.uniqueId + ": " + name + printable(entry.number) + ", " +
           std::to_string(entry.calls) + (entry.calls == 1 ? " call" : " calls");
}

}  // namespace calljournal
