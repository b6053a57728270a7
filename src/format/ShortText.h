#pragma once

#include <cstddef>
#include <stdexcept>
#include <string_view>

namespace calljournal::format {

/// A short constant text that holds its own bytes, so that a table of such texts is plain read-only data.
class ShortText {
public:
    /// The bytes that may be read from data() on; those behind the text are zero.
    static constexpr std::size_t room = 28;

    /// The text is made of the pieces, one behind the other. Throws std::length_error if it is longer than `room`, which
    /// no compiler takes for a constant.
    constexpr ShortText(std::string_view front, std::string_view middle = {}, std::string_view back = {})
        : bytes_{}, size_(static_cast<unsigned char>(front.size() + middle.size() + back.size())) {
        if (front.size() + middle.size() + back.size() > room) {
            throw std::length_error("ShortText");
        }
        std::size_t at = 0;
        for (const std::string_view piece : {front, middle, back}) {
            for (const char c : piece) {
                bytes_[at++] = c;
            }
        }
    }

    constexpr operator std::string_view() const { return {bytes_, size_}; }
    constexpr const char* data() const { return bytes_; }
    constexpr std::size_t size() const { return size_; }
    constexpr bool empty() const { return size_ == 0; }

    friend constexpr bool operator==(const ShortText& text, std::string_view other) {
        return std::string_view(text) == other;
    }
    friend constexpr bool operator!=(const ShortText& text, std::string_view other) { return !(text == other); }

private:
    char bytes_[room];
    unsigned char size_;
};

}  // namespace calljournal::format
