#pragma once

#include <map>
#include <string>
#include <vector>

namespace calljournal {

using Row = std::vector<std::string>;

/// What a page of docs/ has below one heading or **title**, up to the next.
struct Section {
    std::string text;                      ///< All lines, each with its line feed.
    std::vector<std::vector<Row>> tables;  ///< The cells of each table without its head, blanks around them left out.
    std::vector<std::string> examples;     ///< The blocks of code in one line each, without indentation.
};

/// The sections of a page of docs/ by their headings.
std::map<std::string, Section> readPage(const std::string& path);

}  // namespace calljournal
