#include "DemoCommand.h"

#include <CLI/CLI.hpp>
#include <boost/algorithm/string/replace.hpp>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "CommandLine.h"
#include "Interruption.h"
#include "TemporaryFolder.h"

namespace calljournal {

namespace {

namespace fs = std::filesystem;

fs::path exampleFolder() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    const fs::path installed = program.parent_path().parent_path() / "share" / "calljournal" / "examples";
    for (const fs::path& folder : {installed, fs::path(CALLJOURNAL_EXAMPLES)}) {
        if (fs::exists(folder / "calls.json", error)) {
            return folder;
        }
    }
    throw std::runtime_error("the example files are missing: neither " + installed.string() + " nor " +
                             CALLJOURNAL_EXAMPLES + " holds calls.json");
}

struct Step {
    std::string says;
    std::vector<std::string> arguments;
    ExitCode status = exitDone;  ///< How it ends; another end ends the tour.
};

std::vector<Step> tour(const std::string& examples) {
    return {
        {"A day's calls come in, from a file of one JSON object each. The first one decides where the phone is.",
         {"record", "--from", examples + "/calls.json", "--region", "DE"}},
        {"The missed calls, one entry a party, newest first. A dot marks entries nobody has seen yet.",
         {"list", "missed", "--limit", "20"}},
        {"One more call from a known party: its entry moves to the front, and observers are told.",
         {"record", "missed", "--number", "+44 20 7946 0123", "--surname", "Smith & Co", "--time",
          "2024-06-01 09:30:00", "--notify"}},
        {"A caller who withheld the number is kept, and is nobody in particular.",
         {"record", "missed", "--withheld", "--time", "2024-06-01 09:45:00"}},
        {"Looking at an entry marks it as seen; observers get the new count.", {"viewed", "1", "--notify"}},
        {"Entries can be deleted, with their conversation rows.", {"delete", "missed", "2", "--notify"}},
        {"What is left, newest first.", {"list", "missed", "--limit", "6"}},
        {"The other kinds of calls have lists and notifications of their own.",
         {"record", "dialled", "--number", "030 7654321", "--surname", "A<B Elektro", "--duration", "00:02:13",
          "--time", "2024-06-01 10:00:00", "--notify"}},
        {"The same party, signalled in another way, is the same entry.",
         {"record", "received", "--number", "+49 221 998877", "--duration", "00:10:00", "--time", "2024-06-01 10:05:00",
          "--notify"}},
        {"A call that was passed on.",
         {"record", "forwarded", "--number", "4711", "--connected-number", "4712", "--connected-surname", "Empfang",
          "--transfer-type", "TRANSFER_DESTINATION_NUMBER", "--time", "2024-06-01 10:10:00", "--notify"}},
        {"Somebody asks to be called back.",
         {"record", "callback", "--number", "+353 1 234 5678", "--surname", "O'Brien", "--call-back-type", "BUSY",
          "--call-back-state", "ACTIVE", "--time", "2024-06-01 10:20:00"}},
        {"The whole journal across kinds.", {"list", "all", "--limit", "12"}},
        {"Contacts from the phone's own manager tool. A star marks the number that is dialled by default.",
         {"import", examples + "/contacts/tamber.csv"}},
        {"What an Outlook export would give, before it is imported.",
         {"import", "--check", examples + "/contacts/outlook-german-latin1.csv"}},
        {"A file that is refused, with the place.",
         {"import", examples + "/contacts/refused-default-dial.csv"},
         exitRefused},
        {"An export of another program, which the phone would refuse, made fit for it first.",
         {"import", "--convert", examples + "/contacts/refused-web-export.csv"}},
    };
}

/// An argument as it is typed into a shell.
std::string quoted(const std::string& argument) {
    const bool isPlain =
        argument.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./+") ==
            std::string::npos &&
        !argument.empty();
    return isPlain ? argument : "'" + boost::algorithm::replace_all_copy(argument, "'", "'\\''") + "'";
}

/// Runs one command line, without the program's name.
ExitCode runLine(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out) {
    std::vector<const char*> argv = {"calljournal"};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    return runCommand(static_cast<int>(argv.size()), argv.data(), in, out, out, out);
}

ExitCode takeTour(const CommandContext& context) {
    std::ostream& out = context.out;
    const std::string examples = exampleFolder().string();
    const Interruption interruption;
    const TemporaryFolder folder;
    // Where the files are is of no interest to the reader.
    for (const Step& step : tour(examples)) {
        out << "\n# " << step.says << "\n$ calljournal";
        for (const std::string& argument : step.arguments) {
            const bool isExample = argument.compare(0, examples.size(), examples) == 0;
            out << ' ' << (isExample ? "examples" + argument.substr(examples.size()) : quoted(argument));
        }
        out << '\n';
        std::vector<std::string> arguments = {"--store", (folder.path() / "journal.db").string(), "--format", "table"};
        if (context.globals.showXml) {
            arguments.emplace_back("--show-xml");
        }
        arguments.insert(arguments.end(), step.arguments.begin(), step.arguments.end());
        std::ostringstream shown;
        const ExitCode status = runLine(arguments, context.in, shown);
        out << boost::algorithm::replace_all_copy(shown.str(), examples, "examples") << std::flush;
        if (status != step.status) {
            return status != exitDone ? status : exitRefused;
        }
    }
    return exitDone;
}

}  // namespace

void addDemoCommand(CLI::App& app, CommandContext& context) {
    app.add_subcommand("demo", "Take a tour on a temporary store")->callback([&context] {
        context.action = [&context] { return takeTour(context); };
    });
}

}  // namespace calljournal
