#include "Filter.h"

#include <algorithm>

#include "EntryIndex.h"
#include "Folding.h"
#include "Kinds.h"
#include "Time.h"

namespace calljournal {

namespace {

void completeTime(std::string& time, const char* rest) {
    constexpr std::size_t dateLength = 10;
    if (!time.empty()) {
        time += time.size() == dateLength ? rest : "";
        checkTime(time);
    }
}

bool isInTime(const std::string& time, const Filter& filter) {
    return time >= filter.since && (filter.until.empty() || time <= filter.until);
}

template <class Item>
bool hasNumber(const Item& entry, const std::string& key, const NumberMatcher& numberKey) {
    const auto& calls = callsOf(entry);
    return std::any_of(calls.begin(), calls.end(),
                       [&](const auto& call) { return !call.number.empty() && numberKey(call.number) == key; });
}

bool isNamed(const CallItem& entry, const std::string& part) {
    return part.empty() || indexedName(entry.getFirstname(), entry.getSurname()).find(part) != std::string::npos;
}

EntryQuery queryFor(const Filter& filter, const std::string& numberKey) {
    EntryQuery query;
    forEachKind([&](auto type) {
        using Item = typename decltype(type)::Item;
        if (filter.wantsKind(KindInterface<Item>::name)) {
            query.schemas.emplace_back(format::CallKind<Item>::schema);
        }
    });
    query.numberKey = indexedNumber(numberKey);
    query.namePart = folded(filter.name);
    query.since = filter.since;
    query.until = filter.until;
    query.limit = filter.limit;
    return query;
}

}  // namespace

void Filter::completeTimes() {
    completeTime(since, " 00:00:00");
    completeTime(until, " 23:59:59");
}

bool Filter::wantsKind(const std::string& kind) const {
    return kinds.empty() || std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

void forEachWanted(Journal& journal, const Filter& filter, const std::function<bool(const AnyEntry& entry)>& visit) {
    const NumberMatcher numberKey = journal.numberKey();
    const std::string key = numberKey(filter.number);
    const EntryQuery query = queryFor(filter, key);
    const auto isWanted = [&](const auto& entry) {
        return isInTime(newestTime(entry), filter) && (key.empty() || hasNumber(entry, key, numberKey)) &&
               (query.namePart.empty() || isNamed(entry, query.namePart));
    };
    std::size_t count = 0;
    journal.forEachEntry(query, [&](const AnyEntry& entry) {
        return !std::visit(isWanted, entry) || (visit(entry) && ++count != filter.limit);
    });
}

}  // namespace calljournal
