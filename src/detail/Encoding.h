#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "../format/CallKinds.h"
#include "../format/Words.h"
#include "ClientUtils.h"
#include "Elements.h"

namespace calljournal::detail {

// Writing of one value, by its type: texts unless they are empty, words always. There must be room for it, and
// ShortText::room behind that.

inline char* writeText(char* at, const Tag& tag, std::string_view value) {
    if (value.empty()) {
        return at;
    }
    at = writeBegin(at, tag);
    copyBytes(at, value.data(), value.size());
    return writeEnd(at + value.size(), tag);
}

inline char* writeValue(char* at, const Tag& tag, const std::string& value) {
    return writeText(at, tag, value);
}

template <class Value>
CALLJOURNAL_INLINE char* writeValue(char* at, const Tag& tag, Value value) {
    return writeEnd(write(writeBegin(at, tag), wordOf(value)), tag);
}

/// Bytes of the longest word that a value of this type can have.
constexpr std::size_t longestWord(bool) {
    return falseWord.size();
}

template <class Enumeration>
constexpr std::size_t longestWord(Enumeration value) {
    std::size_t longest = 0;
    const Words& words = wordsFor(value);
    for (const Word* row = words.begin; row != words.end; ++row) {
        longest = std::max(longest, row->word.size());
    }
    return longest;
}

template <class Call, class Value>
constexpr std::size_t longestWordOf(Value Call::*) {
    if constexpr (std::is_same_v<Value, std::string>) {
        return 0;
    } else {
        return longestWord(Value());
    }
}

template <class Call>
constexpr bool isText(const CallField<Call>& field) {
    return std::holds_alternative<std::string Call::*>(field.member);
}

/// What every call takes: its tags, and the longest words.
template <class Item>
constexpr std::size_t fixedRoom() {
    std::size_t room = tagsLength(itemTag);
    for (const auto& field : CallKind<Item>::callFields) {
        room += tagsLength(field.tag) + std::visit([](auto member) { return longestWordOf(member); }, field.member);
    }
    return room;
}

template <class Item>
constexpr std::size_t countTexts() {
    std::size_t count = 0;
    for (const auto& field : CallKind<Item>::callFields) {
        count += isText(field) ? 1 : 0;
    }
    return count;
}

/// The members of a call that are texts.
template <class Item>
constexpr auto makeTextMembers() {
    using Member = std::string CallKind<Item>::Call::*;
    std::array<Member, countTexts<Item>()> members{};
    std::size_t count = 0;
    for (const auto& field : CallKind<Item>::callFields) {
        if (isText(field)) {
            members[count++] = std::get<Member>(field.member);
        }
    }
    return members;
}

/// An upper limit for the "Item" of one call.
template <class Item>
std::size_t roomForCall(const typename CallKind<Item>::Call& call) {
    static constexpr auto textMembers = makeTextMembers<Item>();
    std::size_t room = fixedRoom<Item>();
    for (const auto member : textMembers) {
        room += (call.*member).size();
    }
    return room;
}

template <class Item>
std::size_t roomForCalls(const Item& item) {
    std::size_t room = tagsLength(logListTag);
    for (const auto& call : (item.*CallKind<Item>::calls)()) {
        room += roomForCall<Item>(call);
    }
    return room;
}

/// Writes the "LogList" element with one "Item" for each call.
template <class Item>
char* writeCalls(char* at, const Item& item) {
    using Kind = CallKind<Item>;
    at = writeBegin(at, logListTag);
    for (const auto& call : (item.*Kind::calls)()) {
        at = writeBegin(at, itemTag);
        for (const auto& field : Kind::callFields) {
            std::visit([&](auto member) { at = writeValue(at, field.tag, call.*member); }, field.member);
        }
        at = writeEnd(at, itemTag);
    }
    return writeEnd(at, logListTag);
}

/// The item-level fields of a table as they are written. `Base` is the class whose accessors the fields name.
template <class Fields, class Base>
class FieldTexts {
public:
    FieldTexts(const Fields& fields, const Base& item) : fields_(fields) {
        for (std::size_t i = 0; i < std::size(texts_); ++i) {
            texts_[i] =
                std::visit([&](const auto& access) { return textOf(access, item, changed_[i]); }, fields_[i].access);
        }
    }
    FieldTexts(const FieldTexts&) = delete;
    FieldTexts& operator=(const FieldTexts&) = delete;

    std::size_t room() const {
        std::size_t room = 0;
        for (std::size_t i = 0; i < std::size(texts_); ++i) {
            room += tagsLength(fields_[i].writtenAs) + texts_[i].size();
        }
        return room;
    }

    char* write(char* at) const {
        for (std::size_t i = 0; i < std::size(texts_); ++i) {
            at = writeText(at, fields_[i].writtenAs, texts_[i]);
        }
        return at;
    }

private:
    /// Returns what is written. If that is not what the item holds, it is kept in `changed`.
    static std::string_view textOf(const TextAccess<Base>& access, const Base& item, std::string& changed) {
        const std::string& text = (item.*access.get)();
        switch (access.form) {
            case Form::escaped:
                return changed = ClientUtils::escapeXMLString(text);
            case Form::withoutColons:
                if (text.find(':') == std::string::npos) {
                    return text;
                }
                return changed = withoutColons(text);
            case Form::asItIs:
                break;
        }
        return text;
    }

    static std::string_view textOf(const FlagAccess<Base>& access, const Base& item, std::string&) {
        return wordOf((item.*access.get)());
    }

    static std::string withoutColons(std::string text) {
        text.erase(std::remove(text.begin(), text.end(), ':'), text.end());
        return text;
    }

    const Fields& fields_;
    std::string_view texts_[std::extent_v<Fields>];
    std::string changed_[std::extent_v<Fields>];
};

/// Appends what `write` writes to the room that it is given, and which it need not fill.
template <class Write>
void appendWritten(std::string& out, std::size_t room, Write write) {
    const std::size_t size = out.size();
    makeRoom(out, room + ShortText::room);
    out.resize(size + room + ShortText::room);
    out.resize(static_cast<std::size_t>(write(&out[size]) - out.data()));
}

/// Appends the log list of an item.
template <class Item>
void appendCalls(std::string& out, const Item& item) {
    appendWritten(out, roomForCalls(item), [&](char* at) { return writeCalls(at, item); });
}

/// What a body consists of that only names an item.
inline constexpr ItemField<CallItemWithPicture> idFields[] = {partyFields[0]};

/// Appends the item body: the unique id, and unless `onlyUniqueId` everything else.
template <class Item>
void appendBody(std::string& out, const Item& item, bool onlyUniqueId) {
    const CallItemWithPicture& base = item;
    if (onlyUniqueId) {
        const FieldTexts id(idFields, base);
        appendWritten(out, id.room(), [&](char* at) { return id.write(at); });
        return;
    }
    const FieldTexts party(partyFields, base);
    const FieldTexts own(CallKind<Item>::itemFields, item);
    appendWritten(out, party.room() + own.room() + roomForCalls(item),
                  [&](char* at) { return writeCalls(own.write(party.write(at)), item); });
}

}  // namespace calljournal::detail
