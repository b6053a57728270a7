#pragma once

#include <iosfwd>

#include "ListCommand.h"

namespace calljournal {

/// Shows the list, and then every change to a log of the filter's kinds, made by this process or another one, with its
/// notification: one line each, JSON objects with "Change" where the format is json. Returns when the user interrupts.
void followEntries(const Filter& filter, Session& session, const GlobalOptions& globals, std::ostream& out);

}  // namespace calljournal
