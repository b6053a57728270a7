#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

#include "CommandContext.h"

namespace calljournal {

/// Adds an option that is one of the words of `table` and sets `value` to what the word means there. Any other word is
/// wrong usage. Help lists the words in the order of the table.
template <class Value>
CLI::Option* addWordOption(CLI::App& app, CommandContext& context, const std::string& name, Value& value,
                           const std::map<std::string, Value>& table, const std::string& help) {
    // The check comes first, since a transform goes in front of those that are there; its words are what help shows.
    CLI::Option* option = app.add_option(name, value, help)
                              ->transform(CLI::Transformer(table).description(""))
                              ->transform(CLI::IsMember(table))
                              ->type_name("TEXT");
    for (const auto& row : table) {
        context.offers[option].push_back(row.first);
    }
    return option;
}

/// Adds a positional argument of that name that is one of `words`.
void addWord(CLI::App& app, CommandContext& context, const std::string& name, std::string& value,
             const std::vector<std::string>& words, bool isRequired);

}  // namespace calljournal
