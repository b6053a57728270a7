#include "ViewedCommand.h"

#include <CLI/CLI.hpp>
#include <ostream>

#include "EntryChange.h"
#include "EntryView.h"
#include "PrintableText.h"

namespace calljournal {

void addViewedCommand(CLI::App& app, CommandContext& context) {
    CLI::App* viewed = app.add_subcommand("viewed", "Mark a missed entry as seen");
    addEntryChange(*viewed, context, [](Journal& journal, const std::string& id, std::ostream& out) {
        const MissedCallItem entry = journal.markViewed(id);
        out << "seen: " << printable(describe(viewOf(entry))) << '\n';
    });
}

}  // namespace calljournal
