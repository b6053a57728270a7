#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace calljournal {

// Letters outside ASCII keep their case.

constexpr char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char upperCase(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string lowerCase(std::string_view text);
std::string upperCase(std::string_view text);

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words);

/// Returns `text` without the characters of `blanks` at either end. A blank is a space or a control character.
std::string_view trimmed(std::string_view text, std::string_view blanks);

/// Returns what is between the delimiters: one part more than there are delimiters.
std::vector<std::string_view> split(std::string_view text, char delimiter);

/// Returns whether `c` is a control character of ASCII other than a tab.
constexpr bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\t') || byte == 0x7f;
}

/// Returns whether no XML carries `c`: a control character below a space but tab, line feed and carriage return.
constexpr bool isForbiddenInXml(char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Returns `text` with a space in the place of each control character of ASCII.
std::string inOneLine(std::string_view text);

/// Returns "First Last", or what there is of it.
std::string fullName(const std::string& firstName, const std::string& lastName);

/// Returns at most `most` bytes of `text`, no character cut, with "..." behind them if anything is missing.
std::string shortened(std::string_view text, std::size_t most);

}  // namespace calljournal
