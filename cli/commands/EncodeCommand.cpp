#include "EncodeCommand.h"

#include <istream>
#include <memory>
#include <ostream>

#include "Files.h"
#include "Input.h"
#include "ItemJson.h"
#include "Kinds.h"
#include "WordOption.h"

namespace calljournal {

void encodeEntry(const std::string& kind, std::istream& in, std::ostream& out) {
    const Json json = parseJson(readAll(in));
    withCallLog(kind, [&](auto type) {
        using Item = typename decltype(type)::Item;
        out << KindInterface<Item>::encode(itemFromJson<Item>(json)) << '\n';
    });
}

void addEncodeCommand(CLI::App& app, CommandContext& context) {
    CLI::App* encode = app.add_subcommand("encode", "Turn the JSON of an entry into its XML body");
    auto kind = std::make_shared<std::string>();
    addWord(*encode, context, "kind", *kind, callLogNames(), true);
    encode->callback([&context, kind] {
        context.action = [&context, kind] {
            readInput("-", context.in, [&](std::istream& in) { encodeEntry(*kind, in, context.out); });
            return exitDone;
        };
    });
}

}  // namespace calljournal
