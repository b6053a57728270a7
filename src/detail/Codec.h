#ifndef CALLJOURNAL_DETAIL_CODEC_H
#define CALLJOURNAL_DETAIL_CODEC_H

#include <algorithm>
#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "CallKinds.h"
#include "ClientUtils.h"
#include "Elements.h"
#include "LogListCutter.h"
#include "Words.h"

namespace calljournal {
namespace detail {

/// No flag and no enumeration has a longer word than this one.
constexpr std::size_t longestWord = text::TRAN_DEST_NUM.size();

// Writing and reading of one value, by its type.

inline void appendValue(std::string& out, std::string_view tag, const std::string& value) {
    if (!value.empty()) {
        appendElement(out, tag, value);
    }
}

inline void appendValue(std::string& out, std::string_view tag, bool value) {
    appendElement(out, tag, value ? text::TRUE : text::FALSE);
}

template <class Enumeration>
void appendValue(std::string& out, std::string_view tag, Enumeration value) {
    appendElement(out, tag, toWord(value));
}

/// An upper limit of what appendValue appends.
inline std::size_t roomFor(std::string_view tag, const std::string& value) {
    return tagsLength(tag) + value.size();
}

template <class Value>
std::size_t roomFor(std::string_view tag, Value) {
    return tagsLength(tag) + longestWord;
}

template <class Item>
void assignRaw(std::string& value, std::string_view raw) {
    assignUnescaped(value, raw);
}

template <class Item>
void assignRaw(bool& value, std::string_view raw) {
    std::string unescaped;
    if (CallKind<Item>::unescapesFlags && mayHoldEntities(raw)) {
        assignUnescaped(unescaped, raw);
        raw = unescaped;
    }
    value = raw == text::TRUE;
}

template <class Item, class Enumeration>
void assignRaw(Enumeration& value, std::string_view raw) {
    std::string unescaped;
    if (mayHoldEntities(raw)) {
        assignUnescaped(unescaped, raw);
        raw = unescaped;
    }
    value = fromWord<Enumeration>(raw);
}

/// Appends the "LogList" element with one "Item" for each call.
template <class Item>
void appendCalls(std::string& out, const Item& item) {
    using Kind = CallKind<Item>;
    const auto& calls = (item.*Kind::calls)();

    std::size_t room = tagsLength(text::LOGLIST);
    for (const auto& call : calls) {
        room += tagsLength(text::ITEM);
        for (const auto& field : Kind::callFields) {
            room += std::visit([&](auto member) { return roomFor(field.tag, call.*member); }, field.member);
        }
    }
    makeRoom(out, room);

    appendBegin(out, text::LOGLIST);
    for (const auto& call : calls) {
        appendBegin(out, text::ITEM);
        for (const auto& field : Kind::callFields) {
            std::visit([&](auto member) { appendValue(out, field.tag, call.*member); }, field.member);
        }
        appendClose(out, text::ITEM);
    }
    appendClose(out, text::LOGLIST);
}

// Writing and reading of one item-level field. `Base` is the class whose accessors the field names.

template <class Base>
void appendAccess(std::string& out, std::string_view tag, const TextAccess<Base>& access, const Base& item) {
    const std::string& value = (item.*access.get)();
    switch (access.form) {
        case Form::asItIs:
            return appendValue(out, tag, value);
        case Form::escaped:
            return appendValue(out, tag, ClientUtils::escapeXMLString(value));
        case Form::withoutColons: {
            std::string cleaned = value;
            cleaned.erase(std::remove(cleaned.begin(), cleaned.end(), ':'), cleaned.end());
            return appendValue(out, tag, cleaned);
        }
    }
}

template <class Base>
void appendAccess(std::string& out, std::string_view tag, const FlagAccess<Base>& access, const Base& item) {
    appendValue(out, tag, (item.*access.get)());
}

template <class Base>
void assignAccess(const FoundElement& element, const TextAccess<Base>& access, Base& item) {
    std::string value;
    if (element) {
        assignUnescaped(value, element.raw());
    }
    (item.*access.set)(value);
}

template <class Base>
void assignAccess(const FoundElement& element, const FlagAccess<Base>& access, Base& item) {
    (item.*access.set)(element && element.raw() == text::TRUE);
}

template <class Base>
void appendField(std::string& out, const ItemField<Base>& field, const Base& item) {
    std::visit([&](const auto& access) { appendAccess(out, field.writtenAs, access, item); }, field.access);
}

/// Reads one field from `cursor` on and returns the place to go on from.
template <class Base>
const char* readField(const char* cursor, const ItemField<Base>& field, Base& item) {
    const FoundElement element = findElement(cursor, field.readAs);
    std::visit([&](const auto& access) { assignAccess(element, access, item); }, field.access);
    return element.next;
}

// The codec of an item.

/// Appends the item body: the unique id, and unless `onlyUniqueId` everything else.
template <class Item>
void appendBody(std::string& out, const Item& item, bool onlyUniqueId) {
    const CallItemWithPicture& party = item;
    if (onlyUniqueId) {
        return appendField(out, partyFields[0], party);
    }
    for (const auto& field : partyFields) {
        appendField(out, field, party);
    }
    for (const auto& field : CallKind<Item>::itemFields) {
        appendField(out, field, item);
    }
    appendCalls(out, item);
}

/// Fills one call from the zero-terminated text of its "Item"; an absent element reads as an empty text.
template <class Item>
void readCall(const char* xml, typename CallKind<Item>::Call& call) {
    for (const auto& field : CallKind<Item>::readFields) {
        const FoundElement element = findElement(xml, field.tag);
        const std::string_view raw = element ? element.raw() : std::string_view();
        std::visit([&](auto member) { assignRaw<Item>(call.*member, raw); }, field.member);
        xml = element.next;
    }
}

/// Replaces `calls` by those of the first "LogList" element. The list's text is unescaped as a whole and each value
/// again: stored data is read that way.
template <class Item>
bool readCalls(const char* xml, std::list<typename CallKind<Item>::Call>& calls) {
    calls.clear();
    const FoundElement list = findElement(xml, text::LOGLIST);
    if (!list) {
        return false;
    }
    std::string listText;
    assignUnescaped(listText, list.raw());
    LogListCutter items(std::move(listText));
    while (const char* item = items.next()) {
        typename CallKind<Item>::Call call;
        readCall<Item>(item, call);
        calls.push_back(std::move(call));
    }
    return !calls.empty();
}

/// Fills an item from its body. The calls that it has stay if the body holds none.
template <class Item>
void readItem(const char* xml, Item& item) {
    CallItemWithPicture& party = item;
    for (const auto& field : partyFields) {
        xml = readField(xml, field, party);
    }
    for (const auto& field : CallKind<Item>::itemFields) {
        xml = readField(xml, field, item);
    }
    std::list<typename CallKind<Item>::Call> calls;
    if (readCalls<Item>(xml, calls)) {
        (item.*CallKind<Item>::setCalls)(calls);
    }
}

}  // namespace detail
}  // namespace calljournal

#endif
