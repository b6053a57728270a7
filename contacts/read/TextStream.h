#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace calljournal {

class Transcoder;

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
    std::shared_ptr<Transcoder> transcoder_;  ///< Null for bytes that are taken as they are.
    std::string piece_;
    bool isAtEnd_ = false;
    std::size_t bytesRead_ = 0;
};

/// Returns `bytes` as UTF-8. Throws as TextStream does.
std::string decoded(std::string_view bytes, const std::string& charset);

/// Returns whether ICU knows a character set of that name.
bool isCharset(const std::string& name);

}  // namespace calljournal
