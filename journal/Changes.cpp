#include "Changes.h"

#include "Kinds.h"
#include "StoredEntry.h"

namespace calljournal {

namespace {

JournalServiceObserverIfc::ActionType actionOf(EntryAction action) {
    switch (action) {
        case EntryAction::added:
            return JournalServiceObserverIfc::ADDED;
        case EntryAction::seen:
            return JournalServiceObserverIfc::VIEWED;
        case EntryAction::removed:
            return JournalServiceObserverIfc::DELETED;
        case EntryAction::changed:
            break;
    }
    return JournalServiceObserverIfc::CHANGED;
}

}  // namespace

JournalChanges changesSince(Journal& journal, std::uint64_t since) {
    const StoreChanges stored = journal.store().changes(since);
    JournalChanges changes;
    changes.number = stored.number;
    changes.isWhole = stored.isWhole;
    for (const StoreChange& change : stored.entries) {
        withSchema(change.entry.schema, [&](auto type) {
            if (auto entry = storedEntry<typename decltype(type)::Item>(change.entry.text)) {
                changes.entries.push_back({actionOf(change.action), std::move(*entry)});
            }
        });
    }
    return changes;
}

}  // namespace calljournal
