#include "DecodeCommand.h"

#include <istream>
#include <memory>
#include <optional>
#include <ostream>

#include "ErrorMessage.h"
#include "Files.h"
#include "FindingView.h"
#include "Input.h"
#include "ItemJson.h"
#include "Kinds.h"
#include "TextPosition.h"
#include "WellFormed.h"
#include "WordOption.h"

namespace calljournal {

ExitCode decodeEntry(const std::string& kind, std::istream& in, std::ostream& out, std::ostream& err) {
    std::string body = readInput("-", in, readAll);
    if (!body.empty() && body.back() == '\n') {
        body.pop_back();
    }
    withCallLog(kind, [&](auto type) {
        using Item = typename decltype(type)::Item;
        Item item;
        KindInterface<Item>::decode(body.c_str(), item);
        out << jsonText(toJson(item), true) << '\n';
    });
    const std::optional<Finding> defect = findDefect(body);
    if (defect) {
        printError(err, inputName("-") + ": " + TextPosition(body).of(defect->place.at) + ": " +
                            sentenceOf(*defect, &showValue));
        return exitRefused;
    }
    return exitDone;
}

void addDecodeCommand(CLI::App& app, CommandContext& context) {
    CLI::App* decode = app.add_subcommand("decode", "Turn an XML body into JSON");
    auto kind = std::make_shared<std::string>();
    addWord(*decode, context, "kind", *kind, callLogNames(), true);
    decode->callback([&context, kind] {
        context.action = [&context, kind] { return decodeEntry(*kind, context.in, context.out, context.err); };
    });
}

}  // namespace calljournal
