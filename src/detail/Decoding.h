#pragma once

#include <cstddef>
#include <cstring>
#include <iterator>
#include <list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "../format/CallKinds.h"
#include "../format/Words.h"
#include "Elements.h"
#include "LogListCutter.h"
#include "OwnMembers.h"

namespace calljournal::detail {

// Takes over what the text of a value says, by the type of the value.

inline void assignPlain(std::string& value, std::string_view word) {
    value.clear();
    value.append(word);  // less work than an assignment, which has to mind its own text as a source
}

inline void assignPlain(bool& value, std::string_view word) {
    value = word == text::TRUE;
}

template <class Enumeration>
void assignPlain(Enumeration& value, std::string_view word) {
    value = fromWord<Enumeration>(word, SameText());
}

// Reading takes two steps: find out where the text of each field is, then take over what it says. Data that is just as
// it was written is walked through; all other is searched, field by field.

template <class Call>
const Tag& readTag(const CallField<Call>& field) {
    return field.tag;
}

template <class Base>
const Tag& readTag(const ItemField<Base>& field) {
    return field.readAs;
}

/// Takes the begin tag of the field. Returns the tag that was there, or null.
template <class Walk, class Call>
const Tag* takeBegin(Walk& walk, const CallField<Call>& field) {
    return walk.takeBegin(field.tag) ? &field.tag : nullptr;
}

template <class Walk, class Base>
const Tag* takeBegin(Walk& walk, const ItemField<Base>& field) {
    if (walk.takeBegin(field.readAs)) {
        return &field.readAs;
    }
    return walk.takeBegin(field.writtenAs) ? &field.writtenAs : nullptr;
}

/// Takes the fields that are at the walk, in the order of the table, and hands the raw text of each to `take` by its
/// index. Returns false if a text stops before its end tag. A field that is not there counts as absent and empty, also
/// where it is there under the name that only writing uses; that holds if nothing but expected tags follows.
template <class Walk, class Fields, class Take>
bool takeFields(Walk& walk, const Fields& fields, Take take) {
    Walk here = walk;  // in registers, this loop being most of the work
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        std::string_view raw;
        if (const Tag* tag = takeBegin(here, fields[i])) {
            const std::string_view text = here.takeText();
            if (!here.takeEnd(*tag)) {
                return false;
            }
            raw = tag == &readTag(fields[i]) ? text : raw;
        }
        take(i, raw);
    }
    walk = here;
    return true;
}

template <class Base, std::size_t count>
constexpr std::size_t readAt(const ItemField<Base> (&)[count], std::size_t place) {
    return place;
}

/// Searches the zero-terminated text from `cursor` on for one field after the other, in the order of reading, and hands
/// the raw text of each to `take` by its index. Returns the place to go on from.
template <class Fields, class Take>
const char* findFields(const char* cursor, const Fields& fields, Take take) {
    for (std::size_t place = 0; place < std::size(fields); ++place) {
        const std::size_t i = readAt(fields, place);
        const FoundElement element = findElement(cursor, readTag(fields[i]));
        take(i, element ? element.raw() : std::string_view());
        cursor = element.next;
    }
    return cursor;
}

template <class Item>
using CallsOf = std::list<typename CallKind<Item>::Call>;

template <class Item, class Value>
void assignRaw(Value& value, std::string_view raw) {
    constexpr bool unescapes = !std::is_same_v<Value, bool> || CallKind<Item>::unescapesFlags;
    if (unescapes && mayHoldEntities(raw)) {
        assignPlain(value, unescaped(raw));
    } else {
        assignPlain(value, raw);
    }
}

/// Fills one call from the zero-terminated text of its "Item"; an absent element reads as an empty text.
template <class Item>
void readCall(const char* xml, typename CallKind<Item>::Call& call) {
    using Kind = CallKind<Item>;
    const auto assign = [&](std::size_t field, std::string_view raw) {
        std::visit([&](auto member) { assignRaw<Item>(call.*member, raw); }, Kind::callFields[field].member);
    };
    WrittenText walk(xml, xml + std::strlen(xml));
    if (!takeFields(walk, Kind::callFields, assign) || !walk.isAtEnd()) {
        findFields(xml, Kind::callFields, assign);
    }
}

/// Appends the call at the walk, if it is just as it was written and without entities. An "Item" without
/// any text does not count.
template <class Item>
bool takeCall(PlainText& walk, CallsOf<Item>& calls) {
    constexpr const auto& fields = CallKind<Item>::callFields;
    if (!walk.takeBegin(itemTag)) {
        return false;
    }
    calls.emplace_back();
    const auto assign = [&call = calls.back()](std::size_t field, std::string_view raw) {
        std::visit([&](auto member) { assignPlain(call.*member, raw); }, fields[field].member);
    };
    const char* const begin = walk.at();
    if (takeFields(walk, fields, assign) && walk.at() != begin && walk.takeEnd(itemTag)) {
        return true;
    }
    calls.pop_back();
    return false;
}

/// Appends the calls of a log list's text, which is unescaped as a whole and then each value again: stored data is
/// read that way.
template <class Item>
void cutCalls(std::string_view listText, CallsOf<Item>& calls) {
    LogListCutter items(unescaped(listText));
    while (const char* item = items.next()) {
        calls.emplace_back();
        readCall<Item>(item, calls.back());
    }
}

/// Replaces `calls` by those of the first "LogList" element in the text, which is zero-terminated at `end`. Returns
/// whether the text is nothing but that element, just as it was written.
template <class Item>
bool readCalls(const char* xml, const char* end, CallsOf<Item>& calls) {
    calls.clear();
    const char* const begin = findBegin(xml, logListTag);
    if (begin == nullptr) {
        return false;
    }
    PlainText walk(begin, end);
    const char* rest = begin;
    while (takeCall<Item>(walk, calls)) {
        rest = walk.at();
    }
    // No end tag can be among the calls that were taken.
    const char* const close = findClose(rest, logListTag);
    if (close == nullptr) {
        calls.clear();
        return false;
    }
    if (close != rest) {
        cutCalls<Item>(std::string_view(rest, static_cast<std::size_t>(close - rest)), calls);
        return false;
    }
    return begin == xml + beginLength(logListTag) && close + endLength(logListTag) == end;
}

// The item level. `Base` is the class whose accessors the field names.

template <class Base>
void assignAccess(std::string_view raw, const TextAccess<Base>& access, Base& item) {
    (item.*access.set)(unescaped(raw));
}

template <class Base>
void assignAccess(std::string_view raw, const FlagAccess<Base>& access, Base& item) {
    (item.*access.set)(raw == text::TRUE);
}

/// The raw texts of the fields of a table.
template <class Fields>
class RawTexts {
public:
    explicit RawTexts(const Fields& fields) : fields_(fields) {}

    /// Keeps what takeFields and findFields hand over.
    auto keep() {
        return [this](std::size_t field, std::string_view raw) { texts_[field] = raw; };
    }

    template <class Base>
    void assignTo(Base& item) const {
        for (std::size_t i = 0; i < std::size(texts_); ++i) {
            std::visit([&](const auto& access) { assignAccess(texts_[i], access, item); }, fields_[i].access);
        }
    }

private:
    const Fields& fields_;
    std::string_view texts_[std::extent_v<Fields>];
};

/// Fills an item from its body. The calls that it has stay if the body holds none.
template <class Item>
void readItem(const char* xml, Item& item) {
    constexpr const auto& itemFields = CallKind<Item>::itemFields;
    RawTexts party(partyFields);
    RawTexts own(itemFields);
    const auto findAll = [&] { return findFields(findFields(xml, partyFields, party.keep()), itemFields, own.keep()); };

    const char* const end = xml + std::strlen(xml);
    WrittenText walk(xml, end);
    const bool isWalked = takeFields(walk, partyFields, party.keep()) && takeFields(walk, itemFields, own.keep());
    CallsOf<Item> calls;
    const bool isAsWritten = readCalls<Item>(isWalked ? walk.at() : findAll(), end, calls);
    if (isWalked && !isAsWritten) {
        // A field that was not in its place may be somewhere behind.
        findAll();
    }
    party.assignTo(static_cast<CallItemWithPicture&>(item));
    own.assignTo(item);
    if (!calls.empty()) {
        item.*OwnMembers<Item>::calls = std::move(calls);
    }
}

}  // namespace calljournal::detail
