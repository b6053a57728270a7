#pragma once

#include <cstddef>
#include <csv.h>
#include <string>
#include <string_view>
#include <vector>

#include "LineReader.h"

namespace calljournal {

/// A row of a CSV file: its cells, or why there are none.
struct CsvRow {
    std::size_t firstLine = 0;
    std::size_t lastLine = 0;
    std::string cells;              ///< All cells, one behind the other.
    std::vector<std::size_t> ends;  ///< Where each cell ends in `cells`.
    std::string fault;              ///< Why the row cannot be split into cells; empty if it can.
    bool hasStrayQuotes = false;    ///< Quotes were out of place; they are part of the cells.

    std::size_t size() const { return ends.size(); }
    std::string_view cell(std::size_t index) const {
        const std::size_t begin = index == 0 ? 0 : ends[index - 1];
        return std::string_view(cells).substr(begin, ends[index] - begin);
    }
};

/// Reads rows by the rules of RFC 4180: cells in quotes hold delimiters and line breaks, and a doubled quote is one
/// quote. Blanks around cells are dropped and empty lines skipped.
///
/// A row whose quotes break the rules ends the damage at its first line: that line is read on its own, with quotes as
/// they are, and the next line starts a new row. So each byte is read at most three times, whatever the file holds.
class CsvRows {
public:
    CsvRows(LineReader lines, char delimiter);
    CsvRows(const CsvRows&) = delete;
    CsvRows& operator=(const CsvRows&) = delete;
    ~CsvRows();

    /// Replaces `row` by the next one, or returns false at the end. A line with stray quotes has to have `columns`
    /// cells to be believed; 0 believes any.
    bool next(CsvRow& row, std::size_t columns);

    std::size_t bytesRead() const { return lines_.bytesRead(); }

private:
    void restartParser(unsigned char options);
    void dropReadLines();
    bool takeLine();
    std::string_view line() const { return std::string_view(window_).substr(lineBegin_, at_ - lineBegin_); }
    bool isCutLine() const { return isCut_ && at_ == window_.size(); }
    bool isBlankLine() const;
    void startRow(CsvRow& row);
    bool readRow();
    void readFirstLineAlone(std::size_t columns);
    bool feed();
    bool finish();
    static void addCell(void* text, std::size_t length, void* self);
    static void endRow(int /*end*/, void* self) { static_cast<CsvRows*>(self)->isRowComplete_ = true; }

    LineReader lines_;
    csv_parser parser_;
    char delimiter_;
    CsvRow* row_ = nullptr;
    bool isRowComplete_ = false;
    // The lines of the row that is being read, and those behind it that were read before, when they seemed to be part
    // of a row before it.
    std::string window_;
    std::size_t rowBegin_ = 0;
    std::size_t lineBegin_ = 0;
    std::size_t at_ = 0;          ///< Where the next line begins.
    std::size_t lineNumber_ = 0;  ///< Of the line before at_.
    bool isCut_ = false;          ///< That line is the beginning of one that is too long.
};

}  // namespace calljournal
