#include "Page.h"

#include <fstream>
#include <regex>

namespace calljournal {

namespace {

/// The cells of a line such as "| a | b |".
Row cellsOf(const std::string& line) {
    Row cells;
    for (std::size_t at = 2; at < line.size();) {
        const std::size_t end = line.find(" |", at);
        cells.push_back(line.substr(at, end - at));
        at = end + 3;
    }
    return cells;
}

}  // namespace

std::map<std::string, Section> readPage(const std::string& path) {
    std::map<std::string, Section> sections;
    Section* section = &sections[""];
    std::ifstream file(path);
    std::string before;
    bool isInCode = false;
    for (std::string line; std::getline(file, line); before = line) {
        std::smatch title;
        if (line.compare(0, 3, "```") == 0) {
            isInCode = !isInCode;
            if (isInCode) {
                section->examples.emplace_back();
            }
        } else if (isInCode) {
            section->examples.back() += line.substr(line.find_first_not_of(' '));
        } else if (std::regex_match(line, title, std::regex("#+ (.*)|\\*\\*(.*)\\*\\*"))) {
            section = &sections[title[1].str() + title[2].str()];
        } else if (line.compare(0, 5, "| ---") == 0) {
            section->tables.emplace_back();
        } else if (line.compare(0, 2, "| ") == 0 && before.compare(0, 1, "|") == 0) {
            section->tables.back().push_back(cellsOf(line));
        }
        section->text += line + '\n';
    }
    return sections;
}

}  // namespace calljournal
