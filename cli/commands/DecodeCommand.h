#pragma once

#include <iosfwd>
#include <string>

#include "CommandContext.h"

namespace calljournal {

/// Turns an XML item body, read from `in`, into JSON: what the decoder finds, even in damaged text. The first place
/// that is not well-formed is named on `err`, and exitRefused returned.
ExitCode decodeEntry(const std::string& kind, std::istream& in, std::ostream& out, std::ostream& err);

/// Declares `decode`.
void addDecodeCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
