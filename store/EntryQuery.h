#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace calljournal {

/// What an entry is found by. A store derives it from the body with each write and keeps it beside the body.
struct EntryKeys {
    std::string time;                  ///< Of the newest call; empty without one. Text order is time order.
    bool isSeen = true;                ///< False for an entry that waits for the user to see it.
    std::vector<std::string> numbers;  ///< The keys of its calls' numbers, each once; none is empty or has a line feed.
    std::string name;                  ///< Folded: words that are compared byte for byte, one blank between two.
};

/// Derives the keys of an entry of `schema`. `text` is what a reply to a read request has between the entry's tags;
/// `region` is the store's setting. Gives the same keys for the same arguments; throws nothing but std::bad_alloc.
using EntryIndexer =
    std::function<EntryKeys(std::string_view schema, const std::string& text, const std::string& region)>;

/// A place in the order in which entries are found: the newest first, of those of one time the one inserted last.
struct EntryCursor {
    std::string time;
    std::int64_t place = 0;  ///< Grows with each insertion into the store.
};

/// Which entries are wanted: those that meet every condition that is set.
struct EntryQuery {
    std::vector<std::string> schemas;
    std::string id;
    std::string numberKey;   ///< One of its numbers has this key.
    std::string name;        ///< Folded; its name is this.
    std::string nameBegin;   ///< Folded; its name, or the rest of it from one of its first sixteen words on, begins so.
    std::string namePart;    ///< Folded; its name contains this. Reads the keys of all entries.
    std::string numberPart;  ///< The key of one of its numbers contains this. Reads the keys of all entries. Beside
                             ///< `namePart` one of the two is enough.
    std::string since;       ///< Newest call at or after this time.
    std::string until;       ///< Newest call at or before this time.
    std::optional<bool> isSeen;
    std::optional<EntryCursor> after;  ///< Behind this place: the cursor of the last entry of the page before.
    std::size_t limit = 0;             ///< At most so many, the size of a page; 0 for all. A page of long entries ends
                                       ///< earlier, with the first 16 MB of them; the one behind the last is empty.
};

/// An entry as it is stored.
struct FoundEntry {
    std::string schema;
    std::string id;
    std::string text;  ///< What a reply to a read request has between its tags: the id, and then the body.
    EntryCursor cursor;
};

/// How many entries a schema has.
struct EntryCount {
    std::uint64_t all = 0;
    std::uint64_t unseen = 0;
};

/// What became of an entry.
enum class EntryAction {
    added,
    changed,
    seen,  ///< It was seen, and nothing else of it changed.
    removed,
};

struct StoreChange {
    EntryAction action;
    FoundEntry entry;  ///< As it is now; one that was removed as it was.
};

/// What has changed in a store since a change number.
struct StoreChanges {
    std::uint64_t number = 0;          ///< To ask from next.
    std::vector<StoreChange> entries;  ///< One for each entry, in the order of their last changes.
    bool isWhole = true;               ///< False if more was removed in between than the store remembers.
};

/// An entry whose keys in the store are not those of its body, or more of the index that does not fit.
struct IndexFault {
    std::string schema;  ///< Empty if the database itself is damaged.
    std::string id;      ///< Empty if it is no single entry's.
    std::string what;    ///< Which keys, for people: "its time is not that of its newest call".
};

}  // namespace calljournal
