#pragma once

#include <cstddef>
#include <string>

namespace calljournal::detail {

/// Cuts one "Item" element after the other out of the text of a log list. Each cut joins what is before and behind
/// it, which can make a new tag, as in "<It<Item>a</Item>em>"; the next search sees it. The work is linear in the text:
/// it is never copied again, only what a cut leaves in front of itself moves down, once.
class LogListCutter {
public:
    explicit LogListCutter(std::string text);

    /// Returns the next item's text, zero-terminated and valid until the next call; null when there is none: a tag is
    /// missing, or the first end tag is not behind the first begin tag with at least one byte in between.
    const char* next();

private:
    /// The one case with an item though no begin tag is left. Cutting takes a missing begin tag for one that is at
    /// -1: all before the end tag but for five bytes is the item, nothing goes, and what is behind the end tag follows
    /// once more. Where the seam of the two makes a begin tag, that is behind the end tag, and there is no further
    /// item. Elsewhere the text would grow without end; there the walk is over without that item.
    const char* nextWithoutBegin();

    std::string text_;
    std::size_t kept_ = 0;  ///< Bytes at the start that are before all cuts.
    std::size_t rest_ = 0;  ///< Where the text goes on behind the last cut.
};

}  // namespace calljournal::detail
