#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#include "../format/ShortText.h"
#include "../format/Tag.h"
#include "Bytes.h"

namespace calljournal::detail {

using namespace format;

// Constant texts and tags are written in one piece of fixed size: each `write` may touch ShortText::room bytes at `out`
// and returns the place behind what it wrote.

inline char* write(char* out, const ShortText& text) {
    std::memcpy(out, text.data(), ShortText::room);
    return out + text.size();
}

constexpr std::size_t beginLength(const Tag& tag) {
    return tag.endTag().size() - 1;
}

constexpr std::size_t endLength(const Tag& tag) {
    return tag.endTag().size();
}

inline char* writeEnd(char* out, const Tag& tag) {
    return write(out, tag.endTag());
}

inline char* writeBegin(char* out, const Tag& tag) {
    *out = '<';
    std::memcpy(out + 1, tag.endTag().data() + 2, ShortText::room - 2);
    return out + beginLength(tag);
}

/// Whether the begin tag is at `text`, of which there are `available` bytes.
inline bool beginsAt(const Tag& tag, const char* text, std::size_t available) {
    return available >= beginLength(tag) && *text == '<' &&
           sameBytes(text + 1, tag.endTag().data() + 2, beginLength(tag) - 1);
}

/// Whether the end tag is at `text`, of which there are `available` bytes.
inline bool endsAt(const Tag& tag, const char* text, std::size_t available) {
    return available >= endLength(tag) && sameBytes(text, tag.endTag().data(), endLength(tag));
}

/// Compares two short texts.
struct SameText {
    bool operator()(std::string_view one, std::string_view other) const {
        return one.size() == other.size() && sameBytes(one.data(), other.data(), one.size());
    }
};

}  // namespace calljournal::detail
