#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "Journal.h"
#include "MissedCallItem.h"
#include "Store.h"

namespace bench {

/// The region that all measured stores dial in.
constexpr char region[] = "DE";

/// The schema of missed calls.
std::string missedSchema();

std::unique_ptr<calljournal::Store> openJournal(const std::string& file);

std::string bodyOf(const MissedCallItem& entry);

/// Returns what a phone records when the newest call of the entry comes in.
calljournal::NewCall<MissedCallItem> callOf(const MissedCallItem& entry);

/// Returns the id of the entry at `index`: ids are counted from 1.
inline std::string idAt(std::size_t index) {
    return std::to_string(index + 1);
}

/// The data access service takes so many entries in one request.
constexpr std::size_t entriesPerRequest = 500;

/// Writes the entries that `entry` gives for the indices below `count` into the new store `file`, with the ids from 1
/// on. Ends the program if it cannot.
void buildStore(const std::string& file, std::size_t count, const std::function<MissedCallItem(std::size_t)>& entry);

/// The same with the entries of entryOfJournal; those of small journals, which cannot have a page of one number, are all
/// of different parties.
void buildJournal(const std::string& file, std::size_t count);

}  // namespace bench
