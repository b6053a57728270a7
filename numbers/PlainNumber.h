#pragma once

#include <cstddef>
#include <string>

namespace calljournal {

/// Numbers have at most 15 digits (ITU-T E.164); with all punctuation anybody writes they stay far below this. Anything
/// longer is some other text, which would keep the parser busy for minutes.
constexpr std::size_t longestNumber = 250;

/// What may be dialled of `number`: digits, the plus sign in front, and the star and hash of service codes. A number
/// without any of them, such as a name sent in its place, is itself.
std::string withoutPunctuation(const std::string& number);

}  // namespace calljournal
