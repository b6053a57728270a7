#include "ListCommand.h"

#include <memory>
#include <ostream>

#include "ChangeView.h"
#include "EntryView.h"
#include "Filter.h"
#include "ItemJson.h"
#include "Kinds.h"
#include "Session.h"
#include "Terminal.h"
#include "TextTable.h"
#include "WordOption.h"

namespace calljournal {

namespace {

constexpr char allKinds[] = "all";

struct ListOptions {
    std::string kind;
    Filter filter;
    bool follow = false;
};

/// The largest --limit; no journal has more.
constexpr int mostEntries = 1000000000;

/// The columns of a table are as wide as so many entries need.
constexpr std::size_t measuredEntries = 1000;

std::vector<std::string> rowOf(const AnyEntry& entry, bool isMixed) {
    const EntryView view = std::visit([](const auto& item) { return viewOf(item); }, entry);
    std::vector<std::string> row = {view.isUnviewed ? "●" : "", view.uniqueId, view.time, view.name, view.number,
                                    std::to_string(view.calls), view.duration, view.note};
    if (isMixed) {
        row.insert(row.begin() + 2, view.kind);
    }
    return row;
}

void printTable(Journal& journal, const Filter& filter, std::ostream& out) {
    const bool isMixed = filter.kinds.empty();
    std::vector<TextTable::Column> columns = {
        {"", false, false},      {"Id", false, true},    {"Time", false, false},    {"Name", true, false},
        {"Number", true, false}, {"Calls", false, true}, {"Duration", false, true}, {"Note", true, false}};
    if (isMixed) {
        columns.insert(columns.begin() + 2, {"Kind", false, false});
    }
    TextTable table(std::move(columns));
    bool isEmpty = true;
    forEachWanted(journal, filter, [&](const AnyEntry& entry) {
        if (table.rowCount() == measuredEntries) {
            table.print(out, terminalWidth(), TextTable::Rest::follows);
        }
        table.add(rowOf(entry, isMixed));
        isEmpty = false;
        return true;
    });
    if (isEmpty) {
        out << "no " << (isMixed ? "" : filter.kinds.front() + ' ') << "calls\n";
    } else {
        table.print(out, terminalWidth());
    }
}

/// Returns the entry as one line of JSON or XML.
template <class Item>
std::string lineOf(const Item& entry, OutputFormat format) {
    using Helper = CallListDatabaseAdapterHelper;
    return format == OutputFormat::json ? jsonText(toJsonWithKind(entry), false)
                                        : Helper::createXMLField(Helper::ENTRY, KindInterface<Item>::encode(entry));
}

/// Shows the wanted entries on `out`, newest first, in the format of `globals`.
void listEntries(const Filter& filter, Session& session, const GlobalOptions& globals, std::ostream& out) {
    if (globals.format == OutputFormat::table) {
        printTable(session.journal(), filter, out);
        return;
    }
    forEachWanted(session.journal(), filter, [&](const AnyEntry& entry) {
        out << std::visit([&](const auto& item) { return lineOf(item, globals.format); }, entry) << '\n';
        return true;
    });
}

}  // namespace

void addListCommand(CLI::App& app, CommandContext& context) {
    CLI::App* list = app.add_subcommand("list", "Show entries, newest first");
    auto options = std::make_shared<ListOptions>();
    std::vector<std::string> kinds = kindNames();
    kinds.emplace_back(allKinds);
    addWord(*list, context, "kind", options->kind, kinds, true);
    list->add_option("--since", options->filter.since, "newest call not before this time");
    list->add_option("--until", options->filter.until, "newest call not after this time");
    list->add_option("--number", options->filter.number, "a call of this number");
    list->add_option("--name", options->filter.name, "a part of the name");
    list->add_option("--limit", options->filter.limit, "at most so many entries; 0 for all")
        ->check(CLI::Range(0, mostEntries));
    list->add_flag("--follow", options->follow, "go on showing changes and their notifications until interrupted");
    list->callback([&context, options] {
        options->filter.completeTimes();
        if (options->kind != allKinds) {
            options->filter.kinds = {options->kind};
        }
        context.action = [&context, options] {
            Session session(context.globals, MissingStore::isRefused, context.trace);
            if (context.globals.format == OutputFormat::automatic) {
                context.globals.format = isTerminal() ? OutputFormat::table : OutputFormat::json;
            }
            const auto show = [&] { listEntries(options->filter, session, context.globals, context.out); };
            if (options->follow) {
                followEntries(options->filter, session, show, context);
            } else {
                show();
            }
            return exitDone;
        };
    });
}

}  // namespace calljournal
