#ifndef CALLJOURNAL_KINDS_H
#define CALLJOURNAL_KINDS_H

#include <string>
#include <vector>

#include "KindInterface.h"

namespace calljournal {

/// Stands for an item class where a function is to be chosen by it.
template <class T>
struct ItemType {
    using Item = T;
};

/// Calls `use` with the ItemType of each kind of call, in the order in which people list them.
template <class Use>
void forEachKind(Use use) {
    use(ItemType<MissedCallItem>());
    use(ItemType<DialledCallItem>());
    use(ItemType<ReceivedCallItem>());
    use(ItemType<ForwardedCallItem>());
}

/// The words for the kinds.
inline std::vector<std::string> kindNames() {
    std::vector<std::string> names;
    forEachKind([&](auto type) { names.emplace_back(KindInterface<typename decltype(type)::Item>::name); });
    return names;
}

/// Calls `use` with the ItemType of the kind of that name. Does nothing for any other word.
template <class Use>
void withKind(const std::string& name, Use use) {
    forEachKind([&](auto type) {
        if (name == KindInterface<typename decltype(type)::Item>::name) {
            use(type);
        }
    });
}

}  // namespace calljournal

#endif
