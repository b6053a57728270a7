#pragma once

#include <string>
#include <string_view>

#include "Finding.h"

namespace calljournal {

/// Returns a value of a finding as a terminal shows it: escaped, and a text shortened to 60 columns, an id to 40.
std::string showValue(std::string_view value, ValueUse use);

}  // namespace calljournal
