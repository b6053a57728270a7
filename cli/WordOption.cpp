#include "WordOption.h"

#include <algorithm>

#include "Wording.h"

namespace calljournal {

void addKind(CLI::App& app, CommandContext& context, std::string& kind, const std::vector<std::string>& words,
             bool isRequired) {
    CLI::Option* option = app.add_option("kind", kind, joined(words));
    option->check([words](const std::string& word) {
        const bool isKnown = std::find(words.begin(), words.end(), word) != words.end();
        return isKnown ? std::string() : "\"" + word + "\" is not one of " + joined(words);
    });
    option->required(isRequired);
    context.offers[option] = words;
}

}  // namespace calljournal
