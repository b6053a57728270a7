#include "EntryChange.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <utility>

#include "Region.h"

namespace calljournal {

namespace {

struct ChangeOptions {
    std::string uniqueId;
    bool notify = false;
};

}  // namespace

void addEntryChange(CLI::App& command, CommandContext& context, EntryChange change) {
    auto options = std::make_shared<ChangeOptions>();
    command.add_option("uniqueid", options->uniqueId, "the entry's id, as list shows it")->required();
    command.add_flag("--notify", options->notify, "print the notifications to observers");
    command.callback([&context, options, change = std::move(change)] {
        context.action = [&context, options, change] {
            Session session(context.globals, MissingStore::isRefused, context.trace);
            refuseOtherRegion(session.journal(), context.globals);
            PrintingObserver observer(context.out);
            if (options->notify) {
                session.journal().addObserver(observer);
            }
            change(session.journal(), options->uniqueId, context.out);
            return exitDone;
        };
    });
}

}  // namespace calljournal
