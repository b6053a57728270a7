#pragma once

#include "CommandContext.h"

namespace calljournal {

/// Declares `settings`.
void addSettingsCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
