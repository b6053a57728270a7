#include "CommandLine.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <string>
#include <string_view>

#include "CommandContext.h"
#include "Commands.h"
#include "Completion.h"
#include "ErrorMessage.h"
#include "HostPlatform.h"
#include "Region.h"
#include "ValueError.h"
#include "WordOption.h"

namespace calljournal {

namespace {

/// An option that an environment variable stands in for.
struct Variable {
    std::string_view option;
    const char* name;
};

constexpr Variable storeVariable = {"--store", "CALLJOURNAL_STORE"};
constexpr Variable logVariable = {"--log", "CALLJOURNAL_LOG"};

/// Whether the option has its value from the variable.
bool isUsed(const Variable& variable, int argc, const char* const* argv) {
    const char* const value = std::getenv(variable.name);
    const auto isOption = [&](std::string_view argument) {
        return argument.substr(0, argument.find('=')) == variable.option;
    };
    return value != nullptr && *value != '\0' && std::none_of(argv, argv + argc, isOption);
}

/// Reads the command line. What is wrong with the value of a variable is not said of the option.
void parse(CLI::App& app, int argc, const char* const* argv, GlobalOptions& globals) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::ValidationError& error) {
        const std::string_view sentence = error.what();
        const std::size_t nameEnd = logVariable.option.size();
        if (sentence.substr(0, nameEnd) != logVariable.option || !isUsed(logVariable, argc, argv)) {
            throw;
        }
        throw CLI::ValidationError(logVariable.name + std::string(sentence.substr(nameEnd)),
                                   CLI::ExitCodes::ValidationError);
    }
    globals.storeVariable = isUsed(storeVariable, argc, argv) ? storeVariable.name : "";
}

void addGlobals(CLI::App& app, CommandContext& context) {
    GlobalOptions& globals = context.globals;
    CLI::Option* store = app.add_option("--store", globals.store, "the store, sqlite3://PATH or a path");
    store
        ->check(
            CLI::Validator([](std::string& url) { return std::string(url.empty() ? "it names no store" : ""); }, ""))
        ->envname(storeVariable.name);
    context.offers[store] = {fileOffer};
    CLI::Option* log =
        app.add_option("--log", globals.log, "write log lines up to this level, 0 to 9, to standard error");
    log->check(CLI::Range(0, 9))->envname(logVariable.name);
    context.offers[log] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
    addWordOption(app, context, "--format", globals.format,
                  {{"table", OutputFormat::table}, {"json", OutputFormat::json}, {"xml", OutputFormat::xml}},
                  "table, json or xml; lists go to a terminal as a table, elsewhere as json");
    app.add_option("--region", globals.region,
                   "the phone's region, such as DE; by default that of CALLJOURNAL_REGION or of the locale")
        ->check(regionProblem);
    app.add_flag("--show-xml", globals.showXml, "show each request to the store and its reply on standard error");
}

}  // namespace

ExitCode runCommand(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err,
                    std::ostream& trace) {
    CommandContext context{in, out, err, trace, {}, {}, {}};
    CLI::App app("Call journal and contacts import of a desk phone, on a PC", "calljournal");
    app.set_version_flag("--version", "calljournal " CALLJOURNAL_VERSION);
    app.require_subcommand(1);
    app.fallthrough();
    addGlobals(app, context);
    for (const auto addCommand : addCommands) {
        addCommand(app, context);
    }
    if (argc > 1 && std::string_view(argv[1]) == "--complete") {
        printOffers(app, context, {argv + 2, argv + argc}, out);
        return exitDone;
    }

    try {
        parse(app, argc, argv, context.globals);
        setLogLevel(context.globals.log);
        return context.action();
    } catch (const CLI::ParseError& error) {
        return app.exit(error, out, err) == 0 ? exitDone : exitWrongUsage;
    } catch (const ValueError& error) {
        printError(err, error.what());
        return exitWrongUsage;
    }
}

}  // namespace calljournal
