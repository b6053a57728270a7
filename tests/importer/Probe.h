#pragma once

#include <string>
#include <vector>

#include "ImportContactsCSVParser.h"

/// An importer for tests of its steps.
class Probe : public ImportContactsCSVParser {
public:
    using ImportContactsCSVParser::ImportContactsCSVParser;

    /// One whose file does not exist, so that it has done nothing yet.
    Probe() : ImportContactsCSVParser("", 0) {}

    /// Returns the columns of `text`.
    std::vector<std::string> split(const std::string& text) {
        tokenizeLine(text);
        return tokens;
    }

    /// Returns the columns that the tokenizer gives now.
    std::vector<std::string> walkTokenizer() const { return {tokenizer.begin(), tokenizer.end()}; }
};
