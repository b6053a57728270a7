#include "Text.h"

#include <algorithm>

#include "Utf8.h"

namespace calljournal {

namespace {

bool mayBeBlank(char c) {
    return static_cast<unsigned char>(c) <= 0x20;
}

}  // namespace

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return lowerCase(c); });
    return result;
}

std::string upperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return upperCase(c); });
    return result;
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

std::string_view trimmed(std::string_view text, std::string_view blanks) {
    // Hardly any text has blanks at either end.
    if (text.empty() || (!mayBeBlank(text.front()) && !mayBeBlank(text.back()))) {
        return text;
    }
    const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

std::vector<std::string_view> split(std::string_view text, char delimiter) {
    std::vector<std::string_view> parts;
    for (std::size_t end = text.find(delimiter); end != std::string_view::npos; end = text.find(delimiter)) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

std::string inOneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return isControl(c) || c == '\t'; }, ' ');
    return line;
}

std::string fullName(const std::string& firstName, const std::string& lastName) {
    return firstName + (firstName.empty() || lastName.empty() ? "" : " ") + lastName;
}

std::string shortened(std::string_view text, std::size_t most) {
    const std::size_t length = wholeCharacters(text, most);
    return std::string(text.substr(0, length)) + (length < text.size() ? "..." : "");
}

}  // namespace calljournal
