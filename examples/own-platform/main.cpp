#include <deque>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"
#include "DialledCallItem.h"
#include "ImportContactsCSVParser.h"
#include "JournalServiceObserverIfc.h"
#include "MemoryService.h"
#include "MissedCallItem.h"

namespace {

typedef CallListDatabaseAdapterHelper Helper;

/// Stands for the phone's screen, which wants to know of every change.
class Screen : public JournalServiceObserverIfc {
public:
    void notify(const std::string& message) override { std::cout << "notified: " << message << '\n'; }
};

void recordMissedCall(CallListDatabaseAdapter& adapter, const std::string& surname, const std::string& number,
                      const std::string& time) {
    MissedCallItem::MissedCallInfo call;
    call.number = number;
    call.numberType = NumberType::MOBILE;
    call.numberPresentation = CallLogEntryEvent::ALLOWED;
    call.targetLog = CallLogEntryEvent::IN_NO_ANSWER;
    call.timeDate = time;

    MissedCallItem entry;
    entry.setSurname(surname);
    entry.addCallInfoToList(call);
    adapter.updateMissedEntry(entry, Helper::WRITEREQUEST);
}

void recordDialledCall(CallListDatabaseAdapter& adapter) {
    DialledCallItem::DialledCallInfo call;
    call.number = "0309876";
    call.timeDate = "2024-05-01 11:00:00";
    call.transferType = TransferNumber::TRANSFER_DESTINATION_NUMBER;

    DialledCallItem entry;
    entry.addCallInfoToList(call);
    adapter.updateDialledEntry(entry, Helper::WRITEREQUEST);
}

std::deque<MissedCallItem> readMissedCalls(CallListDatabaseAdapter& adapter) {
    std::deque<MissedCallItem> list;
    adapter.processMissedCallDbXml(adapter.processRequest(Helper::readMissedCallList()), list);
    return list;
}

void show(const std::deque<MissedCallItem>& list) {
    std::cout << list.size() << " missed entries\n";
    for (const MissedCallItem& entry : list) {
        const MissedCallItem::MissedCallInfo& newest = entry.getMissedCallInfoList().front();
        std::cout << "  " << entry.getUniqueId() << " | " << newest.timeDate << " | " << entry.getSurname() << " | "
                  << newest.number << (entry.getViewed() ? "" : " | new") << '\n';
    }
}

void markViewed(CallListDatabaseAdapter& adapter, MissedCallItem entry, JournalServiceObserverIfc& observer) {
    entry.setViewed(true);
    adapter.updateMissedEntry(entry, Helper::WRITEREQUEST);
    observer.notify(Helper::obsReqMissedCallsUpdate(entry, "", JournalServiceObserverIfc::VIEWED));
}

/// Several entries in one request, as when a backup comes back.
void restore(CallListDatabaseAdapter& adapter, const std::deque<MissedCallItem>& list) {
    std::string entries;
    for (const MissedCallItem& entry : list) {
        entries += Helper::createXMLField(Helper::ENTRY, Helper::createXMLMissedCallItemBody(entry, false));
    }
    adapter.updateEntries(entries, Helper::WRITEREQUEST, Helper::DAS_CALLLOGMISSEDCALLS);
}

/// The import deletes its file, so it gets a copy.
void importContacts(const std::string& path) {
    const std::string copy = "contacts-to-import.csv";
    std::ofstream(copy, std::ios::binary) << std::ifstream(path, std::ios::binary).rdbuf();

    const ImportContactsCSVParser import(copy, 0);
    std::cout << path.substr(path.rfind('/') + 1) << ": outcome " << import.getCSVType() << '\n';
    for (const Contact& contact : import.getContacts()) {
        std::cout << "  " << contact.firstName << " | " << contact.lastName << " | " << contact.business1 << " | "
                  << contact.mobile1 << " | default " << contact.defaultDial << '\n';
    }
    std::cout << (std::ifstream(copy) ? "the copy is still there\n" : "the copy is gone\n");
}

}  // namespace

int main(int argumentCount, char** arguments) {
    Helper::init();
    MemoryService service;
    CallListDatabaseAdapter adapter;
    adapter.init(&service);
    Screen screen;

    recordMissedCall(adapter, "Smith & Co", "0301234", "2024-05-01 10:15:00");
    recordMissedCall(adapter, "O'Brien", "+353855550103", "2024-05-01 10:20:00");
    recordDialledCall(adapter);
    adapter.updateMissedEntry(MissedCallItem(), Helper::WRITEREQUEST);  // Without a call: reading clears it away.

    const std::deque<MissedCallItem> list = readMissedCalls(adapter);
    show(list);
    markViewed(adapter, list.front(), screen);
    adapter.updateMissedEntry(list.back(), Helper::DELETEREQUEST);
    show(readMissedCalls(adapter));
    screen.notify(Helper::obsReqMissedCallsCountUpdate(0));

    restore(adapter, list);
    show(readMissedCalls(adapter));

    for (const std::string& path : std::vector<std::string>(arguments + 1, arguments + argumentCount)) {
        importContacts(path);
    }
    Helper::finit();
}
