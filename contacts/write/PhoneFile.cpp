#include "PhoneFile.h"

#include <algorithm>

#include "ContactColumns.h"
#include "Utf8.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr char separator = ';';

bool needsEscape(char c) {
    return c == '\\' || c == '"' || c == '\n';
}

void appendEscaped(std::string& line, const std::string& text) {
    for (const char c : text) {
        if (needsEscape(c) || c == separator) {
            line += '\\';
        }
        line += c == '\n' ? 'n' : c;
    }
}

/// The importer turns two quotes side by side into an escaped one before it looks at anything else. So quotes around a
/// column are for those without a quote inside, as other programs like them; any other column escapes what it holds.
void appendColumn(std::string& line, const std::string& text) {
    if (std::any_of(text.begin(), text.end(), needsEscape)) {
        appendEscaped(line, text);
    } else if (text.find(separator) != std::string::npos) {
        line.append(1, '"').append(text).append(1, '"');
    } else {
        line += text;
    }
}

}  // namespace

std::string phoneFileHeader() {
    return joined(format::tamberNames(), ";") + '\n';
}

void appendPhoneLine(std::string& file, const Contact& contact) {
    for (int place = 0; place < format::defaultDialField; ++place) {
        appendColumn(file, contact.*format::textAt(place).member);
        file += separator;
    }
    file += std::to_string(contact.defaultDial);
    file += '\n';
}

std::size_t storableLength(std::string_view text) {
    return wholeCharacters(text, format::storedLength(text));
}

}  // namespace calljournal
