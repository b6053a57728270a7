#pragma once

#include "CommandContext.h"

namespace calljournal {

/// Declares `import`: imports each file from a private copy, shows its contacts and its outcome. The outcome goes to
/// standard error where the contacts are data for another program, below them otherwise. It ends with exitRefused if any
/// file was refused.
void addImportCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
