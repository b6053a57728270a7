#include "EntryIndex.h"

#include <algorithm>

#include "Folding.h"
#include "Kinds.h"
#include "NumberMatcher.h"
#include "StoredEntry.h"
#include "Text.h"

namespace calljournal {

namespace {

template <class Item>
bool isSeen(const Item&) {
    return true;
}
bool isSeen(const MissedCallItem& entry) {
    return entry.getViewed();
}

template <class Item>
EntryKeys keysOf(const Item& entry, const NumberMatcher& numberKey) {
    EntryKeys keys;
    keys.time = newestTime(entry);
    keys.isSeen = isSeen(entry);
    keys.name = indexedName(entry.getFirstname(), entry.getSurname());
    for (const auto& call : callsOf(entry)) {
        std::string key = indexedNumber(numberKey(call.number));
        if (!key.empty() && std::find(keys.numbers.begin(), keys.numbers.end(), key) == keys.numbers.end()) {
            keys.numbers.push_back(std::move(key));
        }
    }
    return keys;
}

}  // namespace

EntryKeys indexEntry(std::string_view schema, const std::string& text, const std::string& region) {
    CallListDatabaseAdapterHelper::init();
    EntryKeys keys;
    withSchema(schema, [&](auto type) {
        if (const auto entry = storedEntry<typename decltype(type)::Item>(text)) {
            keys = keysOf(*entry, NumberMatcher(region.empty() ? noRegion : region));
        }
    });
    return keys;
}

std::string indexedNumber(const std::string& numberKey) {
    return inOneLine(numberKey);
}

std::string indexedName(const std::string& firstname, const std::string& surname) {
    return folded(fullName(firstname, surname));
}

}  // namespace calljournal
