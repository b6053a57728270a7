#pragma once

#include <string_view>

namespace calljournal {

/// The text of columns.tsv, which the build puts into the program.
std::string_view builtInColumnsText();

}  // namespace calljournal
