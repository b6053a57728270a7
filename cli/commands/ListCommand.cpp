#include "ListCommand.h"

#include <algorithm>
#include <cwctype>
#include <memory>
#include <ostream>
#include <tuple>

#include "CallBackJson.h"
#include "EntryView.h"
#include "FollowCommand.h"
#include "ItemJson.h"
#include "Kinds.h"
#include "RecordCommand.h"
#include "Session.h"
#include "Terminal.h"
#include "Text.h"
#include "TextTable.h"
#include "Time.h"
#include "WordOption.h"

namespace calljournal {

namespace {

bool isInTime(const std::string& time, const ListOptions& options) {
    return time >= options.since && (options.until.empty() || time <= options.until);
}

bool isNamed(const CallItem& item, const std::string& name) {
    return lowerCase(fullName(item.getFirstname(), item.getSurname())).find(lowerCase(name)) != std::string::npos;
}

template <class Item>
bool isWanted(const Item& item, const ListOptions& options, const NumberMatcher& numberKey) {
    const auto& calls = (item.*format::CallKind<Item>::calls)();
    if (!isInTime(calls.empty() ? std::string() : calls.front().timeDate, options)) {
        return false;
    }
    if (!options.number.empty() && std::none_of(calls.begin(), calls.end(), [&](const auto& call) {
            return !call.number.empty() && numberKey(call.number) == numberKey(options.number);
        })) {
        return false;
    }
    return isNamed(item, options.name);
}

bool isWanted(const StoredCallBack& stored, const ListOptions& options, const NumberMatcher& numberKey) {
    const CallBackItem& item = stored.item;
    return isInTime(item.getTimeDate(), options) &&
           (options.number.empty() || numberKey(item.getNumber()) == numberKey(options.number)) &&
           isNamed(item, options.name);
}

/// What is shown of one entry: its line of a table, and its text in any other format.
struct Shown {
    EntryView view;
    std::string text;
};

template <class Item>
std::string xmlOf(const Item& entry) {
    return KindInterface<Item>::encode(entry);
}

std::string xmlOf(const StoredCallBack& stored) {
    return CallListDatabaseAdapterHelper::createXMLField(CallListDatabaseAdapterHelper::UNIQUEID, stored.uniqueId) +
           encodeCallBack(stored.item);
}

template <class Entry>
Shown shownEntry(const Entry& entry, const GlobalOptions& globals) {
    Shown shown{viewOf(entry), std::string()};
    if (globals.format == OutputFormat::json) {
        Json json = toJson(entry);
        json["Kind"] = shown.view.kind;
        shown.text = jsonText(json, false);
    } else if (globals.format == OutputFormat::xml) {
        shown.text = CallListDatabaseAdapterHelper::createXMLField(CallListDatabaseAdapterHelper::ENTRY, xmlOf(entry));
    }
    return shown;
}

/// Adds the wanted ones of `entries`, which are in the order of the list.
template <class Entries>
void addShown(const Entries& entries, const ListOptions& options, const NumberMatcher& numberKey,
              const GlobalOptions& globals, std::vector<Shown>& shown) {
    std::size_t count = 0;
    for (const auto& entry : entries) {
        if (options.limit > 0 && count == options.limit) {
            break;
        }
        if (isWanted(entry, options, numberKey)) {
            shown.push_back(shownEntry(entry, globals));
            ++count;
        }
    }
}

void printTable(const std::vector<Shown>& shown, bool isMixed, std::ostream& out) {
    TextTable table({{"", false, false},
                     {"Id", false, true},
                     {"Kind", false, false},
                     {"Time", false, false},
                     {"Name", true, false},
                     {"Number", true, false},
                     {"Calls", false, true},
                     {"Duration", false, true},
                     {"Note", true, false}});
    for (const Shown& entry : shown) {
        const EntryView& view = entry.view;
        table.add({view.isUnviewed ? "●" : "", view.uniqueId, isMixed ? view.kind : std::string(), view.time, view.name,
                   view.number, std::to_string(view.calls), view.duration, view.note});
    }
    table.print(out, terminalWidth());
}

}  // namespace

void checkFilters(ListOptions& options) {
    const auto complete = [](std::string& time, const char* rest) {
        if (!time.empty()) {
            time += time.size() == 10 ? rest : "";
            checkTime(time);
        }
    };
    complete(options.since, " 00:00:00");
    complete(options.until, " 23:59:59");
}

void listEntries(const ListOptions& options, Session& session, const GlobalOptions& globals, std::ostream& out) {
    std::vector<Shown> shown;
    const bool isMixed = options.kind == "all";
    forEachKind([&](auto type) {
        using Item = typename decltype(type)::Item;
        if (isMixed || options.kind == KindInterface<Item>::name) {
            addShown(session.journal().template entries<Item>(), options, session.numberKey(), globals, shown);
        }
    });
    if (isMixed || options.kind == callBackKind) {
        addShown(session.journal().callBacks(), options, session.numberKey(), globals, shown);
    }
    if (isMixed) {
        std::stable_sort(shown.begin(), shown.end(),
                         [](const Shown& first, const Shown& second) { return first.view.time > second.view.time; });
        if (options.limit > 0 && shown.size() > options.limit) {
            shown.resize(options.limit);
        }
    }

    if (globals.format == OutputFormat::table) {
        if (shown.empty()) {
            out << (isMixed ? "no calls\n" : "no " + options.kind + " calls\n");
        } else {
            printTable(shown, isMixed, out);
        }
        return;
    }
    for (const Shown& entry : shown) {
        out << entry.text << '\n';
    }
}

void addListCommand(CLI::App& app, CommandContext& context) {
    CLI::App* list = app.add_subcommand("list", "Show entries, newest first");
    auto options = std::make_shared<ListOptions>();
    std::vector<std::string> kinds = recordableKinds();
    kinds.emplace_back("all");
    addKind(*list, context, options->kind, kinds, true);
    list->add_option("--since", options->since, "newest call not before this time");
    list->add_option("--until", options->until, "newest call not after this time");
    list->add_option("--number", options->number, "a call of this number");
    list->add_option("--name", options->name, "a part of the name");
    list->add_option("--limit", options->limit, "at most so many entries");
    list->add_flag("--follow", options->follow, "go on showing changes and their notifications until interrupted");
    list->callback([&context, options] {
        checkFilters(*options);
        context.action = [&context, options] {
            Session session(context.globals, context.err);
            if (context.globals.format == OutputFormat::automatic) {
                context.globals.format = isTerminal() ? OutputFormat::table : OutputFormat::json;
            }
            if (options->follow) {
                followEntries(*options, session, context.globals, context.out);
            } else {
                listEntries(*options, session, context.globals, context.out);
            }
            return exitDone;
        };
    });
}

}  // namespace calljournal
