#include "RecordCommand.h"

#include <algorithm>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <istream>
#include <memory>
#include <ostream>
#include <set>
#include <sstream>
#include <tuple>

#include "CallRecord.h"
#include "EntryView.h"
#include "Files.h"
#include "Input.h"
#include "ItemJson.h"
#include "Kinds.h"
#include "PrintableText.h"
#include "Region.h"
#include "Session.h"
#include "Text.h"
#include "WordOption.h"
#include "Wording.h"

namespace calljournal {

namespace {

/// What `record` was asked to do: one call given by options, or a file of calls.
struct RecordOptions {
    std::string kind;
    Json call = Json::object();  ///< Elements by name.
    std::string from;            ///< A file of JSON objects, "-" for standard input; empty for none.
    bool notify = false;
};

/// Says what was written: each entry as JSON if asked for, a sentence on one, or the number of them.
template <class Entry>
void reportWritten(const std::vector<Entry>& written, std::size_t calls, const std::string& kind,
                   const GlobalOptions& globals, std::ostream& out) {
    if (globals.format == OutputFormat::json) {
        for (const Entry& entry : written) {
            out << jsonText(toJson(entry), false) << '\n';
        }
    } else if (calls == 1) {
        out << printable(describe(viewOf(written.front()))) << '\n';
    } else {
        out << calls << ' ' << kind << " calls recorded in " << written.size()
            << (written.size() == 1 ? " entry\n" : " entries\n");
    }
}

template <class Item>
void recordKind(const NewCalls& calls, Session& session, const GlobalOptions& globals, std::ostream& out) {
    const std::vector<NewCall<Item>>& ofKind = callsOfKind<Item>(calls);
    if (!ofKind.empty()) {
        reportWritten(session.journal().record(ofKind), ofKind.size(), KindInterface<Item>::name, globals, out);
    }
}

/// Records all of the calls or, if it throws, none. Prints nothing before they are on disk.
void recordAll(const NewCalls& calls, const RecordOptions& options, const CommandContext& context) {
    std::ostringstream out;
    std::ostringstream err;
    PrintingObserver observer(out);
    Session session(context.globals, MissingStore::isMade, context.trace);
    if (options.notify) {
        session.journal().addObserver(observer);
    }
    refuseOtherRegion(session.journal(), context.globals);
    if (std::apply([](const auto&... ofKind) { return (ofKind.empty() && ...); }, calls)) {
        return;
    }
    session.journal().store().exclusively([&] {
        takeRegionOver(session.journal(), context.globals, err);
        forEachKind(
            [&](auto type) { recordKind<typename decltype(type)::Item>(calls, session, context.globals, out); });
    });
    context.err << err.str();
    context.out << out.str();
}

/// "ConnectedNumberType" as people type it: "connected-number-type".
std::string optionName(std::string_view element) {
    std::string name;
    for (const char c : element) {
        name += lowerCase(c) != c && !name.empty() ? "-" : "";
        name += lowerCase(c);
    }
    return name;
}

/// One option for each element that a call of any kind has, taken from the kinds' own tables. Completion offers the words
/// of those that are enumerations.
void addCallOptions(CLI::App& app, CommandContext& context, Json& call) {
    std::set<std::string_view> known;
    const auto add = [&](std::string_view element, const std::string& help, const char* group) {
        const std::string name = element == format::text::TIMEDATE ? "time" : optionName(element);
        return app
            .add_option_function<std::string>(
                "--" + name, [&call, element](const std::string& value) { call[std::string(element)] = value; }, help)
            ->group(group);
    };
    const auto offer = [&](const CLI::Option* option, auto value) {
        boost::algorithm::split(context.offers[option], acceptedValues(value), boost::algorithm::is_any_of(", "),
                                boost::algorithm::token_compress_on);
    };
    const auto addFlag = [&](std::string_view element) {
        app.add_flag_callback("--" + optionName(element), [&call, element] { call[std::string(element)] = true; })
            ->group("Call");
    };
    forEachCallLog([&](auto type) {
        using Call = typename format::CallKind<typename decltype(type)::Item>::Call;
        for (const auto& field : format::CallKind<typename decltype(type)::Item>::callFields) {
            if (!known.insert(field.tag).second) {
                continue;
            }
            if (std::holds_alternative<bool Call::*>(field.member)) {
                addFlag(field.tag);
            } else {
                const bool isTime = field.tag == format::text::TIMEDATE;
                std::visit(
                    [&](auto member) {
                        const auto value = Call().*member;
                        const CLI::Option* option = add(
                            field.tag, isTime ? "YYYY-MM-DD HH:MM:SS, now if absent" : acceptedValues(value), "Call");
                        if constexpr (std::is_enum_v<std::remove_const_t<decltype(value)>>) {
                            offer(option, value);
                        }
                    },
                    field.member);
            }
        }
    });
    offer(add(format::text::CALLBACKTYPE, "of a call-back", "Call"), CallBackItem::NOTYPE);
    offer(add(format::text::CALLBACKSTATE, "of a call-back", "Call"), CallBackItem::NOSTATE);
    add(format::text::CALLBACKDEVICEID, "of a call-back", "Call");
    for (const std::string_view element : {format::text::SURNAME, format::text::FIRSTNAME, format::text::PICTURE}) {
        add(element, "a text", "Party");
    }
    app.add_flag_callback(
           "--withheld", [&call] { call["Withheld"] = true; }, "the caller withheld the number")
        ->group("Call");
}

NewCalls callsToRecord(const RecordOptions& options, std::istream& in) {
    if (options.from.empty()) {
        if (options.kind.empty()) {
            throw ValueError("say which kind of call: " + joined(kindNames()));
        }
        NewCalls calls;
        addCall(options.call, options.kind, calls);
        return calls;
    }
    if (!options.call.empty()) {
        throw ValueError("--from takes each call from the file; give no call beside it");
    }
    return readInput(options.from, in, [&](std::istream& calls) { return readCalls(readAll(calls), options.kind); });
}

}  // namespace

void addRecordCommand(CLI::App& app, CommandContext& context) {
    CLI::App* record = app.add_subcommand("record", "Add a call to its party's entry");
    auto options = std::make_shared<RecordOptions>();
    addWord(*record, context, "kind", options->kind, kindNames(), false);
    addCallOptions(*record, context, options->call);
    CLI::Option* from =
        record->add_option("--from", options->from, "a file of calls, one JSON object a line; - for standard input");
    context.offers[from] = {fileOffer};
    record->add_flag("--notify", options->notify, "print the notifications to observers");
    record->callback([&context, options] {
        context.action = [&context, options] {
            recordAll(callsToRecord(*options, context.in), *options, context);
            return exitDone;
        };
    });
}

}  // namespace calljournal
