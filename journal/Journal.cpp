#include "Journal.h"

#include <algorithm>
#include <optional>
#include <type_traits>

#include "CallListDatabaseAdapterHelper.h"
#include "CarriedText.h"
#include "JoinedParties.h"
#include "Kinds.h"
#include "PartyEntries.h"
#include "StoreReply.h"
#include "StoredEntry.h"

namespace calljournal {

using Helper = CallListDatabaseAdapterHelper;

namespace {

/// The data access service answers in time with this many entries in one request.
constexpr std::size_t entriesPerRequest = 500;
constexpr std::size_t entriesPerPage = 500;

void checkWriteReply(const std::string& reply) {
    const StoreReply result = readStoreReply(reply);
    if (!result.ok) {
        throw JournalError(result.reason);
    }
}

}  // namespace

Journal::Journal(Store& store) : store_(store), recorder_(store) {
    Helper::init();
    adapter_.init(&recorder_);
}

void Journal::forEachEntry(EntryQuery query, const std::function<bool(AnyEntry& entry)>& visit) {
    query.limit = query.limit == 0 ? entriesPerPage : std::min(query.limit, entriesPerPage);
    for (auto page = store_.find(query); !page.empty(); page = store_.find(query)) {
        for (AnyEntry& entry : readPage(page)) {
            if (!visit(entry)) {
                return;
            }
        }
        query.after = page.back().cursor;
    }
}

std::vector<AnyEntry> Journal::readPage(const std::vector<FoundEntry>& page) {
    std::string missedEntries;
    for (const FoundEntry& found : page) {
        if (found.schema == format::CallKind<MissedCallItem>::schema) {
            Helper::createXMLField(Helper::ENTRY, found.text, missedEntries);
        }
    }
    std::deque<MissedCallItem> missed;
    if (!missedEntries.empty()) {
        missed = readMissedEntries(adapter_, std::move(missedEntries));
    }
    std::vector<AnyEntry> entries;
    for (const FoundEntry& found : page) {
        withSchema(found.schema, [&](auto type) {
            using Item = typename decltype(type)::Item;
            if constexpr (std::is_same_v<Item, MissedCallItem>) {
                if (!missed.empty()) {
                    entries.emplace_back(std::move(missed.front()));
                    missed.pop_front();
                }
            } else {
                entries.emplace_back(*storedEntry<Item>(found.text));
            }
        });
    }
    return entries;
}

template <class Item>
std::deque<Item> Journal::entries() {
    std::deque<Item> list;
    forEachEntry(queryOfKind<Item>(), [&](AnyEntry& entry) {
        list.push_back(std::move(std::get<Item>(entry)));
        return true;
    });
    return list;
}

template <class Item>
std::vector<Item> Journal::record(const std::vector<NewCall<Item>>& calls) {
    std::optional<PartyEntries<Item>> parties;
    std::vector<Item*> changed;
    std::uint64_t unseen = 0;
    store_.exclusively([&] {
        parties.emplace(store_, numberKey());
        for (const NewCall<Item>& call : calls) {
            parties->add(call);
        }
        for (RecordedEntry<Item>* entry : parties->changed()) {
            changed.push_back(&entry->item);
        }
        write(changed);
        unseen = unseenCount();
    });

    std::vector<Item> written;
    written.reserve(changed.size());
    for (RecordedEntry<Item>* entry : parties->changed()) {
        written.push_back(std::move(entry->item));
        announce(written.back(), entry->isNew ? JournalServiceObserverIfc::ADDED : JournalServiceObserverIfc::CHANGED);
    }
    announceUnseen<Item>(unseen);
    return written;
}

MissedCallItem Journal::markViewed(const std::string& uniqueId) {
    MissedCallItem entry;
    std::uint64_t unseen = 0;
    store_.exclusively([&] {
        entry = entryOf<MissedCallItem>(uniqueId);
        entry.setViewed(true);
        write(std::vector{&entry});
        unseen = unseenCount();
    });
    announce(entry, JournalServiceObserverIfc::VIEWED);
    announceUnseen<MissedCallItem>(unseen);
    return entry;
}

template <class Item>
Item Journal::remove(const std::string& uniqueId) {
    Item entry;
    std::uint64_t unseen = 0;
    store_.exclusively([&] {
        entry = entryOf<Item>(uniqueId);
        deleteEntry(entry);
        unseen = unseenCount();
    });
    announce(entry, JournalServiceObserverIfc::DELETED);
    announceUnseen<Item>(unseen);
    return entry;
}

std::vector<JoinedParty> Journal::changeRegion(const std::string& region) {
    return setRegion(region, [] { return true; }).value_or(std::vector<JoinedParty>());
}

std::optional<std::vector<JoinedParty>> Journal::takeRegion(const std::string& region) {
    return setRegion(region, [this] { return !store_.setting(regionSetting); });
}

std::optional<std::vector<JoinedParty>> Journal::setRegion(const std::string& region,
                                                           const std::function<bool()>& isWanted) {
    std::optional<std::vector<JoinedParty>> joined;
    std::vector<Change> changes;
    std::uint64_t unseen = 0;
    store_.exclusively([&] {
        if (!isWanted()) {
            return;
        }
        joined.emplace();
        store_.setSetting(regionSetting, region);
        forEachCallLog([&](auto type) {
            for (const std::vector<std::string>& ids : partiesWithSeveral<typename decltype(type)::Item>()) {
                joined->push_back(join<typename decltype(type)::Item>(ids, changes));
            }
        });
        unseen = unseenCount();
    });
    for (const Change& change : changes) {
        std::visit([&](const auto& entry) { announce(entry, change.action); }, change.entry);
    }
    if (!changes.empty()) {
        announceUnseen<MissedCallItem>(unseen);
    }
    return joined;
}

template <class Item>
Item Journal::entryOf(const std::string& uniqueId) {
    EntryQuery query = queryOfKind<Item>();
    query.id = uniqueId;
    const std::vector<FoundEntry> found = store_.find(query);
    const std::optional<Item> entry = found.empty() ? std::nullopt : storedEntry<Item>(found.front().text);
    if (uniqueId.empty() || !entry) {
        throw JournalError("there is no " + std::string(KindInterface<Item>::name) + " entry with the id \"" +
                           uniqueId + "\"");
    }
    return *entry;
}

template <class Item>
void Journal::write(const std::vector<Item*>& entries) {
    const std::string schema(format::CallKind<Item>::schema);
    for (std::size_t first = 0; first < entries.size(); first += entriesPerRequest) {
        const std::size_t count = std::min(entries.size() - first, entriesPerRequest);
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            Helper::createXMLField(Helper::ENTRY, KindInterface<Item>::encode(carriedItem(*entries[first + i])), text);
        }
        const StoreReply reply = readStoreReply(adapter_.updateEntries(text, Helper::WRITEREQUEST, schema));
        if (!reply.ok) {
            throw JournalError(reply.reason);
        }
        if (reply.uniqueIds.size() != count) {
            throw JournalError("the data access service acknowledged " + std::to_string(reply.uniqueIds.size()) +
                               " of " + std::to_string(count) + " entries");
        }
        for (std::size_t i = 0; i < count; ++i) {
            if (entries[first + i]->getUniqueId().empty()) {
                entries[first + i]->setUniqueId(reply.uniqueIds[i]);
            }
        }
    }
}

template <class Item>
void Journal::deleteEntry(const Item& entry) {
    KindInterface<Item>::send(adapter_, entry, Helper::DELETEREQUEST);
    checkWriteReply(recorder_.lastReply());
    if constexpr (KindInterface<Item>::isCallLog) {
        adapter_.deleteFromConversationsTable(entry.getUniqueId());
        checkWriteReply(recorder_.lastReply());
    }
}

template <class Item>
std::vector<std::vector<std::string>> Journal::partiesWithSeveral() {
    const NumberMatcher key = numberKey();
    SharedNumbers numbers;
    forEachEntry(queryOfKind<Item>(), [&](const AnyEntry& entry) {
        const Item& item = std::get<Item>(entry);
        std::vector<std::string> keys;
        for (const auto& call : callsOf(item)) {
            if (!call.number.empty()) {
                keys.push_back(key(call.number));
            }
        }
        numbers.add(item.getUniqueId(), keys);
        return true;
    });
    return numbers.parties();
}

template <class Item>
JoinedParty Journal::join(const std::vector<std::string>& ids, std::vector<Change>& changes) {
    std::vector<Item> entries;
    for (const std::string& id : ids) {
        entries.push_back(entryOf<Item>(id));
    }
    Item joined = joinedEntry(entries, numberKey());
    write(std::vector{&joined});
    changes.push_back({JournalServiceObserverIfc::CHANGED, joined});
    for (std::size_t i = 1; i < entries.size(); ++i) {
        deleteEntry(entries[i]);
        changes.push_back({JournalServiceObserverIfc::DELETED, std::move(entries[i])});
    }
    return {std::move(joined), {ids.begin() + 1, ids.end()}};
}

template <class Item>
std::string notificationOf(const Item& entry, JournalServiceObserverIfc::ActionType action) {
    const bool isDeleted = action == JournalServiceObserverIfc::DELETED;
    return KindInterface<Item>::update(carriedItem(entry), isDeleted ? entry.getUniqueId() : std::string(), action);
}

template <class Item>
void Journal::announce(const Item& entry, JournalServiceObserverIfc::ActionType action) {
    if constexpr (KindInterface<Item>::isCallLog) {
        if (!observers_.empty()) {
            notify(notificationOf(entry, action));
        }
    }
}

template <class Item>
void Journal::announceUnseen([[maybe_unused]] std::uint64_t count) {
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        if (!observers_.empty()) {
            notify(Helper::obsReqMissedCallsCountUpdate(static_cast<unsigned>(count)));
        }
    }
}

std::uint64_t Journal::unseenCount() {
    return observers_.empty() ? 0 : store_.count(format::CallKind<MissedCallItem>::schema).unseen;
}

void Journal::notify(const std::string& message) {
    for (JournalServiceObserverIfc* observer : observers_) {
        observer->notify(message);
    }
}

#define CALLJOURNAL_JOURNAL(Item)                                                        \
    template std::deque<Item> Journal::entries<Item>();                                  \
    template std::vector<Item> Journal::record(const std::vector<NewCall<Item>>& calls); \
    template Item Journal::remove<Item>(const std::string& uniqueId);
#define CALLJOURNAL_CALL_LOG(Kind, word) \
    CALLJOURNAL_JOURNAL(Kind##CallItem)  \
    template std::string notificationOf(const Kind##CallItem& entry, JournalServiceObserverIfc::ActionType action);

CALLJOURNAL_CALL_KINDS(CALLJOURNAL_CALL_LOG)
CALLJOURNAL_JOURNAL(StoredCallBack)

}  // namespace calljournal
