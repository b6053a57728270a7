#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Bytes.h"
#include "Tags.h"

namespace calljournal::detail {

/// Bytes that the tags of one element take: "<>" and "</>" around the name, twice.
constexpr std::size_t tagsLength(std::string_view tag) {
    return 2 * tag.size() + 5;
}

void appendBegin(std::string& out, std::string_view tag);
void appendClose(std::string& out, std::string_view tag);

/// Appends the element even if `value` is empty.
void appendElement(std::string& out, std::string_view tag, std::string_view value);

/// Makes room for `length` more bytes, at least doubling the capacity so that appending many pieces stays linear.
void makeRoom(std::string& out, std::size_t length);

/// The result of a search: the raw text between two tags, and the place to search on from.
struct FoundElement {
    const char* begin;  ///< Null if there is no such element.
    const char* end;
    const char* next;

    explicit operator bool() const { return begin != nullptr; }
    std::string_view raw() const { return std::string_view(begin, static_cast<std::size_t>(end - begin)); }
};

/// Returns the place behind the first "<tag>" of a zero-terminated text, or null.
const char* findBegin(const char* text, std::string_view tag);

/// Returns the place of the first "</tag>" of a zero-terminated text, or null.
const char* findClose(const char* text, std::string_view tag);

/// Searches the zero-terminated text at `cursor` for the first "<tag>" and the first "</tag>" behind it. `next` is the
/// place behind the element if it is right at `cursor`, and `cursor` otherwise, so that an element that was skipped
/// can still be found.
FoundElement findElement(const char* cursor, std::string_view tag);

/// A walk over an entry or a call that may be just as it was written: one element behind the other in the order of the
/// table, each text without markup. Every "<" that the walk has passed was then a tag that it expected, so no other
/// element can have been there, and nothing needs to be searched for. A text ends at the first of `stops`.
template <char... stops>
class Walk {
public:
    Walk(const char* at, const char* end) : at_(at), end_(end) {}

    const char* at() const { return at_; }
    bool isAtEnd() const { return at_ == end_; }

    bool takeBegin(const Tag& tag) {
        const bool isThere = beginsAt(tag, at_, room());
        at_ += isThere ? beginLength(tag) : 0;
        return isThere;
    }

    bool takeEnd(const Tag& tag) {
        const bool isThere = endsAt(tag, at_, room());
        at_ += isThere ? endLength(tag) : 0;
        return isThere;
    }

    /// Steps over the text up to the next stop, or to the end, and returns it.
    std::string_view takeText() {
        const char* const start = at_;
        at_ = findAny(start, end_, stops...);
        return std::string_view(start, static_cast<std::size_t>(at_ - start));
    }

private:
    std::size_t room() const { return static_cast<std::size_t>(end_ - at_); }

    const char* at_;
    const char* end_;
};

/// Texts with entities are taken as they are ...
using WrittenText = Walk<'<'>;

/// ... or stop the walk.
using PlainText = Walk<'<', '&'>;

/// Whether unescaping could change `raw`; every platform leaves a text without ampersand as it is.
inline bool mayHoldEntities(std::string_view raw) {
    return raw.find('&') != std::string_view::npos;
}

/// Returns `raw` unescaped. The platform is asked only where that could change it.
std::string unescaped(std::string_view raw);

}  // namespace calljournal::detail
