#include "SettingsCommand.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>

#include "ItemJson.h"
#include "NumberMatcher.h"
#include "PrintableText.h"
#include "Region.h"
#include "Session.h"
#include "TextTable.h"
#include "ValueError.h"
#include "WordOption.h"

namespace calljournal {

namespace {

struct SettingsOptions {
    std::string name;                  ///< Empty for all.
    std::optional<std::string> value;  ///< Nothing to show the one that is.
};

/// Something that a store can be set to.
struct Setting {
    std::string_view name;
    void (*check)(const std::string& value, const GlobalOptions& globals);  ///< Throws ValueError if it makes no sense.
    void (*change)(const std::string& value, Journal& journal, const GlobalOptions& globals, std::ostream& out);
};

Json joinedJson(const JoinedParty& party) {
    Json json = std::visit([](const auto& entry) { return toJsonWithKind(entry); }, party.entry);
    json["JoinedIds"] = party.joinedIds;
    return json;
}

void checkRegion(const std::string& region, const GlobalOptions& globals) {
    if (const std::string problem = regionProblem(region); !problem.empty()) {
        throw ValueError(std::string(regionSetting) + ": " + problem);
    }
    if (!globals.region.empty() && globals.region != region) {
        throw ValueError("--region " + globals.region + ": the value is " + region + "; leave the option out");
    }
}

void changeRegion(const std::string& region, Journal& journal, const GlobalOptions& globals, std::ostream& out) {
    const std::vector<JoinedParty> joined = journal.changeRegion(region);
    if (globals.format == OutputFormat::json) {
        Json json = {{regionSetting, region}, {"Joined", Json::array()}};
        for (const JoinedParty& party : joined) {
            json["Joined"].push_back(joinedJson(party));
        }
        out << jsonText(json, false) << '\n';
    } else {
        out << "numbers in this store are read as those of " << (region == noRegion ? "no region" : region) << '\n';
        printJoined(joined, "", out);
    }
}

constexpr Setting knownSettings[] = {{regionSetting, &checkRegion, &changeRegion}};

std::vector<std::string> settingNames() {
    std::vector<std::string> names;
    for (const Setting& setting : knownSettings) {
        names.emplace_back(setting.name);
    }
    return names;
}

void set(const std::string& name, const std::string& value, const CommandContext& context) {
    const Setting& setting = *std::find_if(std::begin(knownSettings), std::end(knownSettings),
                                           [&](const Setting& known) { return known.name == name; });
    setting.check(value, context.globals);
    Session session(context.globals, MissingStore::isMade, context.trace);
    setting.change(value, session.journal(), context.globals, context.out);
}

/// Shows the value of one setting, or names and values of all if `name` is empty.
void show(const std::string& name, const CommandContext& context) {
    Session session(context.globals, MissingStore::isRefused, context.trace);
    TextTable table({{"Name", false, false}, {"Value", true, false}});
    Json json = Json::object();
    std::string shown;
    for (const Setting& setting : knownSettings) {
        if (name.empty() || name == setting.name) {
            const std::optional<std::string> value = session.journal().store().setting(setting.name);
            json[std::string(setting.name)] = value ? Json(*value) : Json();
            shown = value.value_or("(not set)");
            table.add({std::string(setting.name), shown});
        }
    }
    if (context.globals.format == OutputFormat::json) {
        context.out << jsonText(json, false) << '\n';
    } else if (name.empty()) {
        table.print(context.out, 0);
    } else {
        context.out << printable(shown) << '\n';
    }
}

}  // namespace

void addSettingsCommand(CLI::App& app, CommandContext& context) {
    CLI::App* settings = app.add_subcommand("settings", "Show or change what the store is set to");
    auto options = std::make_shared<SettingsOptions>();
    addWord(*settings, context, "name", options->name, settingNames(), false);
    settings->add_option("value", options->value, "what it is to be, such as DE for region");
    settings->callback([&context, options] {
        context.action = [&context, options] {
            if (options->value) {
                set(options->name, *options->value, context);
            } else {
                show(options->name, context);
            }
            return exitDone;
        };
    });
}

}  // namespace calljournal
