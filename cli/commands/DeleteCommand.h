#pragma once

#include "CommandContext.h"

namespace calljournal {

/// Declares `delete`.
void addDeleteCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
