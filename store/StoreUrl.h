#pragma once

#include <string>
#include <string_view>

namespace calljournal {

/// Returns the URL of the user's own store: `$XDG_DATA_HOME/calljournal/journal.db`, or the same below
/// `$HOME/.local/share` if that variable is unset or not absolute. Throws StoreError if there is no `$HOME` either.
std::string defaultStoreUrl();

/// What follows the scheme in a URL.
constexpr std::string_view schemeEnd = "://";

/// Returns the scheme that `url` begins with, letters, digits, `+`, `-` or `.` in front of `://`; empty if it has none
/// and is a plain path.
std::string_view schemeOf(std::string_view url);

}  // namespace calljournal
