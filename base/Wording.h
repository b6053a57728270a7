#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace calljournal {

/// "1 contact", "2 contacts".
std::string counted(std::size_t count, const std::string& noun);

/// The words with `separator` between them.
std::string joined(const std::vector<std::string>& words, std::string_view separator = ", ");

}  // namespace calljournal
