#ifndef CALLJOURNAL_VIEWEDCOMMAND_H
#define CALLJOURNAL_VIEWEDCOMMAND_H

#include "CommandContext.h"

namespace calljournal {

/// Declares `viewed`.
void addViewedCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal

#endif
