#include <deque>
#include <iostream>
#include <stdexcept>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"
#include "MissedCallItem.h"
#include "ScriptedDataAccessService.h"

// How code that uses the journal is tested without a phone: the service says what the test wants to hear, and keeps
// what it was asked. Any test framework will do.

namespace {

typedef calljournal::ScriptedDataAccessService Service;
typedef CallListDatabaseAdapterHelper Helper;

int failures = 0;

void expect(bool holds, const char* what) {
    std::cout << (holds ? "ok: " : "FAILED: ") << what << '\n';
    failures += holds ? 0 : 1;
}

void entriesWithoutCallsAreDeleted() {
    Service service;
    service.when("read_request", "<Schema name=\"CallLogMissedCalls\"><Entry><UniqueId>7</UniqueId></Entry></Schema>");
    CallListDatabaseAdapter adapter;
    adapter.init(&service);

    std::deque<MissedCallItem> list;
    adapter.processMissedCallDbXml(adapter.processRequest(Helper::readMissedCallList()), list);

    expect(list.empty(), "an entry without calls is not in the list");
    expect(service.transcript().size() == 2 &&
               service.transcript()[1].request.find("<Entry><UniqueId>7</UniqueId></Entry>") != std::string::npos,
           "it is deleted from the service");
}

void aFailureOfTheServicePasses() {
    Service service;
    service.next(Service::failing(std::runtime_error("the database is gone")));
    CallListDatabaseAdapter adapter;
    adapter.init(&service);

    bool passed = false;
    try {
        adapter.deleteFromConversationsTable("7");
    } catch (const std::runtime_error&) {
        passed = true;
    }
    expect(passed && service.transcript()[0].failed, "what the service throws reaches the caller");
}

}  // namespace

int main() {
    Helper::init();
    entriesWithoutCallsAreDeleted();
    aFailureOfTheServicePasses();
    Helper::finit();
    return failures == 0 ? 0 : 1;
}
