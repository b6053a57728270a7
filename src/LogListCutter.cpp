#include "detail/LogListCutter.h"

#include <algorithm>
#include <utility>

#include "format/Texts.h"

namespace calljournal::detail {

namespace text = format::text;

LogListCutter::LogListCutter(std::string text) : text_(std::move(text)) {}

const char* LogListCutter::next() {
    // The end of the kept part goes right before the rest, over bytes that were cut, so that a plain search finds tags
    // across the seam. The cut element is longer than the seam, and a longer seam would not hold a whole tag less.
    const std::size_t seam = std::min(kept_, text::ITEM_XML_CLOSE.size() - 1);
    const std::size_t from = rest_ - seam;
    std::copy_n(text_.begin() + static_cast<std::ptrdiff_t>(kept_ - seam), seam,
                text_.begin() + static_cast<std::ptrdiff_t>(from));

    const std::size_t open = text_.find(text::ITEM_XML_BEGIN, from);
    const std::size_t close = text_.find(text::ITEM_XML_CLOSE, from);
    if (close == std::string::npos) {
        return nullptr;
    }
    if (open == std::string::npos) {
        return nextWithoutBegin();
    }
    const std::size_t begin = open + text::ITEM_XML_BEGIN.size();
    if (begin >= close) {
        return nullptr;
    }

    if (open < rest_) {
        kept_ -= rest_ - open;
    } else {
        std::copy(text_.begin() + static_cast<std::ptrdiff_t>(rest_), text_.begin() + static_cast<std::ptrdiff_t>(open),
                  text_.begin() + static_cast<std::ptrdiff_t>(kept_));
        kept_ += open - rest_;
    }
    rest_ = close + text::ITEM_XML_CLOSE.size();
    text_[close] = '\0';
    return text_.c_str() + begin;
}

const char* LogListCutter::nextWithoutBegin() {
    const std::string whole = text_.substr(0, kept_) + text_.substr(rest_);
    constexpr std::size_t begin = text::ITEM_XML_BEGIN.size() - 1;
    const std::size_t close = whole.find(text::ITEM_XML_CLOSE);
    const std::string repeated = whole.substr(close + text::ITEM_XML_CLOSE.size());
    if (begin >= close || (repeated + repeated).find(text::ITEM_XML_BEGIN) == std::string::npos) {
        return nullptr;
    }
    // Neither tag is in it, so the next search ends the walk.
    *this = LogListCutter(whole.substr(begin, close - begin));
    return text_.c_str();
}

}  // namespace calljournal::detail
