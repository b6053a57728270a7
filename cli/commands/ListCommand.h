#pragma once

#include "CommandContext.h"

namespace calljournal {

/// Declares `list`.
void addListCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
