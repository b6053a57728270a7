#pragma once

#include <deque>
#include <optional>
#include <string>

#include "CallListDatabaseAdapter.h"
#include "Entry.h"
#include "EntryQuery.h"

namespace calljournal {

/// Reads the reply with the stored `entries` of missed calls, each between its tags, as a phone does: through the
/// adapter's list reader, newest first; those without calls are deleted. Returns them with their texts restored.
std::deque<MissedCallItem> readMissedEntries(CallListDatabaseAdapter& adapter, std::string entries);

/// Returns the query for all entries of a kind.
template <class Item>
EntryQuery queryOfKind() {
    EntryQuery query;
    query.schemas = {std::string(format::CallKind<Item>::schema)};
    return query;
}

/// Returns the entry that the store holds as `text`, its texts restored. Nothing if it is one that no list shows: a
/// missed entry without calls, or one that cannot be read.
template <class Item>
std::optional<Item> storedEntry(const std::string& text);

}  // namespace calljournal
