#ifndef CALLJOURNAL_FORMAT_TAG_H
#define CALLJOURNAL_FORMAT_TAG_H

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "Bytes.h"

namespace calljournal {
namespace format {

/// A constant text of the format that holds its bytes itself, so that a table of it needs no relocation, and with
/// padding, so that it is written in one piece of fixed size.
class ShortText {
public:
    /// Bytes that a write may touch.
    static constexpr std::size_t room = 28;

    constexpr ShortText(std::string_view text) : ShortText("", text, "") {}

    constexpr operator std::string_view() const { return {bytes_, length_}; }
    constexpr std::size_t length() const { return length_; }
    constexpr bool empty() const { return length_ == 0; }

    bool equals(std::string_view text) const {
        return text.size() == length_ && sameBytes(text.data(), bytes_, length_);
    }

    /// Writes the text to `out`, where there is `room`, and returns the place behind it.
    char* write(char* out) const {
        std::memcpy(out, bytes_, room);
        return out + length_;
    }

protected:
    constexpr ShortText(std::string_view front, std::string_view text, std::string_view back)
        : bytes_{}, length_(static_cast<unsigned char>(front.size() + text.size() + back.size())) {
        if (front.size() + text.size() + back.size() > room) {
            throw std::length_error("ShortText");
        }
        std::size_t at = 0;
        for (const std::string_view piece : {front, text, back}) {
            for (const char c : piece) {
                bytes_[at++] = c;
            }
        }
    }

    char bytes_[room + 2];
    unsigned char length_;
};

/// The name of an element with its tags; as a text, the name.
class Tag : private ShortText {
public:
    constexpr Tag(std::string_view name) : ShortText("</", name, ">") {}

    using ShortText::room;

    constexpr operator std::string_view() const { return {bytes_ + 2, length_ - 3U}; }

    friend constexpr bool operator==(const Tag& tag, std::string_view name) { return std::string_view(tag) == name; }
    friend constexpr bool operator!=(const Tag& tag, std::string_view name) { return !(tag == name); }

    constexpr std::size_t beginLength() const { return length_ - 1U; }
    constexpr std::size_t closeLength() const { return length_; }

    /// Whether the begin tag stands at `text`, of which there are `available` bytes.
    bool beginsAt(const char* text, std::size_t available) const {
        return available >= beginLength() && *text == '<' && sameBytes(text + 1, bytes_ + 2, length_ - 2U);
    }
    bool closesAt(const char* text, std::size_t available) const {
        return available >= closeLength() && sameBytes(text, bytes_, closeLength());
    }

    /// Writes a tag to `out`, where there is `room`, and returns the place behind it.
    char* writeBegin(char* out) const {
        *out = '<';
        std::memcpy(out + 1, bytes_ + 2, room - 1);
        return out + beginLength();
    }
    char* writeClose(char* out) const { return write(out); }
};

}  // namespace format
}  // namespace calljournal

#endif
