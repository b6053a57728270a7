#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct UConverter;

namespace calljournal {

/// Turns bytes of a character set, which come piece by piece, into UTF-8. What is no character becomes U+FFFD.
class Transcoder {
public:
    /// Throws AddressBookError for a name that ICU does not know.
    explicit Transcoder(const std::string& charset);

    /// Appends what `piece` is to `text`; a character at its end may wait for the next piece, unless it is the last
    /// one.
    void convert(std::string_view piece, bool isLast, std::string& text);

private:
    struct Closer {
        void operator()(UConverter* converter) const;
    };
    using Converter = std::unique_ptr<UConverter, Closer>;

    static Converter open(const std::string& charset);

    Converter from_;
    Converter to_;
    std::vector<char16_t> pivot_;
    char16_t* pivotSource_;
    char16_t* pivotTarget_;
    bool isFirst_ = true;
};

/// Reads bytes of any character set and gives them as UTF-8, piece by piece.
class TextStream {
public:
    /// Reads `bytes` from their present place; they have to live as long. `charset` is a name that ICU knows, or empty
    /// for bytes that are to be taken as they are. Throws AddressBookError for a name that ICU does not know.
    TextStream(std::istream& bytes, const std::string& charset);

    /// Appends the next piece to `text` and returns true, or returns false at the end. Throws AddressBookError if the
    /// bytes cannot be read.
    bool read(std::string& text);

    std::size_t bytesRead() const { return bytesRead_; }

private:
    std::istream& bytes_;
    std::optional<Transcoder> transcoder_;
    std::string piece_;
    bool isAtEnd_ = false;
    std::size_t bytesRead_ = 0;
};

/// Returns `bytes` as UTF-8. Throws as TextStream does.
std::string decoded(std::string_view bytes, const std::string& charset);

/// Returns whether ICU knows a character set of that name.
bool isCharset(const std::string& name);

}  // namespace calljournal
