#pragma once

#include "CommandContext.h"

namespace calljournal {

/// Declares `check`: says for each file what it is (a request, a reply, a notification, entries, or a store) and what is
/// wrong with it, or, for `--diff`, in which values the entries of two files differ. It ends with exitRefused if it
/// found something or cannot read a file.
void addCheckCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
