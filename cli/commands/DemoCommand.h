#pragma once

#include "CommandContext.h"

namespace calljournal {

/// Declares `demo`: a tour on a temporary store that prints each command as a user would type it, and what it does. It
/// needs nothing but the example files, which are looked for beside the installed program and in the source tree. It
/// ends with the exit status of the first command that failed, and throws std::runtime_error if there are no examples.
void addDemoCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
