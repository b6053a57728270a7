#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "CommandContext.h"

namespace calljournal {

/// Prints what the last of `words`, the command line up to the cursor without the program's name, may become: one word
/// a line, with its help behind a tab where it has one; or the line "<file>" where a file is expected. `app` is the
/// declared command line. "--option=value" may be one word or, as bash splits it, three.
void printOffers(const CLI::App& app, const CommandContext& context, std::vector<std::string> words, std::ostream& out);

}  // namespace calljournal
