#include "TextStream.h"

#include <istream>
#include <unicode/ucnv.h>
#include <vector>

#include "AddressReader.h"

namespace calljournal {

namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;
constexpr std::size_t pivotSize = 2048;

/// Throws AddressBookError for a name that ICU does not know.
UConverter* openConverter(const std::string& charset) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(charset.c_str(), &status);
    if (U_FAILURE(status)) {
        throw AddressBookError(AddressBookError::Reason::charset, '"' + charset + "\" is no character set known here");
    }
    return converter;
}

}  // namespace

/// Turns bytes of a character set, which come piece by piece, into UTF-8. What is no character becomes U+FFFD.
class Transcoder {
public:
    explicit Transcoder(const std::string& charset) : from_(openConverter(charset)), to_(openConverter("UTF-8")) {}

    /// Appends what `piece` is to `text`; a character at its end may wait for the next piece, unless it is the last
    /// one.
    void convert(std::string_view piece, bool isLast, std::string& text) {
        const char* source = piece.data();
        const char* const sourceEnd = source + piece.size();
        char buffer[16384];
        UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
        while (status == U_BUFFER_OVERFLOW_ERROR) {
            status = U_ZERO_ERROR;
            char* target = buffer;
            ucnv_convertEx(to_.getAlias(), from_.getAlias(), &target, buffer + sizeof buffer, &source, sourceEnd,
                           pivot_.data(), &pivotSource_, &pivotTarget_, pivot_.data() + pivot_.size(),
                           static_cast<UBool>(isFirst_ ? 1 : 0), static_cast<UBool>(isLast ? 1 : 0), &status);
            isFirst_ = false;
            text.append(buffer, target);
        }
    }

private:
    icu::LocalUConverterPointer from_;
    icu::LocalUConverterPointer to_;
    std::vector<char16_t> pivot_ = std::vector<char16_t>(pivotSize);
    char16_t* pivotSource_ = pivot_.data();
    char16_t* pivotTarget_ = pivot_.data();
    bool isFirst_ = true;
};

TextStream::TextStream(std::istream& bytes, const std::string& charset) : bytes_(bytes), piece_(pieceSize, '\0') {
    if (!charset.empty()) {
        transcoder_ = std::make_shared<Transcoder>(charset);
    }
}

bool TextStream::read(std::string& text) {
    if (isAtEnd_) {
        return false;
    }
    bytes_.read(piece_.data(), static_cast<std::streamsize>(piece_.size()));
    if (bytes_.bad()) {
        throw AddressBookError(AddressBookError::Reason::file, "the file cannot be read on");
    }
    const std::string_view piece(piece_.data(), static_cast<std::size_t>(bytes_.gcount()));
    bytesRead_ += piece.size();
    isAtEnd_ = piece.size() < piece_.size();
    if (transcoder_) {
        transcoder_->convert(piece, isAtEnd_, text);
    } else {
        text += piece;
    }
    return true;
}

std::string decoded(std::string_view bytes, const std::string& charset) {
    std::string text;
    Transcoder(charset).convert(bytes, true, text);
    return text;
}

bool isCharset(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_close(ucnv_open(name.c_str(), &status));
    return U_SUCCESS(status);
}

}  // namespace calljournal
