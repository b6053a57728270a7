#include "LiteralJournal.h"

#include <algorithm>
#include <map>
#include <set>
#include <type_traits>

#include "CarriedText.h"
#include "Folding.h"
#include "Kinds.h"
#include "StoreReply.h"
#include "Text.h"

namespace calljournal {

using Helper = CallListDatabaseAdapterHelper;

namespace {

constexpr std::size_t none = static_cast<std::size_t>(-1);

void checkReply(const std::string& reply) {
    const StoreReply result = readStoreReply(reply);
    if (!result.ok) {
        throw JournalError(result.reason);
    }
}

/// Takes over what a call says of its party.
template <class Item>
void updateParty(Item& entry, const NewCall<Item>& call, [[maybe_unused]] const NumberMatcher& numberKey) {
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

/// Returns whether the newest call of `first` is newer than that of `second`. An entry without calls is the oldest.
template <class Item>
bool isNewer(const Item& first, const Item& second) {
    if (callsOf(first).empty() || callsOf(second).empty()) {
        return !callsOf(first).empty();
    }
    return newestTime(first) > newestTime(second);
}

/// Where the numbers and names of a list were met, in that order.
template <class Item>
class Parties {
public:
    Parties(const std::deque<Item>& list, const NumberMatcher& numberKey) : list_(list), numberKey_(numberKey) {
        for (std::size_t i = 0; i < list.size(); ++i) {
            for (const auto& call : callsOf(list[i])) {
                add(i, call.number);
            }
        }
    }

    void add(std::size_t index, const std::string& number) {
        if (!number.empty()) {
            numbers_.push_back({index, number});
        }
        names_.push_back({index, nameOf(list_[index])});
    }

    std::size_t find(const NewCall<Item>& call) const {
        const std::string& number = call.call.number;
        if (number.empty()) {
            const bool isWithheld = call.call.numberPresentation == CallLogEntryEvent::NOT_ALLOWED;
            const bool isNameless = call.party.getSurname().empty() && call.party.getFirstname().empty();
            const std::string name = nameOf(call.party);
            return isWithheld || isNameless ? none
                                            : first(names_, [&](const std::string& text) { return text == name; });
        }
        const std::size_t same = first(numbers_, [&](const std::string& text) { return text == number; });
        const std::string key = numberKey_(number);
        return same != none ? same : first(numbers_, [&](const std::string& text) { return numberKey_(text) == key; });
    }

private:
    struct Place {
        std::size_t index;
        std::string text;
    };

    static std::string nameOf(const Item& party) { return party.getSurname() + '\n' + party.getFirstname(); }

    template <class Fits>
    static std::size_t first(const std::vector<Place>& places, const Fits& fits) {
        const auto found =
            std::find_if(places.begin(), places.end(), [&](const Place& place) { return fits(place.text); });
        return found == places.end() ? none : found->index;
    }

    const std::deque<Item>& list_;
    const NumberMatcher& numberKey_;
    std::vector<Place> numbers_;
    std::vector<Place> names_;
};

/// Puts each call into its party's entry and returns the indices of the entries that changed, in the calls' order.
template <class Item>
std::vector<std::size_t> addCalls(std::deque<Item>& list, const std::vector<NewCall<Item>>& calls,
                                  const NumberMatcher& numberKey) {
    Parties<Item> parties(list, numberKey);
    std::vector<std::size_t> changed;
    std::set<std::size_t> known;
    for (const NewCall<Item>& call : calls) {
        std::size_t at = parties.find(call);
        if (at == none) {
            at = list.size();
            list.emplace_back();
        }
        updateParty(list[at], call, numberKey);
        list[at].addCallInfoToList(call.call);
        parties.add(at, call.call.number);
        if (known.insert(at).second) {
            changed.push_back(at);
        }
    }
    return changed;
}

std::vector<std::size_t> addCalls(std::deque<StoredCallBack>& list, const std::vector<NewCall<StoredCallBack>>& calls,
                                  const NumberMatcher&) {
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

/// Returns the indices of the entries of each party that has several: those that share a number, and those that share one
/// with one of these.
template <class Item>
std::vector<std::vector<std::size_t>> partiesWithSeveral(const std::deque<Item>& list, const NumberMatcher& numberKey) {
    std::map<std::set<std::size_t>, std::set<std::string>> parties;
    for (std::size_t i = 0; i < list.size(); ++i) {
        std::set<std::size_t> indices = {i};
        std::set<std::string> keys;
        for (const auto& call : callsOf(list[i])) {
            if (!call.number.empty()) {
                keys.insert(numberKey(call.number));
            }
        }
        const std::set<std::string> own = keys;
        for (auto party = parties.begin(); party != parties.end();) {
            const bool isSame = std::any_of(own.begin(), own.end(),
                                            [&](const std::string& key) { return party->second.count(key) != 0; });
            if (isSame) {
                indices.insert(party->first.begin(), party->first.end());
                keys.insert(party->second.begin(), party->second.end());
            }
            party = isSame ? parties.erase(party) : std::next(party);
        }
        parties.emplace(indices, keys);
    }
    std::vector<std::vector<std::size_t>> several;
    for (const auto& [indices, keys] : parties) {
        if (indices.size() > 1) {
            several.emplace_back(indices.begin(), indices.end());
        }
    }
    return several;
}

/// Returns one entry in the place of those of `list` at `indices`.
template <class Item>
Item joinedEntry(const std::deque<Item>& list, const std::vector<std::size_t>& indices,
                 [[maybe_unused]] const NumberMatcher& numberKey) {
    Item joined = list[indices.front()];
    auto calls = callsOf(joined);
    for (std::size_t i = 1; i < indices.size(); ++i) {
        const Item& older = list[indices[i]];
        calls.insert(calls.end(), callsOf(older).begin(), callsOf(older).end());
        if (joined.getSurname().empty() && joined.getFirstname().empty()) {
            joined.setSurname(older.getSurname());
            joined.setFirstname(older.getFirstname());
        }
        if (joined.getPictureClip().empty()) {
            joined.setPictureClip(older.getPictureClip());
        }
        if (joined.getEntryId().empty()) {
            joined.setEntryId(older.getEntryId());
        }
        if constexpr (std::is_same_v<Item, MissedCallItem>) {
            joined.setViewed(joined.getViewed() && older.getViewed());
        }
    }
    calls.sort([](const auto& first, const auto& second) { return first.timeDate > second.timeDate; });
    while (calls.size() > 10) {
        calls.pop_back();
    }
    std::invoke(format::CallKind<Item>::setCalls, joined, calls);
    if constexpr (std::is_same_v<Item, DialledCallItem>) {
        joined.setJournalSeviceGroupBy(numberKey(calls.front().number));
    }
    return joined;
}

const std::string& timeOf(const AnyEntry& entry) {
    return std::visit([](const auto& item) -> const std::string& { return newestTime(item); }, entry);
}

/// Returns whether the user has seen the entry in between, and that is all.
bool isOnlySeen(const MissedCallItem& before, MissedCallItem now) {
    const bool isSeen = !before.getViewed() && now.getViewed();
    now.setViewed(false);
    return isSeen && now == before;
}

template <class Item>
bool isOnlySeen(const Item&, const Item&) {
    return false;
}

}  // namespace

LiteralJournal::LiteralJournal(DataAccessServiceIfc& service, const std::string& region)
    : recorder_(service), numberKey_(region) {
    Helper::init();
    adapter_.init(&recorder_);
}

template <class Item>
std::deque<Item> LiteralJournal::entries() {
    std::deque<Item> list;
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        adapter_.processMissedCallDbXml(adapter_.processRequest(Helper::readMissedCallList()), list);
        for (MissedCallItem& item : list) {
            convertTexts(item, restoredText);
        }
    } else {
        const std::string schema(format::CallKind<Item>::schema);
        for (const std::string& body : readEntryBodies(adapter_.updateEntries("", Helper::READREQUEST, schema))) {
            list.emplace_back();
            KindInterface<Item>::decode(body.c_str(), list.back());
        }
        std::stable_sort(list.begin(), list.end(), isNewer<Item>);
    }
    if constexpr (KindInterface<Item>::isCallLog) {
        for (Item& item : list) {
            convertTexts(item, [](const std::string& text, int) { return restoredControls(text); });
        }
    }
    return list;
}

template <class Item>
std::vector<Item> LiteralJournal::record(const std::vector<NewCall<Item>>& calls) {
    std::deque<Item> list = entries<Item>();
    const std::size_t oldCount = list.size();
    const std::vector<std::size_t> changed = addCalls(list, calls, numberKey_);
    write(list, changed);

    std::vector<Item> written;
    for (const std::size_t index : changed) {
        written.push_back(list[index]);
        announce(list[index], index < oldCount ? JournalServiceObserverIfc::CHANGED : JournalServiceObserverIfc::ADDED);
    }
    announceUnviewed(list);
    return written;
}

MissedCallItem LiteralJournal::markViewed(const std::string& uniqueId) {
    std::deque<MissedCallItem> list = entries<MissedCallItem>();
    const std::size_t index = findEntry(list, uniqueId);
    list[index].setViewed(true);
    write(list, {index});
    announce(list[index], JournalServiceObserverIfc::VIEWED);
    announceUnviewed(list);
    return list[index];
}

template <class Item>
Item LiteralJournal::remove(const std::string& uniqueId) {
    std::deque<Item> list = entries<Item>();
    const std::size_t index = findEntry(list, uniqueId);
    Item removed = list[index];
    deleteEntry(removed);
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
    announce(removed, JournalServiceObserverIfc::DELETED);
    announceUnviewed(list);
    return removed;
}

std::vector<JoinedParty> LiteralJournal::changeRegion(const std::string& region) {
    numberKey_ = NumberMatcher(region);
    std::vector<JoinedParty> joined;
    std::vector<Change> changes;
    forEachCallLog([&](auto type) { join<typename decltype(type)::Item>(joined, changes); });
    for (const Change& change : changes) {
        std::visit([&](const auto& entry) { announce(entry, change.action); }, change.entry);
    }
    if (!changes.empty()) {
        announceUnviewed(entries<MissedCallItem>());
    }
    return joined;
}

template <class Item>
void LiteralJournal::join(std::vector<JoinedParty>& joined, std::vector<Change>& changes) {
    std::deque<Item> list = entries<Item>();
    for (const std::vector<std::size_t>& indices : partiesWithSeveral(list, numberKey_)) {
        Item& first = list[indices.front()];
        first = joinedEntry(list, indices, numberKey_);
        write(list, {indices.front()});
        joined.push_back({first, {}});
        changes.push_back({JournalServiceObserverIfc::CHANGED, first});
        for (std::size_t i = 1; i < indices.size(); ++i) {
            const Item& older = list[indices[i]];
            deleteEntry(older);
            joined.back().joinedIds.push_back(older.getUniqueId());
            changes.push_back({JournalServiceObserverIfc::DELETED, older});
        }
    }
}

template <class Item>
void LiteralJournal::deleteEntry(const Item& entry) {
    KindInterface<Item>::send(adapter_, entry, Helper::DELETEREQUEST);
    checkReply(recorder_.lastReply());
    if constexpr (KindInterface<Item>::isCallLog) {
        adapter_.deleteFromConversationsTable(entry.getUniqueId());
        checkReply(recorder_.lastReply());
    }
}

std::vector<AnyEntry> LiteralJournal::wantedEntries(const Filter& filter) {
    std::vector<AnyEntry> wanted;
    forEachKind([&](auto type) {
        using Item = typename decltype(type)::Item;
        if (!filter.wantsKind(KindInterface<Item>::name)) {
            return;
        }
        for (const Item& entry : entries<Item>()) {
            const std::string time = newestTime(entry);
            const bool isInTime = time >= filter.since && (filter.until.empty() || time <= filter.until);
            bool hasNumber = filter.number.empty();
            for (const auto& call : callsOf(entry)) {
                hasNumber = hasNumber || (!call.number.empty() && numberKey_(call.number) == numberKey_(filter.number));
            }
            const std::string name = folded(fullName(entry.getFirstname(), entry.getSurname()));
            if (isInTime && hasNumber && name.find(folded(filter.name)) != std::string::npos) {
                wanted.emplace_back(entry);
            }
        }
    });
    std::stable_sort(wanted.begin(), wanted.end(),
                     [](const AnyEntry& first, const AnyEntry& second) { return timeOf(first) > timeOf(second); });
    if (filter.limit > 0 && wanted.size() > filter.limit) {
        wanted.resize(filter.limit);
    }
    return wanted;
}

template <class Item>
void LiteralJournal::write(std::deque<Item>& list, const std::vector<std::size_t>& changed) {
    std::string text;
    for (const std::size_t index : changed) {
        Helper::createXMLField(Helper::ENTRY, KindInterface<Item>::encode(carriedItem(list[index])), text);
    }
    const std::string schema(format::CallKind<Item>::schema);
    const StoreReply reply = readStoreReply(adapter_.updateEntries(text, Helper::WRITEREQUEST, schema));
    if (!reply.ok) {
        throw JournalError(reply.reason);
    }
    for (std::size_t i = 0; i < changed.size(); ++i) {
        if (list[changed[i]].getUniqueId().empty()) {
            list[changed[i]].setUniqueId(reply.uniqueIds.at(i));
        }
    }
}

template <class Item>
void LiteralJournal::announce(const Item& entry, JournalServiceObserverIfc::ActionType action) {
    if constexpr (KindInterface<Item>::isCallLog) {
        notify(notificationOf(entry, action));
    }
}

void LiteralJournal::announceUnviewed(const std::deque<MissedCallItem>& list) {
    const auto count =
        std::count_if(list.begin(), list.end(), [](const MissedCallItem& entry) { return !entry.getViewed(); });
    notify(Helper::obsReqMissedCallsCountUpdate(static_cast<unsigned>(count)));
}

void LiteralJournal::notify(const std::string& message) {
    for (JournalServiceObserverIfc* observer : observers_) {
        observer->notify(message);
    }
}

template <class Item>
std::vector<Change> changesBetween(const std::deque<Item>& before, const std::deque<Item>& now) {
    using Action = JournalServiceObserverIfc;
    const auto byId = [](const std::deque<Item>& list) {
        std::map<std::string, const Item*> entries;
        for (const Item& entry : list) {
            entries.emplace(entry.getUniqueId(), &entry);
        }
        return entries;
    };
    const auto old = byId(before);
    const auto current = byId(now);
    std::vector<Change> changes;
    for (const auto& [id, entry] : current) {
        const auto found = old.find(id);
        if (found == old.end()) {
            changes.push_back({Action::ADDED, *entry});
        } else if (!(*found->second == *entry)) {
            changes.push_back({isOnlySeen(*found->second, *entry) ? Action::VIEWED : Action::CHANGED, *entry});
        }
    }
    for (const auto& [id, entry] : old) {
        if (current.count(id) == 0) {
            changes.push_back({Action::DELETED, *entry});
        }
    }
    return changes;
}

#define CALLJOURNAL_LITERAL(Item)                                                               \
    template std::deque<Item> LiteralJournal::entries<Item>();                                  \
    template std::vector<Item> LiteralJournal::record(const std::vector<NewCall<Item>>& calls); \
    template Item LiteralJournal::remove<Item>(const std::string& uniqueId);                    \
    template std::vector<Change> changesBetween(const std::deque<Item>& before, const std::deque<Item>& now);
#define CALLJOURNAL_LITERAL_LOG(Kind, word) CALLJOURNAL_LITERAL(Kind##CallItem)

CALLJOURNAL_CALL_KINDS(CALLJOURNAL_LITERAL_LOG)
CALLJOURNAL_LITERAL(StoredCallBack)

}  // namespace calljournal
