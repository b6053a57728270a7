#include "ManText.h"

#include <algorithm>
#include <sstream>
#include <string_view>
#include <vector>

namespace calljournal {

namespace {

using Row = std::vector<std::string>;

/// What is left of a line of 78 characters behind the indent of a page's text.
constexpr std::size_t tableWidth = 72;
constexpr std::size_t columnGap = 2;
constexpr std::size_t sourceWidth = 78;

/// Characters as they are, which a formatter would make typography or commands of.
std::string literal(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            case '\'':
                result += "\\(aq";
                break;
            case '.':
                result += "\\&.";
                break;
            default:
                result += c;
        }
    }
    return result;
}

/// A paragraph or cell: what stands between backquotes is literal and bold.
std::string inlineText(std::string_view text) {
    std::string result;
    bool isCode = false;
    while (true) {
        const std::size_t end = std::min(text.find('`'), text.size());
        result += isCode ? literal(text.substr(0, end)) : std::string(text.substr(0, end));
        if (end == text.size()) {
            return result;
        }
        isCode = !isCode;
        result += isCode ? "\\fB" : "\\fP";
        text.remove_prefix(end + 1);
    }
}

std::string filled(const std::string& text) {
    std::istringstream words(text);
    std::string result;
    std::size_t column = 0;
    for (std::string word; words >> word; column += word.size()) {
        if (column > 0) {
            const bool isFull = column + 1 + word.size() > sourceWidth;
            result += isFull ? '\n' : ' ';
            column = isFull ? 0 : column + 1;
        }
        result += word;
    }
    return result + '\n';
}

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

std::size_t shownWidth(const std::string& text) {
    return text.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), '`'));
}

std::size_t longestWord(const std::string& text) {
    std::istringstream words(text);
    std::size_t longest = 0;
    for (std::string word; words >> word;) {
        longest = std::max(longest, shownWidth(word));
    }
    return longest;
}

/// The widths of the columns: those of the longest cells, or less for the widest columns until the table fits.
std::vector<std::size_t> columnWidths(const std::vector<Row>& rows) {
    const std::size_t columns = rows.front().size();
    std::vector<std::size_t> widths(columns, 0);
    std::vector<std::size_t> least(columns, 0);
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < columns; ++i) {
            widths[i] = std::max(widths[i], shownWidth(row[i]));
            least[i] = std::max(least[i], longestWord(row[i]));
        }
    }
    std::size_t total = columnGap * (columns - 1);
    for (const std::size_t width : widths) {
        total += width;
    }
    for (; total > tableWidth; --total) {
        std::size_t widest = columns;
        for (std::size_t i = 0; i < columns; ++i) {
            if (widths[i] > least[i] && (widest == columns || widths[i] > widths[widest])) {
                widest = i;
            }
        }
        if (widest == columns) {
            break;
        }
        --widths[widest];
    }
    return widths;
}

std::string tableText(const std::vector<Row>& rows) {
    const std::vector<std::size_t> widths = columnWidths(rows);
    const auto format = [&](const char* letter, const char* end) {
        std::string text;
        for (std::size_t i = 0; i < widths.size(); ++i) {
            text += (i == 0 ? "" : " ") + std::string(letter) + "w(" + std::to_string(widths[i]) + "n)" +
                    (i + 1 < widths.size() ? std::to_string(columnGap) : "");
        }
        return text + end;
    };
    std::string text = ".TS\n" + format("lb", "\n") + format("l", ".\n");
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string cell = inlineText(row[i]);
            text += (i == 0 ? "" : "\t") + (shownWidth(row[i]) > widths[i] ? "T{\n" + cell + "\nT}" : cell);
        }
        text += '\n';
    }
    return text + ".TE\n";
}

bool isTitle(const std::string& line) {
    return line.size() > 4 && line.compare(0, 2, "**") == 0 && line.compare(line.size() - 2, 2, "**") == 0;
}

}  // namespace

std::string manText(const std::string& markdown) {
    std::istringstream lines(markdown);
    std::string text;
    std::string line;
    const auto paragraph = [&] { return text.empty() ? "" : ".Pp\n"; };
    while (std::getline(lines, line)) {
        if (line.empty()) {
            continue;
        }
        if (line.compare(0, 3, "```") == 0) {
            text += ".Bd -literal -offset indent\n";
            while (std::getline(lines, line) && line != "```") {
                text += literal(line) + '\n';
            }
            text += ".Ed\n";
        } else if (line.front() == '|') {
            std::vector<Row> rows = {cellsOf(line)};
            std::getline(lines, line);  // the line below the head
            while (std::getline(lines, line) && !line.empty()) {
                rows.push_back(cellsOf(line));
            }
            text += paragraph() + tableText(rows);
        } else if (isTitle(line)) {
            text += paragraph() + (".Sy " + line.substr(2, line.size() - 4)) + '\n';
        } else {
            text += paragraph() + filled(inlineText(line));
        }
    }
    return text;
}

}  // namespace calljournal
