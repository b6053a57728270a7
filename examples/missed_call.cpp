#include <deque>
#include <iostream>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"
#include "MissedCallItem.h"

/// Stands for the phone's data access service: shows each request and serves an empty list.
class ShowingService : public DataAccessServiceIfc {
public:
    std::string processRequest(const std::string& request) override {
        std::cout << request << '\n';
        return "<Schema name=\"CallLogMissedCalls\"></Schema>";
    }
};

void recordMissedCall(DataAccessServiceIfc& service) {
    CallListDatabaseAdapterHelper::init();
    CallListDatabaseAdapter adapter;
    adapter.init(&service);

    MissedCallItem::MissedCallInfo call;
    call.number = "0301234";
    call.timeDate = "2024-05-01 10:15:00";
    MissedCallItem entry;
    entry.setSurname("Smith & Co");
    entry.addCallInfoToList(call);
    adapter.updateMissedEntry(entry, CallListDatabaseAdapterHelper::WRITEREQUEST);

    std::deque<MissedCallItem> list;
    adapter.processMissedCallDbXml(adapter.processRequest(CallListDatabaseAdapterHelper::readMissedCallList()), list);
    std::cout << list.size() << " missed entries\n";
}

int main() {
    ShowingService service;
    recordMissedCall(service);
    CallListDatabaseAdapterHelper::finit();
}
