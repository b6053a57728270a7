#pragma once

#include "CommandContext.h"

namespace calljournal {

/// Declares `viewed`.
void addViewedCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
