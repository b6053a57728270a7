// A program that includes nothing of the library but the adapter's header.
#include "CallListDatabaseAdapter.h"

int main() {
    MissedCallItem::MissedCallInfo call;
    call.number = "0301234";
    MissedCallItem missed;
    missed.setUniqueId("7");
    missed.addCallInfoToList(call);
    std::deque<MissedCallItem> list(1, missed);
    const std::list<DialledCallItem::DialledCallInfo> dialledCalls(2);
    const DialledCallItem dialled("1", "Smith", "Ann", dialledCalls);
    const ReceivedCallItem received;
    const ForwardedCallItem forwarded;
    CallBackItem callBack;
    callBack.setNumber(call.number);

    const std::string body = CallListDatabaseAdapterHelper::createXMLMissedCallItemBody(list.front(), true);
    CallListDatabaseAdapter adapter;
    adapter.init(nullptr);
    adapter.updateMissedEntry(missed, CallListDatabaseAdapterHelper::DELETEREQUEST);
    adapter.normalizeMissedCallList(list);
    const bool isAsWritten =
        body == "<UniqueId>7</UniqueId>" && CallListDatabaseAdapterHelper::ITEM == std::string("Item");
    hasPhoneAvailableMemorySpace("/nowhere");
    return isAsWritten && list.size() == 1 && !isMissedCallOrdered(missed, missed) ? 0 : 1;
}
