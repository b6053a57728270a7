#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace calljournal {

/// A table of texts with aligned columns, for people. Columns that are empty in every row are left out.
class TextTable {
public:
    struct Column {
        std::string title;
        bool isShrinkable;  ///< May be cut when the table is wider than the terminal.
        bool isRightAligned;
    };

    explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row with one text for each column; the texts are made printable.
    void add(const std::vector<std::string>& cells);

    /// Writes title line and rows, cut to `width` columns where shrinkable columns allow it; 0 means no limit.
    void print(std::ostream& out, std::size_t width) const;

private:
    std::vector<std::size_t> columnWidths(std::size_t width) const;
    void printRow(std::ostream& out, const std::vector<std::string>& cells,
                  const std::vector<std::size_t>& widths) const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace calljournal
