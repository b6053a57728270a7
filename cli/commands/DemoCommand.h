#ifndef CALLJOURNAL_DEMOCOMMAND_H
#define CALLJOURNAL_DEMOCOMMAND_H

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace calljournal {

/// Runs one command line, without the program's name, with its output on the given stream.
using RunCommandLine = std::function<int(const std::vector<std::string>& arguments, std::ostream& out)>;

/// Takes a tour on a temporary store: prints each command as a user would type it, and what it does. Needs nothing but
/// the example files, which are looked for beside the installed program and in the source tree. Returns the exit status
/// of the first command that failed. Throws std::runtime_error if there are no example files.
int takeTour(bool showXml, const RunCommandLine& run, std::ostream& out);

}  // namespace calljournal

#endif
