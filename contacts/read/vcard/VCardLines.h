#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "LineReader.h"

namespace calljournal {

struct VCardParameter {
    std::string name;   ///< In capitals; "TYPE" where version 2.1 leaves it out.
    std::string value;  ///< As it is in the file, without quotes around it.
};

/// A property of a vCard: `item1.TEL;TYPE=cell:+49 30 1234`.
struct VCardProperty {
    std::size_t line = 0;  ///< Where it begins.
    std::size_t lastLine = 0;
    std::string group;                       ///< "ITEM1"; in capitals.
    std::string name;                        ///< "TEL"; in capitals. Empty for a line that is no property.
    std::string source;                      ///< What is before the colon: "item1.TEL;TYPE=cell".
    std::vector<VCardParameter> parameters;  ///< In the order of the file.
    std::string value;                       ///< Unfolded and decoded, escapes as they are; empty if it is binary.
    bool isBinary = false;                   ///< A picture or the like; its value was skipped.
    bool isTooLong = false;                  ///< Its value was too long and is not there.

    /// Returns whether a TYPE is `type`, which is in capitals.
    bool hasType(std::string_view type) const;
};

/// Reads the properties of a file of vCards, version 2.1, 3.0 or 4.0: joins folded lines and decodes quoted-printable.
class VCardLines {
public:
    explicit VCardLines(LineReader lines) : lines_(std::move(lines)) {}

    bool next(VCardProperty& property);

    /// Says that the lines to come are of version 2.1.
    void setOldVersion(bool isOld) { isOldVersion_ = isOld; }

    std::size_t bytesRead() const { return lines_.bytesRead(); }

private:
    bool peek();
    bool isFolded();
    void takeLine(VCardProperty& property, std::size_t skip);
    void takeHead(VCardProperty& property);
    void takeQuotedPrintable(VCardProperty& property);

    LineReader lines_;
    Line line_;
    bool hasLine_ = false;  ///< line_ was read and not used yet.
    bool isOldVersion_ = false;
};

/// Splits a value at a delimiter that has no backslash before it; the parts are as they were.
std::vector<std::string_view> splitValue(std::string_view value, char delimiter);

/// Returns a value's text without escapes. Version 2.1 knows no "\n".
std::string unescaped(std::string_view value, bool isOldVersion);

}  // namespace calljournal
