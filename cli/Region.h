#pragma once

#include <string>

#include "CommandContext.h"

namespace calljournal {

/// Returns why `region` is none, for people; nothing if it is one.
std::string regionProblem(const std::string& region);

/// Returns the region of the user: that of --region, of the variable CALLJOURNAL_REGION or of the locale; "ZZ" if none
/// of them names one. Throws ValueError if what the variable names is none.
std::string usersRegion(const GlobalOptions& globals);

}  // namespace calljournal
