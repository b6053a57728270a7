#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <set>

#include "CallBackJson.h"
#include "CheckCommand.h"
#include "CodecCommand.h"
#include "ConvertCommand.h"
#include "DemoCommand.h"
#include "EntryView.h"
#include "ExitCode.h"
#include "FollowCommand.h"
#include "HostPlatform.h"
#include "ImportCommand.h"
#include "Kinds.h"
#include "ListCommand.h"
#include "NumberMatcher.h"
#include "RecordCommand.h"
#include "Terminal.h"
#include "Wording.h"

namespace calljournal {

namespace {

/// Streams and options of one call of the command, and what is to be done.
struct Command {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    GlobalOptions globals;
    std::function<int()> action;
};

/// "ConnectedNumberType" as people type it: "connected-number-type".
std::string optionName(std::string_view element) {
    std::string name;
    for (const char c : element) {
        if (c >= 'A' && c <= 'Z') {
            name += name.empty() ? "" : "-";
            name += static_cast<char>(c - 'A' + 'a');
        } else {
            name += c;
        }
    }
    return name;
}

/// A positional argument that is one of `words`.
void addKind(CLI::App& app, std::string& kind, const std::vector<std::string>& words, bool isRequired) {
    CLI::Option* option = app.add_option("kind", kind, joined(words));
    option->check([words](const std::string& word) {
        const bool isKnown = std::find(words.begin(), words.end(), word) != words.end();
        return isKnown ? std::string() : "\"" + word + "\" is not one of " + joined(words);
    });
    option->required(isRequired);
}

/// One option for each element that a call of any kind has, taken from the kinds' own tables.
void addCallOptions(CLI::App& app, Json& call) {
    std::set<std::string_view> known;
    const auto add = [&](std::string_view element, const std::string& help) {
        const std::string name = element == format::text::TIMEDATE ? "time" : optionName(element);
        app.add_option_function<std::string>(
               "--" + name, [&call, element](const std::string& value) { call[std::string(element)] = value; }, help)
            ->group("Call");
    };
    const auto addFlag = [&](std::string_view element) {
        app.add_flag_callback("--" + optionName(element), [&call, element] { call[std::string(element)] = true; })
            ->group("Call");
    };
    forEachKind([&](auto type) {
        using Call = typename format::CallKind<typename decltype(type)::Item>::Call;
        for (const auto& field : format::CallKind<typename decltype(type)::Item>::callFields) {
            if (!known.insert(field.tag).second) {
                continue;
            }
            if (std::holds_alternative<bool Call::*>(field.member)) {
                addFlag(field.tag);
            } else {
                const bool isTime = field.tag == format::text::TIMEDATE;
                add(field.tag,
                    isTime ? "YYYY-MM-DD HH:MM:SS, now if absent"
                           : std::visit([](auto member) { return acceptedValues(Call().*member); }, field.member));
            }
        }
    });
    for (const std::string_view element :
         {format::text::CALLBACKTYPE, format::text::CALLBACKSTATE, format::text::CALLBACKDEVICEID}) {
        add(element, "of a call-back");
    }
    for (const std::string_view element : {format::text::SURNAME, format::text::FIRSTNAME, format::text::PICTURE}) {
        app.add_option_function<std::string>(
               "--" + optionName(element),
               [&call, element](const std::string& value) { call[std::string(element)] = value; }, "a text")
            ->group("Party");
    }
    app.add_flag_callback(
           "--withheld", [&call] { call["Withheld"] = true; }, "the caller withheld the number")
        ->group("Call");
}

std::vector<Json> callsToRecord(const RecordOptions& options, std::istream& in) {
    if (options.from.empty()) {
        if (options.kind.empty()) {
            throw ValueError("say which kind of call: " + joined(recordableKinds()));
        }
        return {checkedCall(options.call, options.kind)};
    }
    if (!options.call.empty()) {
        throw ValueError("--from takes each call from the file; give no call beside it");
    }
    if (options.from == "-") {
        return readCallFile(in, options.kind);
    }
    std::ifstream file(options.from, std::ios::binary);
    if (!file) {
        throw std::runtime_error(options.from + ": cannot be read");
    }
    return readCallFile(file, options.kind);
}

void addRecord(CLI::App& app, Command& command) {
    CLI::App* record = app.add_subcommand("record", "Add a call to its party's entry");
    auto options = std::make_shared<RecordOptions>();
    addKind(*record, options->kind, recordableKinds(), false);
    addCallOptions(*record, options->call);
    record->add_option("--from", options->from, "a file of calls, one JSON object a line; - for standard input");
    record->add_flag("--notify", options->notify, "print the notifications to observers");
    record->callback([&command, options] {
        command.action = [&command, options] {
            const std::vector<Json> calls = callsToRecord(*options, command.in);
            Session session(command.globals, command.err);
            recordCalls(*options, calls, session, command.globals, command.out);
            return exitDone;
        };
    });
}

void addList(CLI::App& app, Command& command) {
    CLI::App* list = app.add_subcommand("list", "Show entries, newest first");
    auto options = std::make_shared<ListOptions>();
    std::vector<std::string> kinds = recordableKinds();
    kinds.emplace_back("all");
    addKind(*list, options->kind, kinds, true);
    list->add_option("--since", options->since, "newest call not before this time");
    list->add_option("--until", options->until, "newest call not after this time");
    list->add_option("--number", options->number, "a call of this number");
    list->add_option("--name", options->name, "a part of the name");
    list->add_option("--limit", options->limit, "at most so many entries");
    list->add_flag("--follow", options->follow, "go on showing changes and their notifications until interrupted");
    list->callback([&command, options] {
        checkFilters(*options);
        command.action = [&command, options] {
            Session session(command.globals, command.err);
            if (command.globals.format.empty()) {
                command.globals.format = isTerminal() ? "table" : "json";
            }
            if (options->follow) {
                followEntries(*options, session, command.globals, command.out);
            } else {
                listEntries(*options, session, command.globals, command.out);
            }
            return exitDone;
        };
    });
}

/// A command that changes one entry and says which.
template <class Change>
void addChange(CLI::App& app, Command& command, const char* name, const char* help, bool needsKind, Change change) {
    struct Options {
        std::string kind = "missed";
        std::string uniqueId;
        bool notify = false;
    };
    CLI::App* sub = app.add_subcommand(name, help);
    auto options = std::make_shared<Options>();
    if (needsKind) {
        addKind(*sub, options->kind, recordableKinds(), true);
    }
    sub->add_option("uniqueid", options->uniqueId, "the entry's id, as list shows it")->required();
    sub->add_flag("--notify", options->notify, "print the notifications to observers");
    sub->callback([&command, options, change] {
        command.action = [&command, options, change] {
            Session session(command.globals, command.err);
            PrintingObserver observer(command.out);
            if (options->notify) {
                session.journal().addObserver(observer);
            }
            change(session.journal(), options->kind, options->uniqueId, command.out);
            return exitDone;
        };
    });
}

void addViewed(CLI::App& app, Command& command) {
    addChange(app, command, "viewed", "Mark a missed entry as seen", false,
              [](Journal& journal, const std::string&, const std::string& id, std::ostream& out) {
                  const MissedCallItem entry = journal.markViewed(id);
                  out << "seen: " << describe(viewOf(entry)) << '\n';
              });
}

void addDelete(CLI::App& app, Command& command) {
    addChange(app, command, "delete", "Delete an entry and its conversation rows", true,
              [](Journal& journal, const std::string& kind, const std::string& id, std::ostream& out) {
                  if (kind == callBackKind) {
                      out << "deleted: " << describe(viewOf(journal.removeCallBack(id))) << '\n';
                  }
                  withKind(kind, [&](auto type) {
                      using Item = typename decltype(type)::Item;
                      const Item entry = journal.template remove<Item>(id);
                      out << "deleted: " << describe(viewOf(entry)) << '\n';
                  });
              });
}

void addCodec(CLI::App& app, Command& command) {
    auto kind = std::make_shared<std::string>();
    CLI::App* encode = app.add_subcommand("encode", "Turn the JSON of an entry into its XML body");
    addKind(*encode, *kind, kindNames(), true);
    encode->callback([&command, kind] {
        command.action = [&command, kind] {
            encodeEntry(*kind, command.in, command.out);
            return exitDone;
        };
    });
    CLI::App* decode = app.add_subcommand("decode", "Turn an XML body into JSON");
    addKind(*decode, *kind, kindNames(), true);
    decode->callback([&command, kind] {
        command.action = [&command, kind] { return decodeEntry(*kind, command.in, command.out, command.err); };
    });
}

void addCheck(CLI::App& app, Command& command) {
    CLI::App* check = app.add_subcommand("check", "Say what is wrong with captured messages or a store");
    auto options = std::make_shared<CheckOptions>();
    check
        ->add_option("files", options->files,
                     "requests, replies, notifications, entries or stores; - for standard input")
        ->required();
    std::vector<std::string> kinds = recordableKinds();
    check->add_option("--kind", options->kind, "the kind of entries that do not tell: " + joined(kinds))
        ->check(CLI::IsMember(std::set<std::string>(kinds.begin(), kinds.end())));
    check->add_flag("--diff", options->isDiff, "compare two files with one entry each, value by value");
    check->callback([&command, options] {
        command.action = [&command, options] {
            return options->isDiff ? diffFiles(*options, command.in, command.out)
                                   : checkFiles(*options, command.in, command.out, command.err);
        };
    });
}

/// The format of the import itself, else the one of the command line, else what suits the output.
std::string importFormat(const std::string& own, const std::string& global) {
    if (!own.empty()) {
        return own;
    }
    if (global == "xml") {
        throw ValueError("an import has no such format: xml; it has table, json and vcard");
    }
    return !global.empty() ? global : isTerminal() ? "table" : "json";
}

void addImport(CLI::App& app, Command& command) {
    CLI::App* importing = app.add_subcommand("import", "Import contacts from CSV files, as the phone would");
    auto options = std::make_shared<ImportOptions>();
    importing->add_option("files", options->files, "exported address books; they stay as they are")->required();
    importing->add_flag("--check", options->check, "tell what an import would do, and what would get lost");
    importing->add_flag("--consume", options->consume, "delete each file afterwards, as the phone does")
        ->excludes("--check");
    importing->add_flag("--convert", options->convert, "convert each file first, whatever program it is from")
        ->excludes("--consume");
    importing->add_flag("--from-latin1", options->fromLatin1, "the files are ISO 8859-1, as old exports are");
    importing->add_option("--hardware", options->hardware, "the phone: standard, nq (1000 contacts) or tq2")
        ->check(CLI::IsMember(std::set<std::string>{"standard", "nq", "tq2"}));
    importing->add_option("--existing", options->existing, "contacts that the phonebook holds already")
        ->check(CLI::Range(0, 1000000));
    importing->add_option("--format", options->format, "table, json or vcard")
        ->check(CLI::IsMember(std::set<std::string>{"table", "json", "vcard"}));
    importing->callback([&command, options] {
        command.action = [&command, options] {
            options->log = command.globals.log;
            options->region = command.globals.region;
            options->format = importFormat(options->format, command.globals.format);
            return importFiles(*options, command.out, command.err);
        };
    });
}

void addConvert(CLI::App& app, Command& command) {
    CLI::App* convert = app.add_subcommand("convert", "Turn any address book into a file that the phone imports");
    auto options = std::make_shared<ConvertOptions>();
    convert->add_option("files", options->files, "CSV or vCard files of any program; they stay as they are")
        ->required();
    convert->add_option("-o,--out", options->out, "the file to write; standard output if absent");
    convert->add_option("--to", options->to, "tamber (the phone's own layout), vcard or json")
        ->check(CLI::IsMember(std::set<std::string>{"tamber", "vcard", "json"}));
    convert->add_option("--numbers", options->numbers, "keep, international or dialable")
        ->check(CLI::IsMember(std::set<std::string>{"keep", "international", "dialable"}));
    convert->add_option("--from-charset", options->fromCharset, "the character set, where it cannot be found out");
    convert->add_option("--columns", options->columns, "a file with more names of columns");
    convert->add_option("--map", options->maps, "what a column means: \"Handy=Mobile1\"; \"Handy=-\" leaves it out")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    convert->add_option("--report", options->report, "tell about every record, as text or json")
        ->check(CLI::IsMember(std::set<std::string>{"text", "json"}));
    convert->add_flag("--dry-run", options->isDryRun, "do everything, prove it, and write nothing");
    convert->add_flag("--merge", options->merge, "make one contact of those that are one person");
    convert->add_flag("--force", options->force, "overwrite files that are there");
    convert->add_flag("--cut", options->cut, "leave out what the phone does not hold, rather than write further files");
    convert->add_option("--limit", options->limit, "contacts that the phone holds: 100, or 1000")
        ->check(CLI::IsMember(std::set<unsigned>{100, 1000}));
    convert->add_option("--existing", options->existing, "contacts that it holds already")->check(CLI::Range(0, 1000));
    convert->callback([&command, options] {
        command.action = [&command, options] {
            options->region = command.globals.region;
            return convertBooks(*options, command.out, command.err);
        };
    });
}

void addDemo(CLI::App& app, Command& command) {
    app.add_subcommand("demo", "Take a tour on a temporary store")->callback([&command] {
        command.action = [&command] {
            const auto run = [&command](const std::vector<std::string>& arguments, std::ostream& out) {
                std::vector<const char*> argv = {"calljournal"};
                for (const std::string& argument : arguments) {
                    argv.push_back(argument.c_str());
                }
                return runCommand(static_cast<int>(argv.size()), argv.data(), command.in, out, out);
            };
            return takeTour(command.globals.showXml, run, command.out);
        };
    });
}

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

int runCommand(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
    Command command{in, out, err, {}, {}};
    CLI::App app("Call journal and contacts import of a desk phone, on a PC", "calljournal");
    app.set_version_flag("--version", "calljournal " CALLJOURNAL_VERSION);
    app.require_subcommand(1);
    app.fallthrough();
    addGlobals(app, command.globals);
    addRecord(app, command);
    addList(app, command);
    addViewed(app, command);
    addDelete(app, command);
    addCodec(app, command);
    addCheck(app, command);
    addImport(app, command);
    addConvert(app, command);
    addDemo(app, command);

    try {
        app.parse(argc, argv);
        setLogLevel(command.globals.log);
        return command.action();
    } catch (const CLI::ParseError& error) {
        return app.exit(error, out, err) == 0 ? exitDone : exitWrongUsage;
    } catch (const ValueError& error) {
        err << "calljournal: " << error.what() << '\n';
        return exitWrongUsage;
    }
}

}  // namespace calljournal
