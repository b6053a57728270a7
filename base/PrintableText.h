#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace calljournal {

/// Returns `text` as it may be shown: control characters, bytes that are not UTF-8, and characters that change the
/// direction of writing become visible escapes such as \n, \x1b or \u202e.
std::string printable(std::string_view text);

/// How many columns the printable UTF-8 `text` takes: two for wide characters, none for combining ones.
std::size_t displayWidth(std::string_view text);

/// Returns the longest start of `text` that fits into `width` columns, with "…" at its end if anything is missing.
std::string fitted(const std::string& text, std::size_t width);

}  // namespace calljournal
