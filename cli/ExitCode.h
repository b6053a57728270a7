#pragma once

namespace calljournal {

/// How the command ends.
enum ExitCode {
    exitDone = 0,
    exitRefused = 1,    ///< Refused input or a failed operation; the reason is on standard error.
    exitWrongUsage = 2  ///< Arguments that make no sense; nothing was done.
};

}  // namespace calljournal
