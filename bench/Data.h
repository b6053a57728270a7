#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "CallKinds.h"
#include "Contact.h"

/// What the measured jobs work on. The same on every run and every machine.
namespace bench {

/// Shorthand for the table of a kind of entry.
template <class Item>
using Kind = calljournal::format::CallKind<Item>;

enum class Form {
    full,  ///< Every text of every entry and call is there, about 870 bytes a call.
    mixed  ///< As phones have it: a connected party in 40 % of the calls, a deflecting one in 20 %, a group in 25 %, a
           ///< picture in half of the entries; what is empty is not written.
};

/// Returns `count` entries of 1 to 10 calls.
template <class Item>
std::vector<Item> makeItems(Form form, std::size_t count);

/// Returns the body of an entry as the data access service serves it.
template <class Item>
std::string servedBody(const Item& item);

/// Returns the service's reply with these entries.
std::string makeReply(const std::vector<MissedCallItem>& items);

/// Returns the texts of the calls of these entries, without their "Item" tags.
std::vector<std::string> makeCallTexts(const std::vector<MissedCallItem>& items);

/// Returns whether two entries are the same in all that the format carries.
template <class Item>
bool same(const Item& first, const Item& second);

bool same(const Contact& first, const Contact& second);

template <class List, class Other>
bool sameItems(const List& first, const Other& second) {
    bool all = first.size() == second.size();
    for (std::size_t i = 0; all && i < first.size(); ++i) {
        all = same(first[i], second[i]);
    }
    return all;
}

/// Returns a list in no order, of entries of one call each, no two of the same time.
std::deque<MissedCallItem> shuffledList(std::size_t count);

/// A contact file and what reading it gives.
struct ContactFile {
    std::string content;  ///< 92 quoted names and the contacts, CR LF, about 320 bytes a contact, a fifth of the
                          ///< columns filled, a quoted comma in half of the lines.
    std::vector<Contact> contacts;
};

ContactFile makeContacts(std::size_t count);

}  // namespace bench
