#include "DeleteCommand.h"

#include <memory>
#include <ostream>

#include "EntryChange.h"
#include "EntryView.h"
#include "Kinds.h"
#include "PrintableText.h"
#include "WordOption.h"

namespace calljournal {

void addDeleteCommand(CLI::App& app, CommandContext& context) {
    CLI::App* deleting = app.add_subcommand("delete", "Delete an entry and its conversation rows");
    auto kind = std::make_shared<std::string>();
    addWord(*deleting, context, "kind", *kind, kindNames(), true);
    addEntryChange(*deleting, context, [kind](Journal& journal, const std::string& id, std::ostream& out) {
        withKind(*kind, [&](auto type) {
            using Item = typename decltype(type)::Item;
            const Item entry = journal.template remove<Item>(id);
            out << "deleted: " << printable(describe(viewOf(entry))) << '\n';
        });
    });
}

}  // namespace calljournal
