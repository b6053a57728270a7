#pragma once

#include <iosfwd>

#include "ExitCode.h"

namespace calljournal {

/// Does what the arguments say and returns the exit status. Data goes to `out`, diagnostics to `err`, requests to the
/// store and their replies, if they are to be shown, to `trace`.
ExitCode runCommand(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err,
                    std::ostream& trace);

}  // namespace calljournal
