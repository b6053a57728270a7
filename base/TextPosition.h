#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace calljournal {

/// Turns byte offsets in a text, which must come in ascending order, into lines and columns: both from 1, columns in
/// bytes. The text must outlive this.
class TextPosition {
public:
    explicit TextPosition(std::string_view text) : text_(text), lineEnd_(text.find('\n')) {}

    /// "line 1, column 17"
    std::string of(std::size_t at) {
        while (lineEnd_ < at) {
            lineBegin_ = lineEnd_ + 1;
            lineEnd_ = text_.find('\n', lineBegin_);
            ++line_;
        }
        return "line " + std::to_string(line_) + ", column " + std::to_string(at - lineBegin_ + 1);
    }

private:
    std::string_view text_;
    std::size_t line_ = 1;
    std::size_t lineBegin_ = 0;
    std::size_t lineEnd_;
};

}  // namespace calljournal
