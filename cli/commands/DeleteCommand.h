#ifndef CALLJOURNAL_DELETECOMMAND_H
#define CALLJOURNAL_DELETECOMMAND_H

#include "CommandContext.h"

namespace calljournal {

/// Declares `delete`.
void addDeleteCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal

#endif
