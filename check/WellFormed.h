#pragma once

#include <optional>
#include <string_view>

#include "Finding.h"

namespace calljournal {

/// Returns the first place at which `body` is no run of elements as the journal stores them: plain tags without
/// attributes, texts, and the five predefined entities and character references. Nothing if there is none.
std::optional<Finding> findDefect(std::string_view body);

}  // namespace calljournal
