#ifndef CALLJOURNAL_DETAIL_ELEMENTS_H
#define CALLJOURNAL_DETAIL_ELEMENTS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace calljournal {
namespace detail {

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

/// Searches the zero-terminated text at `cursor` for the first "<tag>" and the first "</tag>" behind it. `next` is the
/// place behind the element if it stands right at `cursor`, and `cursor` otherwise, so that an element that was skipped
/// can still be found.
FoundElement findElement(const char* cursor, std::string_view tag);

/// Whether unescaping could change `raw`; every platform leaves a text without ampersand as it is.
bool mayHoldEntities(std::string_view raw);

/// Stores `raw` in `out`, unescaped by the platform.
void assignUnescaped(std::string& out, std::string_view raw);

}  // namespace detail
}  // namespace calljournal

#endif
