#include "Journal.h"

#include <algorithm>
#include <functional>
#include <set>
#include <type_traits>

#include "CallListDatabaseAdapterHelper.h"
#include "CarriedText.h"
#include "Entry.h"
#include "PartyIndex.h"
#include "StoreReply.h"

namespace calljournal {

using Helper = CallListDatabaseAdapterHelper;

namespace {

/// The data access service answers in time with this many entries in one request.
constexpr std::size_t entriesPerRequest = 500;

/// Throws if the reply to a read request is a refusal. Entries may hold any words, so only what is in front of
/// them counts.
void checkReadReply(const std::string& reply) {
    const std::string head = reply.substr(0, reply.find(Helper::createXMLBegin(Helper::ENTRY)));
    const bool isRefusal = head.find(openTag(resultElement)) != std::string::npos ||
                           head.find("<" + std::string(format::text::SCHEMA)) == std::string::npos;
    if (isRefusal) {
        throw JournalError(readStoreReply(head).reason);
    }
}

void checkWriteReply(const std::string& reply) {
    const StoreReply result = readStoreReply(reply);
    if (!result.ok) {
        throw JournalError(result.reason);
    }
}

/// Returns whether a text of the entries in `reply` may hold what carriedControls writes.
bool mayHoldReferences(const std::string& reply) {
    return reply.find("#x") != std::string::npos;
}

/// Returns whether a text of the item may have been escaped by carriedText.
bool mayBeCarried(const MissedCallItem& item) {
    const auto holds = [](const std::string& text) { return text.find('&') != std::string::npos; };
    if (holds(item.getEntryId()) || holds(item.getPictureClip())) {
        return true;
    }
    for (const auto& call : callsOf(item)) {
        for (const auto& field : format::CallKind<MissedCallItem>::callFields) {
            const auto* member = std::get_if<0>(&field.member);
            if (member != nullptr && holds(call.*(*member))) {
                return true;
            }
        }
    }
    return false;
}

/// Takes over what a call says of its party.
template <class Item>
void updateParty(Item& entry, const NewCall<Item>& call, [[maybe_unused]] const Journal::NumberKey& numberKey) {
    if (!call.party.getSurname().empty() || !call.party.getFirstname().empty()) {
        entry.setSurname(call.party.getSurname());
        entry.setFirstname(call.party.getFirstname());
    }
    if (!call.party.getPictureClip().empty()) {
        entry.setPictureClip(call.party.getPictureClip());
    }
    if (!call.party.getEntryId().empty()) {
        entry.setEntryId(call.party.getEntryId());
    }
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        entry.setViewed(false);
    }
    if constexpr (std::is_same_v<Item, DialledCallItem>) {
        entry.setJournalSeviceGroupBy(numberKey(call.call.number));
    }
}

/// Puts each call into its party's entry and returns the indices of the entries that changed, in the calls' order.
template <class Item>
std::vector<std::size_t> addCalls(std::deque<Item>& list, const std::vector<NewCall<Item>>& calls,
                                  const Journal::NumberKey& numberKey) {
    PartyIndex<Item> index(list, numberKey);
    std::vector<std::size_t> changed;
    std::set<std::size_t> known;
    for (const NewCall<Item>& call : calls) {
        std::size_t at = index.find(call.party, call.call);
        if (at == PartyIndex<Item>::none) {
            at = list.size();
            list.emplace_back();
        }
        updateParty(list[at], call, numberKey);
        list[at].addCallInfoToList(call.call);
        index.add(at, call.call);
        if (known.insert(at).second) {
            changed.push_back(at);
        }
    }
    return changed;
}

/// Makes each call-back an entry of its own.
std::vector<std::size_t> addCalls(std::deque<StoredCallBack>& list, const std::vector<NewCall<StoredCallBack>>& calls,
                                  const Journal::NumberKey&) {
    std::vector<std::size_t> added;
    for (const NewCall<StoredCallBack>& call : calls) {
        added.push_back(list.size());
        list.push_back(call.party);
    }
    return added;
}

template <class Item>
std::size_t findEntry(const std::deque<Item>& list, const std::string& uniqueId) {
    const auto found =
        std::find_if(list.begin(), list.end(), [&](const Item& entry) { return entry.getUniqueId() == uniqueId; });
    if (found == list.end()) {
        throw JournalError("there is no " + std::string(KindInterface<Item>::name) + " entry with the id \"" +
                           uniqueId + "\"");
    }
    return static_cast<std::size_t>(found - list.begin());
}

}  // namespace

Journal::Journal(DataAccessServiceIfc& service)
    : recorder_(service),
      numberKey_([](const std::string& number) { return number; }),
      exclusively_([](const std::function<void()>& work) { work(); }) {
    Helper::init();
    adapter_.init(&recorder_);
}

Journal::Journal(Store& store) : Journal(static_cast<DataAccessServiceIfc&>(store)) {
    exclusively_ = [&store](const std::function<void()>& work) { store.exclusively(work); };
}

template <class Item>
std::deque<Item> Journal::entries() {
    std::deque<Item> list;
    std::string reply;
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        reply = adapter_.processRequest(Helper::readMissedCallList());
        checkReadReply(reply);
        adapter_.processMissedCallDbXml(reply, list);
        for (MissedCallItem& item : list) {
            if (mayBeCarried(item)) {
                convertTexts(item, restoredText);
            }
        }
    } else {
        reply = readReply(std::string(format::CallKind<Item>::schema));
        for (const std::string& body : readEntryBodies(reply)) {
            list.emplace_back();
            KindInterface<Item>::decode(body.c_str(), list.back());
        }
        std::stable_sort(list.begin(), list.end(), isNewer<Item>);
    }
    if constexpr (KindInterface<Item>::isCallLog) {
        if (mayHoldReferences(reply)) {
            for (Item& item : list) {
                convertTexts(item, [](const std::string& text, int) { return restoredControls(text); });
            }
        }
    }
    return list;
}

template <class Item>
std::vector<Item> Journal::record(const std::vector<NewCall<Item>>& calls) {
    std::deque<Item> list;
    std::size_t oldCount = 0;
    std::vector<std::size_t> changed;
    exclusively_([&] {
        if constexpr (KindInterface<Item>::isCallLog) {
            list = entries<Item>();
        }
        oldCount = list.size();
        changed = addCalls(list, calls, numberKey_);
        write(list, changed);
    });

    std::vector<Item> written;
    for (const std::size_t index : changed) {
        written.push_back(list[index]);
        announce(list[index], index < oldCount ? JournalServiceObserverIfc::CHANGED : JournalServiceObserverIfc::ADDED);
    }
    announceUnviewed(list);
    return written;
}

MissedCallItem Journal::markViewed(const std::string& uniqueId) {
    std::deque<MissedCallItem> list;
    std::size_t index = 0;
    exclusively_([&] {
        list = entries<MissedCallItem>();
        index = findEntry(list, uniqueId);
        list[index].setViewed(true);
        write(list, {index});
    });
    announce(list[index], JournalServiceObserverIfc::VIEWED);
    announceUnviewed(list);
    return list[index];
}

template <class Item>
Item Journal::remove(const std::string& uniqueId) {
    std::deque<Item> list;
    Item removed;
    exclusively_([&] {
        list = entries<Item>();
        const std::size_t index = findEntry(list, uniqueId);
        removed = list[index];
        KindInterface<Item>::send(adapter_, removed, Helper::DELETEREQUEST);
        checkWriteReply(recorder_.lastReply());
        if constexpr (KindInterface<Item>::isCallLog) {
            adapter_.deleteFromConversationsTable(uniqueId);
            checkWriteReply(recorder_.lastReply());
        }
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
    });
    announce(removed, JournalServiceObserverIfc::DELETED);
    announceUnviewed(list);
    return removed;
}

std::string Journal::readReply(const std::string& schema) {
    std::string reply = adapter_.updateEntries(std::string(), Helper::READREQUEST, schema);
    checkReadReply(reply);
    return reply;
}

std::vector<std::string> Journal::send(const std::vector<std::string>& bodies, const std::string& schema) {
    std::vector<std::string> ids;
    for (std::size_t first = 0; first < bodies.size(); first += entriesPerRequest) {
        const std::size_t last = std::min(bodies.size(), first + entriesPerRequest);
        std::string entriesText;
        for (std::size_t i = first; i < last; ++i) {
            Helper::createXMLField(Helper::ENTRY, bodies[i], entriesText);
        }
        const StoreReply reply = readStoreReply(adapter_.updateEntries(entriesText, Helper::WRITEREQUEST, schema));
        if (!reply.ok) {
            throw JournalError(reply.reason);
        }
        if (reply.uniqueIds.size() != last - first) {
            throw JournalError("the data access service acknowledged " + std::to_string(reply.uniqueIds.size()) +
                               " of " + std::to_string(last - first) + " entries");
        }
        ids.insert(ids.end(), reply.uniqueIds.begin(), reply.uniqueIds.end());
    }
    return ids;
}

template <class Item>
void Journal::write(std::deque<Item>& list, const std::vector<std::size_t>& changed) {
    std::vector<std::string> bodies;
    for (const std::size_t index : changed) {
        bodies.push_back(KindInterface<Item>::encode(carriedItem(list[index])));
    }
    const std::vector<std::string> ids = send(bodies, std::string(format::CallKind<Item>::schema));
    for (std::size_t i = 0; i < changed.size(); ++i) {
        Item& entry = list[changed[i]];
        if (entry.getUniqueId().empty()) {
            entry.setUniqueId(ids[i]);
        }
    }
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

void Journal::announceUnviewed(const std::deque<MissedCallItem>& list) {
    if (!observers_.empty()) {
        const auto count =
            std::count_if(list.begin(), list.end(), [](const MissedCallItem& entry) { return !entry.getViewed(); });
        notify(Helper::obsReqMissedCallsCountUpdate(static_cast<unsigned>(count)));
    }
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
