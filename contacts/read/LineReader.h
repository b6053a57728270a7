#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "TextStream.h"

namespace calljournal {

/// A physical line.
struct Line {
    std::string_view text;   ///< Without what ends it; valid until the next one is read.
    std::string_view whole;  ///< The same with what ends it: LF, CR, CR LF, or nothing at the end of the file.
    std::size_t number = 0;  ///< From 1.
    bool isCut = false;      ///< It was longer than longestRecord; this is its beginning, the rest was skipped.
};

/// Cuts a text into lines that end in LF, CR or CR LF, mixed as they come. Takes memory for one line, and linear time.
class LineReader {
public:
    explicit LineReader(TextStream stream) : stream_(std::move(stream)) {}

    bool next(Line& line);

    std::size_t bytesRead() const { return stream_.bytesRead(); }

private:
    std::size_t findEnd(std::size_t from);
    std::size_t find(char c, std::size_t from, std::size_t& known) const;
    bool fill();
    void skipToEnd();
    std::size_t endLength(std::size_t end) const;

    TextStream stream_;
    std::string buffer_;
    std::string cut_;  ///< The beginning of a line that is too long.
    std::size_t begin_ = 0;
    std::size_t nextLf_ = 0;  ///< The first LF at or behind the last search, or the buffer's size if there was none.
    std::size_t nextCr_ = 0;
    std::size_t number_ = 0;
    bool isAtEnd_ = false;
};

/// Returns the length of the first line of `text`, with what ends it.
std::size_t lineLength(std::string_view text);

}  // namespace calljournal
