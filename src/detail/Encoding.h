#ifndef CALLJOURNAL_DETAIL_ENCODING_H
#define CALLJOURNAL_DETAIL_ENCODING_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "CallKinds.h"
#include "ClientUtils.h"
#include "Elements.h"
#include "Words.h"

namespace calljournal {
namespace detail {

/// Where elements are written before they go to the end of a text: bytes of a string would be cleared first.
class WriteBuffer {
public:
    explicit WriteBuffer(std::string& out) : out_(out) {}
    WriteBuffer(const WriteBuffer&) = delete;
    WriteBuffer& operator=(const WriteBuffer&) = delete;

    /// Returns a place for `room` bytes.
    char* open(std::size_t room) {
        if (room > static_cast<std::size_t>(buffer_ + sizeof buffer_ - at_)) {
            flush();
        }
        if (room > sizeof buffer_) {
            large_.resize(room);
            at_ = large_.data();
        }
        return at_;
    }

    /// Takes what was written from the place on up to `end`.
    void close(const char* end) {
        if (large_.empty()) {
            at_ += end - at_;
        } else {
            out_.append(large_, 0, static_cast<std::size_t>(end - at_));
            large_.clear();
            at_ = buffer_;
        }
    }

    /// Hands everything over.
    void flush() {
        out_.append(buffer_, static_cast<std::size_t>(at_ - buffer_));
        at_ = buffer_;
    }

private:
    std::string& out_;
    char buffer_[1536];  // a call with names and numbers of usual length fits
    std::string large_;
    char* at_ = buffer_;
};

// Writing of one value to an open place, by its type: texts unless they are empty, words always.

inline char* writeValue(char* at, const Tag& tag, const std::string& value) {
    if (value.empty()) {
        return at;
    }
    at = tag.writeBegin(at);
    copyBytes(at, value.data(), value.size());
    return tag.writeClose(at + value.size());
}

template <class Value>
char* writeValue(char* at, const Tag& tag, Value value) {
    return tag.writeClose(wordOf(value).write(tag.writeBegin(at)));
}

// The room that this takes at most, by the type of the value. Beyond it there must be Tag::room.

inline std::size_t roomForValue(const std::string& value) {
    return value.size();
}

template <class Value>
constexpr std::size_t roomForValue(Value value) {
    return longestWord(value);
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
    return std::holds_alternative<TextMember<Call>>(field.member);
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
    using Member = TextMember<typename CallKind<Item>::Call>;
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
void writeCalls(WriteBuffer& buffer, const Item& item) {
    using Kind = CallKind<Item>;
    buffer.close(logListTag.writeBegin(buffer.open(Tag::room)));
    for (const auto& call : (item.*Kind::calls)()) {
        char* at = itemTag.writeBegin(buffer.open(roomForCall<Item>(call) + Tag::room));
        for (const auto& field : Kind::callFields) {
            std::visit([&](auto member) { at = writeValue(at, field.tag, call.*member); }, field.member);
        }
        buffer.close(itemTag.writeClose(at));
    }
    buffer.close(logListTag.writeClose(buffer.open(Tag::room)));
}

// Writing of one item-level field. `Base` is the class whose accessors the field names.

inline std::string withoutColons(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), ':'), text.end());
    return text;
}

template <class Value>
void writeElement(WriteBuffer& buffer, const Tag& tag, const Value& value) {
    buffer.close(writeValue(buffer.open(tagsLength(tag) + roomForValue(value) + Tag::room), tag, value));
}

template <class Base>
void writeAccess(WriteBuffer& buffer, const Tag& tag, const TextAccess<Base>& access, const Base& item) {
    const std::string& value = (item.*access.get)();
    switch (access.form) {
        case Form::asItIs:
            return writeElement(buffer, tag, value);
        case Form::escaped:
            return writeElement(buffer, tag, ClientUtils::escapeXMLString(value));
        case Form::withoutColons:
            return writeElement(buffer, tag, withoutColons(value));
    }
}

template <class Base>
void writeAccess(WriteBuffer& buffer, const Tag& tag, const FlagAccess<Base>& access, const Base& item) {
    writeElement(buffer, tag, (item.*access.get)());
}

template <class Base>
void writeField(WriteBuffer& buffer, const ItemField<Base>& field, const Base& item) {
    std::visit([&](const auto& access) { writeAccess(buffer, field.writtenAs, access, item); }, field.access);
}

/// Room for one item-level field. Texts that are escaped may need more.
template <class Base>
std::size_t roomForField(const ItemField<Base>& field, const Base& item) {
    const auto* text = std::get_if<TextAccess<Base>>(&field.access);
    return tagsLength(field.writtenAs) + (text == nullptr ? longestWord(false) : (item.*text->get)().size());
}

/// Spare room, enough for what escaping adds to most names.
constexpr std::size_t roomForEscapes = 32;

/// Appends the log list of an item.
template <class Item>
void appendCalls(std::string& out, const Item& item) {
    makeRoom(out, roomForCalls(item));
    WriteBuffer buffer(out);
    writeCalls(buffer, item);
    buffer.flush();
}

/// Appends the item body: the unique id, and unless `onlyUniqueId` everything else.
template <class Item>
void appendBody(std::string& out, const Item& item, bool onlyUniqueId) {
    const CallItemWithPicture& party = item;
    WriteBuffer buffer(out);
    if (onlyUniqueId) {
        writeField(buffer, partyFields[0], party);
        return buffer.flush();
    }
    std::size_t room = roomForCalls(item) + roomForEscapes;
    for (const auto& field : partyFields) {
        room += roomForField(field, party);
    }
    for (const auto& field : CallKind<Item>::itemFields) {
        room += roomForField(field, item);
    }
    makeRoom(out, room);

    for (const auto& field : partyFields) {
        writeField(buffer, field, party);
    }
    for (const auto& field : CallKind<Item>::itemFields) {
        writeField(buffer, field, item);
    }
    writeCalls(buffer, item);
    buffer.flush();
}

}  // namespace detail
}  // namespace calljournal

#endif
