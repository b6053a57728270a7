#ifndef CALLJOURNAL_COMMANDCONTEXT_H
#define CALLJOURNAL_COMMANDCONTEXT_H

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace calljournal {

/// What every command takes.
struct GlobalOptions {
    std::string store;   ///< URL or path; empty for the default store.
    int log = 0;         ///< Log lines up to this level go to standard error.
    std::string format;  ///< "table", "json" or "xml"; empty for what suits the output.
    std::string region;  ///< ISO 3166-1 code; empty for the locale's.
    bool showXml = false;
};

/// One call of the program: its streams, the options of every command, and what is to be done.
///
/// Each command has a function `void addNameCommand(CLI::App& app, CommandContext& context)` that declares its name and
/// options as a subcommand of `app`. Where the command line names the command, its declaration sets `action`, which is
/// called once the whole command line is read. `context` must outlive `app`.
struct CommandContext {
    std::istream& in;
    std::ostream& out;  ///< Data.
    std::ostream& err;  ///< Diagnostics.
    GlobalOptions globals;
    std::function<ExitCode()> action;
};

/// Adds a positional argument that is one of `words`.
void addKind(CLI::App& app, std::string& kind, const std::vector<std::string>& words, bool isRequired);

}  // namespace calljournal

#endif
