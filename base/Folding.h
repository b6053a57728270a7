#pragma once

#include <string>
#include <string_view>

namespace calljournal {

/// Returns `text` in the form in which texts are compared that differ in case and in blanks alone: its letters folded
/// as Unicode says ("Straße" and "STRASSE" become "strasse"), one space in the place of each run of white space and
/// control characters, none at either end. Bytes that are not UTF-8 stay as they are.
std::string folded(std::string_view text);

}  // namespace calljournal
