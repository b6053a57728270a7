#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include "CommandContext.h"
#include "Session.h"

namespace calljournal {

/// Changes the entry of that id and says on `out` what it did.
using EntryChange = std::function<void(Journal& journal, const std::string& uniqueId, std::ostream& out)>;

/// Makes `command` one that does `change` to the entry whose id the user gives, with the options of such commands.
void addEntryChange(CLI::App& command, CommandContext& context, EntryChange change);

}  // namespace calljournal
