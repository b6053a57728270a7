#include "VCardLines.h"

#include <algorithm>
#include <cctype>
#include <iterator>

#include "AddressReader.h"
#include "Charset.h"
#include "Text.h"
#include "TextStream.h"

namespace calljournal {

namespace {

/// The longest name with its parameters. A head is read even if its value is too long for one line.
constexpr std::size_t longestHead = 4096;

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// Where the name and its parameters end. Quoted parameters may hold a colon.
std::size_t findColon(std::string_view text) {
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        isQuoted ^= text[i] == '"';
        if (text[i] == ':' && !isQuoted) {
            return i;
        }
    }
    // A quote that is never closed is a character like others.
    return text.find(':');
}

std::vector<std::string_view> splitOutsideQuotes(std::string_view text, char delimiter) {
    std::vector<std::string_view> parts;
    bool isQuoted = false;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        isQuoted ^= text[i] == '"';
        if (text[i] == delimiter && !isQuoted) {
            parts.push_back(text.substr(begin, i - begin));
            begin = i + 1;
        }
    }
    parts.push_back(text.substr(begin));
    return parts;
}

std::string withoutQuotes(std::string_view text) {
    std::string kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept), [](char c) { return c != '"'; });
    return kept;
}

void addParameter(VCardProperty& property, std::string_view text) {
    const std::size_t sign = text.find('=');
    if (sign != std::string_view::npos) {
        const std::string name = upperCase(text.substr(0, sign));
        for (const std::string_view value : splitOutsideQuotes(text.substr(sign + 1), ',')) {
            // A list may be quoted as a whole: TYPE="work,voice".
            const std::string list = withoutQuotes(value);
            for (const std::string_view part : splitOutsideQuotes(list, ',')) {
                property.parameters.push_back({name, std::string(part)});
            }
        }
        return;
    }
    const std::string word = upperCase(text);
    // Types that version 2.1 writes without "TYPE=" are where a parameter's name would be; these are its other bare
    // words.
    const bool isEncoding = isOneOf(word, {"QUOTED-PRINTABLE", "BASE64", "7BIT", "8BIT", "B"});
    property.parameters.push_back({isEncoding ? "ENCODING" : "TYPE", word});
}

std::string parameter(const VCardProperty& property, std::string_view name) {
    const auto found = std::find_if(property.parameters.begin(), property.parameters.end(),
                                    [&](const VCardParameter& p) { return p.name == name; });
    return found == property.parameters.end() ? std::string() : found->value;
}

bool parseName(VCardProperty& property, std::string_view text) {
    const std::vector<std::string_view> parts = splitOutsideQuotes(text, ';');
    const std::size_t dot = parts[0].rfind('.');
    property.group = dot == std::string_view::npos ? std::string() : upperCase(parts[0].substr(0, dot));
    property.name = upperCase(parts[0].substr(dot == std::string_view::npos ? 0 : dot + 1));
    property.source = text;
    property.parameters.clear();
    for (std::size_t i = 1; i < parts.size(); ++i) {
        addParameter(property, parts[i]);
    }
    return !property.name.empty() && std::all_of(property.name.begin(), property.name.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_';
    });
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = lowerCase(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string quotedPrintable(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '=' && i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
        const int low = high >= 0 ? hexDigit(text[i + 2]) : -1;
        if (low >= 0) {
            bytes += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

/// Bytes that were written as digits have a character set of their own.
std::string asText(const std::string& bytes, const std::string& charset) {
    Utf8Check check;
    check.add(bytes);
    if (check.isValid() && (charset.empty() || upperCase(charset) == "UTF-8")) {
        return bytes;
    }
    return decoded(bytes, !charset.empty() && isCharset(charset) ? charset : "windows-1252");
}

}  // namespace

std::vector<std::string_view> splitValue(std::string_view value, char delimiter) {
    std::vector<std::string_view> parts;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\') {
            ++i;
        } else if (value[i] == delimiter) {
            parts.push_back(value.substr(begin, i - begin));
            begin = i + 1;
        }
    }
    parts.push_back(value.substr(begin));
    return parts;
}

std::string unescaped(std::string_view value, bool isOldVersion) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char next = value[i] == '\\' && i + 1 < value.size() ? value[i + 1] : '\0';
        if (next == '\\' || next == ',' || next == ';' || next == ':') {
            text += next;
            ++i;
        } else if (!isOldVersion && (next == 'n' || next == 'N')) {
            text += '\n';
            ++i;
        } else {
            text += value[i];
        }
    }
    return text;
}

bool VCardProperty::hasType(std::string_view type) const {
    return std::any_of(parameters.begin(), parameters.end(),
                       [&](const VCardParameter& p) { return p.name == "TYPE" && upperCase(p.value) == type; });
}

bool VCardLines::peek() {
    hasLine_ = hasLine_ || lines_.next(line_);
    return hasLine_;
}

/// Takes the line that was looked at. A value that is not wanted, or not possible, takes no memory.
void VCardLines::takeLine(VCardProperty& property, std::size_t skip) {
    hasLine_ = false;
    property.lastLine = line_.number;
    const std::string_view more = line_.text.substr(skip);
    property.isTooLong = property.isTooLong || property.value.size() + more.size() > longestRecord || line_.isCut;
    if (property.isTooLong || property.isBinary) {
        property.value.clear();
    } else {
        property.value += more;
    }
}

bool VCardLines::isFolded() {
    return peek() && !line_.text.empty() && isBlank(line_.text.front());
}

/// Reads name and parameters, which may be folded, too, and the beginning of the value.
void VCardLines::takeHead(VCardProperty& property) {
    property = VCardProperty();
    property.line = line_.number;
    takeLine(property, 0);
    const bool isCut = property.isTooLong;
    if (isCut) {
        property.value = line_.text.substr(0, longestHead);
    }
    // Each line is searched once; a value that never has a colon is as long as a value may be.
    bool hasColon = property.value.find(':') != std::string::npos;
    while (!hasColon && !property.isTooLong && isFolded()) {
        hasColon = line_.text.find(':') != std::string_view::npos;
        takeLine(property, 1);
    }
    const std::size_t colon = findColon(property.value);
    if (colon <= longestHead && parseName(property, std::string_view(property.value).substr(0, colon))) {
        property.value.erase(0, colon + 1);
    } else {
        property.name.clear();
    }
    const std::string encoding = upperCase(parameter(property, "ENCODING"));
    property.isBinary =
        isOneOf(property.name, {"PHOTO", "LOGO", "SOUND", "KEY"}) || encoding == "B" || encoding == "BASE64";
    property.isTooLong = property.isTooLong && !property.isBinary;
    if (property.isTooLong || property.isBinary) {
        property.value.clear();
    }
}

void VCardLines::takeQuotedPrintable(VCardProperty& property) {
    while (!property.value.empty() && property.value.back() == '=' && peek()) {
        property.value.pop_back();
        takeLine(property, 0);
    }
    property.value = asText(quotedPrintable(property.value), parameter(property, "CHARSET"));
}

bool VCardLines::next(VCardProperty& property) {
    while (peek() && std::all_of(line_.text.begin(), line_.text.end(), isBlank)) {
        hasLine_ = false;
    }
    if (!hasLine_) {
        return false;
    }
    takeHead(property);
    const bool isQuotedPrintable = upperCase(parameter(property, "ENCODING")) == "QUOTED-PRINTABLE";
    if (isQuotedPrintable) {
        takeQuotedPrintable(property);
    }
    while (isFolded()) {
        // Version 2.1 folds at a blank and keeps it.
        takeLine(property, isOldVersion_ ? 0 : 1);
    }
    // Old programs do not indent pictures.
    while (property.isBinary && peek() && !line_.text.empty() && line_.text.find(':') == std::string_view::npos) {
        takeLine(property, 0);
    }
    return true;
}

}  // namespace calljournal
