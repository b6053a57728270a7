#ifndef PROBE_H
#define PROBE_H

#include <string>
#include <vector>

#include "ImportContactsCSVParser.h"

/// An importer whose members a test reads and sets, as a class derived from it could.
class Probe : public ImportContactsCSVParser {
public:
    using ImportContactsCSVParser::ImportContactsCSVParser;

    using ImportContactsCSVParser::columnMap;
    using ImportContactsCSVParser::contacts;
    using ImportContactsCSVParser::csvType;
    using ImportContactsCSVParser::emptyText;
    using ImportContactsCSVParser::file;
    using ImportContactsCSVParser::headerCount;
    using ImportContactsCSVParser::headerPending;
    using ImportContactsCSVParser::line;
    using ImportContactsCSVParser::lineCount;
    using ImportContactsCSVParser::nextLine;
    using ImportContactsCSVParser::separator;
    using ImportContactsCSVParser::tokenizer;
    using ImportContactsCSVParser::tokens;

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

#endif
