#include "TextTable.h"

#include <algorithm>

#include "PrintableText.h"

namespace calljournal {

namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 6;  // what a shrunk column keeps

}  // namespace

void TextTable::add(const std::vector<std::string>& cells) {
    std::vector<std::string>& row = rows_.emplace_back(cells.size());
    std::transform(cells.begin(), cells.end(), row.begin(), printable);
}

std::vector<std::size_t> TextTable::columnWidths(std::size_t width, Rest rest) const {
    std::vector<std::size_t> widths;
    for (const Column& column : columns_) {
        widths.push_back(rest == Rest::none ? 0 : column.isShrinkable ? narrowest : 1);
    }
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < widths.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    std::size_t total = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        if (widths[i] > 0) {
            widths[i] = std::max(widths[i], displayWidth(columns_[i].title));
            total += widths[i] + gap;
        }
    }
    // The widest shrinkable column gives way first, one place at a time.
    while (width > 0 && total > width + gap) {
        std::size_t widest = columns_.size();
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const bool canShrink = columns_[i].isShrinkable && widths[i] > narrowest;
            if (canShrink && (widest == columns_.size() || widths[i] > widths[widest])) {
                widest = i;
            }
        }
        if (widest == columns_.size()) {
            break;
        }
        --widths[widest];
        --total;
    }
    return widths;
}

void TextTable::printRow(std::ostream& out, const std::vector<std::string>& cells) const {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (widths_[i] == 0) {
            continue;
        }
        const std::string cell = columns_[i].isShrinkable ? fitted(cells[i], widths_[i]) : cells[i];
        const std::string padding(widths_[i] - std::min(displayWidth(cell), widths_[i]), ' ');
        line += columns_[i].isRightAligned ? padding + cell : cell + padding;
        line += std::string(gap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

void TextTable::print(std::ostream& out, std::size_t width, Rest rest) {
    if (widths_.empty()) {
        widths_ = columnWidths(width, rest);
        std::vector<std::string> titles;
        for (const Column& column : columns_) {
            titles.push_back(column.title);
        }
        printRow(out, titles);
    }
    for (const auto& row : rows_) {
        printRow(out, row);
    }
    rows_.clear();
}

}  // namespace calljournal
