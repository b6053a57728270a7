#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace calljournal {

/// A table of texts with aligned columns, for people. Columns that are empty in every row are left out.
///
/// A table of many rows is written piece by piece: the rows of the first one decide how wide the columns are.
class TextTable {
public:
    struct Column {
        std::string title;
        bool isShrinkable;  ///< May be cut when the table is wider than the terminal.
        bool isRightAligned;
    };

    enum class Rest { none, follows };

    explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row with one text for each column; the texts are made printable.
    void add(const std::vector<std::string>& cells);

    /// Returns how many rows were added since the last were written.
    std::size_t rowCount() const { return rows_.size(); }

    /// Writes these rows. The first time, the title line is in front of them, and the columns get the widths that they
    /// need, cut to `width` where shrinkable ones allow it; 0 means no limit. Of a later row, what is too long is cut
    /// where its column is shrinkable. Empty columns are kept if it is not known what follows.
    void print(std::ostream& out, std::size_t width, Rest rest = Rest::none);

private:
    std::vector<std::size_t> columnWidths(std::size_t width, Rest rest) const;
    void printRow(std::ostream& out, const std::vector<std::string>& cells) const;

    std::vector<Column> columns_;
    std::vector<std::size_t> widths_;  ///< Of the columns, 0 for those that are left out; empty before all is measured.
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace calljournal
