#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KindInterface.h"

namespace calljournal {

/// Represents an item class where a function is to be chosen by it.
template <class T>
struct ItemType {
    using Item = T;
    using Kind = KindInterface<T>;
};

/// Calls `use` with the ItemType of each kind of log, in the order in which people list them.
template <class Use>
void forEachCallLog(Use use) {
#define CALLJOURNAL_USE(Kind, word) use(ItemType<Kind##CallItem>());
    CALLJOURNAL_CALL_KINDS(CALLJOURNAL_USE)
#undef CALLJOURNAL_USE
}

/// The same with call-backs as the last kind.
template <class Use>
void forEachKind(Use use) {
    forEachCallLog(use);
    use(ItemType<StoredCallBack>());
}

/// The words for the kinds of logs.
inline std::vector<std::string> callLogNames() {
    std::vector<std::string> names;
    forEachCallLog([&](auto type) { names.emplace_back(decltype(type)::Kind::name); });
    return names;
}

/// The words for all kinds.
inline std::vector<std::string> kindNames() {
    std::vector<std::string> names = callLogNames();
    names.emplace_back(KindInterface<StoredCallBack>::name);
    return names;
}

/// Calls `use` with the ItemType of the log of that name. Does nothing for any other word.
template <class Use>
void withCallLog(const std::string& name, Use use) {
    forEachCallLog([&](auto type) {
        if (name == decltype(type)::Kind::name) {
            use(type);
        }
    });
}

/// The same for all kinds.
template <class Use>
void withKind(const std::string& name, Use use) {
    withCallLog(name, use);
    if (name == KindInterface<StoredCallBack>::name) {
        use(ItemType<StoredCallBack>());
    }
}

/// Calls `use` with the ItemType of the kind that is stored under `schema`. Does nothing for any other schema.
template <class Use>
void withSchema(std::string_view schema, Use use) {
    forEachKind([&](auto type) {
        if (schema == format::CallKind<typename decltype(type)::Item>::schema) {
            use(type);
        }
    });
}

}  // namespace calljournal
