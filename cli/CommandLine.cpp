#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <ostream>
#include <set>
#include <string>

#include "CheckCommand.h"
#include "CommandContext.h"
#include "ConvertCommand.h"
#include "DecodeCommand.h"
#include "DeleteCommand.h"
#include "DemoCommand.h"
#include "EncodeCommand.h"
#include "HostPlatform.h"
#include "ImportCommand.h"
#include "ListCommand.h"
#include "NumberMatcher.h"
#include "RecordCommand.h"
#include "ValueError.h"
#include "ViewedCommand.h"

namespace calljournal {

namespace {

/// Every command, in the order of the help.
constexpr void (*commands[])(CLI::App&, CommandContext&) = {
    addRecordCommand, addListCommand,  addViewedCommand, addDeleteCommand,  addEncodeCommand,
    addDecodeCommand, addCheckCommand, addImportCommand, addConvertCommand, addDemoCommand,
};

void addGlobals(CLI::App& app, GlobalOptions& globals) {
    app.add_option("--store", globals.store, "the store, sqlite3://PATH or a path")->envname("CALLJOURNAL_STORE");
    app.add_option("--log", globals.log, "write log lines up to this level, 0 to 9, to standard error")
        ->check(CLI::Range(0, 9))
        ->envname("CALLJOURNAL_LOG");
    app.add_option("--format", globals.format,
                   "table, json or xml; lists go to a terminal as a table, elsewhere as json")
        ->check(CLI::IsMember(std::set<std::string>{"table", "json", "xml"}));
    app.add_option("--region", globals.region, "the phone's region, such as DE; by default that of the locale")
        ->envname("CALLJOURNAL_REGION")
        ->check([](const std::string& region) {
            return isKnownRegion(region) ? std::string() : "\"" + region + "\" is no region such as DE or GB";
        });
    app.add_flag("--show-xml", globals.showXml, "show each request to the store and its reply on standard error");
}

}  // namespace

ExitCode runCommand(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
    CommandContext context{in, out, err, {}, {}};
    CLI::App app("Call journal and contacts import of a desk phone, on a PC", "calljournal");
    app.set_version_flag("--version", "calljournal " CALLJOURNAL_VERSION);
    app.require_subcommand(1);
    app.fallthrough();
    addGlobals(app, context.globals);
    for (const auto addCommand : commands) {
        addCommand(app, context);
    }

    try {
        app.parse(argc, argv);
        setLogLevel(context.globals.log);
        return context.action();
    } catch (const CLI::ParseError& error) {
        return app.exit(error, out, err) == 0 ? exitDone : exitWrongUsage;
    } catch (const ValueError& error) {
        err << "calljournal: " << error.what() << '\n';
        return exitWrongUsage;
    }
}

}  // namespace calljournal
