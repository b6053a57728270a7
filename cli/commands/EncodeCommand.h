#pragma once

#include <iosfwd>
#include <string>

#include "CommandContext.h"

namespace calljournal {

/// Turns the JSON of one entry of that kind, read from `in`, into its XML item body. Throws ValueError.
void encodeEntry(const std::string& kind, std::istream& in, std::ostream& out);

/// Declares `encode`.
void addEncodeCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
