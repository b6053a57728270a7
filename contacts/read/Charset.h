#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace calljournal {

/// In which character set some bytes are.
struct FoundCharset {
    std::string name;          ///< "UTF-8", "windows-1252".
    std::string why;           ///< "byte-order mark".
    std::size_t skip = 0;      ///< The length of the byte-order mark.
    bool isValidUtf8 = false;  ///< The bytes need no conversion.
};

/// What speaks for a character set: how much of the text it makes sense of. The larger, the better; 0 says nothing.
struct CharsetEvidence {
    std::size_t score = 0;
    std::string language;  ///< BCP 47, if the text shows it.
};

/// Looks at the beginning of a text that was read in some character set.
using CharsetJudge = std::function<CharsetEvidence(const std::string& beginning)>;

/// Finds out the character set of the bytes from `bytes`' present place to its end; the place afterwards is anywhere. A
/// byte-order mark decides, then whether all is UTF-8, then what `judge` makes of the beginning together with a guess
/// from the frequency of bytes. Throws AddressBookError with three samples if nothing decides.
FoundCharset findCharset(std::istream& bytes, const CharsetJudge& judge);

/// The same if the user says the character set: it only looks for a byte-order mark that has to be skipped.
FoundCharset statedCharset(std::istream& bytes, const std::string& name);

/// Checks whether bytes that come in pieces are UTF-8.
class Utf8Check {
public:
    void add(std::string_view piece);
    /// Returns whether everything so far was UTF-8, with the last character complete.
    bool isValid() const { return isValid_ && rest_.empty(); }

private:
    bool isValid_ = true;
    std::string rest_;  ///< The beginning of a character that the next piece completes.
};

}  // namespace calljournal
