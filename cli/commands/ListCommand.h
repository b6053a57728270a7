#pragma once

#include <iosfwd>

#include "Filter.h"
#include "Session.h"

namespace calljournal {

/// Shows the wanted entries on `out`, newest first, in the format of `globals`.
void listEntries(const Filter& filter, Session& session, const GlobalOptions& globals, std::ostream& out);

/// Declares `list`.
void addListCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
