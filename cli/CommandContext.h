#pragma once

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "ExitCode.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace calljournal {

/// How data is shown: as people read it, or as programs do. `automatic` is a table on a terminal and JSON elsewhere.
enum class OutputFormat { automatic, table, json, xml, vCard };

/// What every command takes.
struct GlobalOptions {
    std::string store;          ///< URL or path; empty for the default store.
    std::string storeVariable;  ///< The environment variable that `store` is from; empty if it is from none.
    int log = 0;                ///< Log lines up to this level go to standard error.
    OutputFormat format = OutputFormat::automatic;
    std::string region;  ///< ISO 3166-1 code, of --region alone; empty without it.
    bool showXml = false;
};

/// Stands for the user's files where completion offers something.
inline constexpr char fileOffer[] = "<file>";

/// One call of the program: its streams, the options of every command, and what is to be done.
///
/// Each command has a function `void addNameCommand(CLI::App& app, CommandContext& context)` that declares its name and
/// options as a subcommand of `app`. Where the command line names the command, its declaration sets `action`, which is
/// called once the whole command line is read. `context` must outlive `app`.
struct CommandContext {
    std::istream& in;
    std::ostream& out;    ///< Data.
    std::ostream& err;    ///< Diagnostics.
    std::ostream& trace;  ///< Requests to the store and their replies.
    GlobalOptions globals;
    std::function<ExitCode()> action;
    /// What completion offers for the value of an option: words, or fileOffer alone; nothing for a text.
    std::map<const CLI::Option*, std::vector<std::string>> offers;
};

}  // namespace calljournal
