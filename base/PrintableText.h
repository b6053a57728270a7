#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace calljournal {

/// Whether a character is shown as an escape wherever a text is: because it drives a terminal, changes the direction of
/// writing, or cannot be seen and makes two names look alike.
bool isShownAsEscape(char32_t codePoint);

/// Returns `text` as it may be shown: such characters and bytes that are not UTF-8 become visible escapes such as \n,
/// \x1b, \u202e or \U000e0041.
std::string printable(std::string_view text);

/// How many columns the printable UTF-8 `text` takes: two for wide characters, none for combining ones.
std::size_t displayWidth(std::string_view text);

/// Returns the longest start of `text` that fits into `width` columns, with "…" at its end if anything is missing.
std::string fitted(const std::string& text, std::size_t width);

}  // namespace calljournal
