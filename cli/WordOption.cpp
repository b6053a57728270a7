#include "WordOption.h"

#include <algorithm>

#include "Wording.h"

namespace calljournal {

void addWord(CLI::App& app, CommandContext& context, const std::string& name, std::string& value,
             const std::vector<std::string>& words, bool isRequired) {
    CLI::Option* option = app.add_option(name, value, joined(words));
    option->check([words](const std::string& word) {
        const bool isKnown = std::find(words.begin(), words.end(), word) != words.end();
        return isKnown ? std::string() : "\"" + word + "\" is not one of " + joined(words);
    });
    option->required(isRequired);
    context.offers[option] = words;
}

}  // namespace calljournal
