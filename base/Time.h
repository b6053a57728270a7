#pragma once

#include <string>

#include "ValueError.h"

namespace calljournal {

/// Throws ValueError unless `text` is a time as the journal stores it: YYYY-MM-DD HH:MM:SS, in the calendar.
void checkTime(const std::string& text);

/// Returns the local time now as the journal stores it.
std::string currentTime();

}  // namespace calljournal
