#include "Filter.h"

#include <algorithm>

#include "Kinds.h"
#include "Text.h"
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
bool hasNumber(const Item& entry, const std::string& number, const Journal::NumberKey& numberKey) {
    const std::string key = numberKey(number);
    const auto& calls = callsOf(entry);
    return std::any_of(calls.begin(), calls.end(),
                       [&](const auto& call) { return !call.number.empty() && numberKey(call.number) == key; });
}

bool isNamed(const CallItem& entry, const std::string& name) {
    return lowerCase(fullName(entry.getFirstname(), entry.getSurname())).find(lowerCase(name)) != std::string::npos;
}

/// Appends the wanted ones of `entries`, which are in the order of the list.
template <class Entries>
void appendWanted(Entries entries, const Filter& filter, const Journal::NumberKey& numberKey,
                  std::vector<AnyEntry>& wanted) {
    std::size_t count = 0;
    for (auto& entry : entries) {
        if (filter.limit > 0 && count == filter.limit) {
            break;
        }
        if (isInTime(newestTime(entry), filter) &&
            (filter.number.empty() || hasNumber(entry, filter.number, numberKey)) &&
            (filter.name.empty() || isNamed(entry, filter.name))) {
            wanted.emplace_back(std::move(entry));
            ++count;
        }
    }
}

const std::string& timeOf(const AnyEntry& entry) {
    return std::visit([](const auto& item) -> const std::string& { return newestTime(item); }, entry);
}

}  // namespace

void Filter::completeTimes() {
    completeTime(since, " 00:00:00");
    completeTime(until, " 23:59:59");
}

bool Filter::wantsKind(const std::string& kind) const {
    return kinds.empty() || std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

std::vector<AnyEntry> wantedEntries(Journal& journal, const Filter& filter) {
    std::vector<AnyEntry> wanted;
    forEachKind([&](auto type) {
        using Item = typename decltype(type)::Item;
        if (filter.wantsKind(KindInterface<Item>::name)) {
            appendWanted(journal.template entries<Item>(), filter, journal.numberKey(), wanted);
        }
    });
    // The list of one kind has its order, also where times are equal or no times.
    if (filter.kinds.size() != 1) {
        std::stable_sort(wanted.begin(), wanted.end(),
                         [](const AnyEntry& first, const AnyEntry& second) { return timeOf(first) > timeOf(second); });
    }
    if (filter.limit > 0 && wanted.size() > filter.limit) {
        wanted.resize(filter.limit);
    }
    return wanted;
}

}  // namespace calljournal
