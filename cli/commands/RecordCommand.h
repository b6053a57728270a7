#pragma once

#include "CommandContext.h"

namespace calljournal {

/// Declares `record`.
void addRecordCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
