#include "JournalStores.h"

#include <cstdio>
#include <cstdlib>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"
#include "EntryIndex.h"
#include "JournalCalls.h"
#include "StoreReply.h"

using Helper = CallListDatabaseAdapterHelper;
using calljournal::Store;

namespace bench {

std::string missedSchema() {
    return std::string(calljournal::format::CallKind<MissedCallItem>::schema);
}

std::unique_ptr<Store> openJournal(const std::string& file) {
    return calljournal::openStore(file, calljournal::indexEntry);
}

std::string bodyOf(const MissedCallItem& entry) {
    return Helper::createXMLMissedCallItemBody(entry, false);
}

calljournal::NewCall<MissedCallItem> callOf(const MissedCallItem& entry) {
    calljournal::NewCall<MissedCallItem> call;
    call.party = entry;
    call.party.setMissedCallInfoList({});
    call.call = entry.getMissedCallInfoList().front();
    return call;
}

void buildStore(const std::string& file, std::size_t count, const std::function<MissedCallItem(std::size_t)>& entry) {
    constexpr int requestsPerTransaction = 20;
    const std::unique_ptr<Store> store = openJournal(file);
    store->setSetting(calljournal::regionSetting, region);
    CallListDatabaseAdapter adapter;
    adapter.init(store.get());
    for (std::size_t index = 0; index < count;) {
        store->exclusively([&] {
            for (int request = 0; request < requestsPerTransaction && index < count; ++request) {
                std::string entries;
                for (std::size_t i = 0; i < entriesPerRequest && index < count; ++i, ++index) {
                    Helper::createXMLField(Helper::ENTRY, bodyOf(entry(index)), entries);
                }
                const auto reply =
                    calljournal::readStoreReply(adapter.updateEntries(entries, Helper::WRITEREQUEST, missedSchema()));
                if (!reply.ok || reply.uniqueIds.back() != std::to_string(index)) {
                    std::fprintf(stderr, "%s: cannot be built: %s\n", file.c_str(), reply.reason.c_str());
                    std::exit(1);
                }
            }
        });
    }
}

void buildJournal(const std::string& file, std::size_t count) {
    const bool hasPage = count >= 4 * sharedEntries;
    buildStore(file, count, [&](std::size_t index) { return hasPage ? entryOfJournal(index, count) : entryAt(index); });
}

}  // namespace bench
