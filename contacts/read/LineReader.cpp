#include "LineReader.h"

#include <algorithm>

#include "AddressReader.h"

namespace calljournal {

bool LineReader::fill() {
    if (begin_ > 0) {
        buffer_.erase(0, begin_);
        nextLf_ -= std::min(begin_, nextLf_);
        nextCr_ -= std::min(begin_, nextCr_);
        begin_ = 0;
    }
    isAtEnd_ = isAtEnd_ || !stream_.read(buffer_);
    return !isAtEnd_;
}

/// Each byte is looked at once: what is known from the last search stays until it is passed.
std::size_t LineReader::find(char c, std::size_t from, std::size_t& known) const {
    if (known < from || known >= buffer_.size() || buffer_[known] != c) {
        known = std::min(buffer_.find(c, std::max(from, known)), buffer_.size());
    }
    return known;
}

std::size_t LineReader::findEnd(std::size_t from) {
    return std::min(find('\n', from, nextLf_), find('\r', from, nextCr_));
}

/// How many bytes end the line that ends at `end`.
std::size_t LineReader::endLength(std::size_t end) const {
    return lineLength(std::string_view(buffer_).substr(end, 2));
}

void LineReader::skipToEnd() {
    while (true) {
        const std::size_t end = findEnd(begin_);
        if (end + 1 < buffer_.size()) {
            begin_ = end + endLength(end);
            return;
        }
        begin_ = end;
        if (!fill()) {
            begin_ = buffer_.size();
            return;
        }
    }
}

bool LineReader::next(Line& line) {
    std::size_t end = findEnd(begin_);
    // The byte behind the end is needed as well. What is in memory moves when more comes.
    for (bool isMore = true; isMore && end + 1 >= buffer_.size() && end - begin_ <= longestRecord;) {
        isMore = fill();
        end = findEnd(begin_);
    }
    if (begin_ == buffer_.size()) {
        return false;
    }
    line.number = ++number_;
    line.isCut = end - begin_ > longestRecord;
    if (line.isCut) {
        cut_.assign(buffer_, begin_, longestRecord);
        line.text = line.whole = cut_;
        skipToEnd();
        return true;
    }
    const std::size_t ending = end == buffer_.size() ? 0 : endLength(end);
    line.text = std::string_view(buffer_).substr(begin_, end - begin_);
    line.whole = std::string_view(buffer_).substr(begin_, end - begin_ + ending);
    begin_ = end + ending;
    return true;
}

std::size_t lineLength(std::string_view text) {
    const std::size_t end = text.find_first_of("\r\n");
    if (end == std::string_view::npos) {
        return text.size();
    }
    return end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
}

}  // namespace calljournal
