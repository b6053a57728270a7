#include "Completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <ostream>
#include <set>
#include <utility>

namespace calljournal {

namespace {

/// A word and the help on it.
using Offer = std::pair<std::string, std::string>;

/// Where on the command line the cursor is.
struct Place {
    const CLI::App* command;              ///< The subcommand; the whole program in front of it; null if unknown.
    const CLI::Option* option = nullptr;  ///< The option whose value comes next.
    std::size_t arguments = 0;            ///< How many positional arguments the subcommand has got.
};

bool isOption(const std::string& word) {
    return word.compare(0, 1, "-") == 0;
}

const CLI::Option* findOption(const CLI::App& app, const CLI::App& command, const std::string& name) {
    const CLI::Option* own = command.get_option_no_throw(name);
    return own != nullptr ? own : app.get_option_no_throw(name);
}

const CLI::App* findCommand(const CLI::App& app, const std::string& name) {
    const auto found = app.get_subcommands([&](const CLI::App* command) { return command->check_name(name); });
    return found.empty() ? nullptr : found.front();
}

Place placeBehind(const std::vector<std::string>& words, const CLI::App& app) {
    Place place = {&app};
    for (auto word = words.begin(); word != words.end() && place.command != nullptr; ++word) {
        if (place.option != nullptr) {
            place.option = nullptr;
        } else if (isOption(*word)) {
            const CLI::Option* option = findOption(app, *place.command, *word);
            const bool takesValue = option != nullptr && option->get_items_expected_max() > 0;
            place.option = takesValue ? option : nullptr;
        } else if (place.command == &app) {
            place.command = findCommand(app, *word);
        } else {
            ++place.arguments;
        }
    }
    return place;
}

void addOptions(const CLI::App& app, std::vector<Offer>& offers) {
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            offers.emplace_back("--" + name, option->get_description());
        }
    }
}

/// The option whose value comes next, or else the positional argument; null if there is none.
const CLI::Option* expected(const Place& place) {
    const auto all = place.command->get_options([](const CLI::Option* option) { return option->get_positional(); });
    const bool isRepeated = !all.empty() && all.back()->get_items_expected_max() > 1;
    return place.option != nullptr        ? place.option
           : place.arguments < all.size() ? all[place.arguments]
           : isRepeated                   ? all.back()
                                          : nullptr;
}

std::vector<Offer> offersAt(const Place& place, bool isOptionBegun, const CLI::App& app,
                            const CommandContext& context) {
    std::vector<Offer> offers;
    if (place.option == nullptr && isOptionBegun) {
        addOptions(*place.command, offers);
        addOptions(app, offers);
    } else if (place.option == nullptr && place.command == &app) {
        for (const CLI::App* command : app.get_subcommands(nullptr)) {
            offers.emplace_back(command->get_name(), command->get_description());
        }
    } else if (const auto found = context.offers.find(expected(place)); found != context.offers.end()) {
        for (const std::string& word : found->second) {
            offers.emplace_back(word, "");
        }
    }
    return offers;
}

}  // namespace

void printOffers(const CLI::App& app, const CommandContext& context, std::vector<std::string> words,
                 std::ostream& out) {
    const std::string current = words.empty() || words.back() == "=" ? "" : words.back();
    words.resize(words.size() - std::min<std::size_t>(words.size(), 1));
    words.erase(std::remove(words.begin(), words.end(), "="), words.end());
    Place place = placeBehind(words, app);
    if (place.command == nullptr) {
        return;
    }
    const std::size_t value = isOption(current) ? current.find('=') + 1 : 0;
    if (value > 0) {
        place.option = findOption(app, *place.command, current.substr(0, value - 1));
    }
    std::set<std::string> known;
    for (const auto& [word, help] : offersAt(place, isOption(current), app, context)) {
        const std::string whole = current.substr(0, value) + word;
        if (word == fileOffer) {
            out << word << '\n';
        } else if (whole.compare(0, current.size(), current) == 0 && known.insert(word).second) {
            out << whole << (help.empty() ? "" : '\t' + help) << '\n';
        }
    }
}

}  // namespace calljournal
