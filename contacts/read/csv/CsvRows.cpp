#include "CsvRows.h"

#include <utility>

#include "AddressReader.h"

namespace calljournal {

namespace {

constexpr unsigned char strict = CSV_STRICT | CSV_STRICT_FINI;
constexpr unsigned char lenient = 0;

/// A cell grows by this much at a time; the parser's own 128 bytes make a long one slow.
constexpr std::size_t cellGrowth = std::size_t{16} << 10;

}  // namespace

CsvRows::CsvRows(LineReader lines, char delimiter) : lines_(std::move(lines)), delimiter_(delimiter) {
    csv_init(&parser_, strict);
    restartParser(strict);
}

CsvRows::~CsvRows() {
    csv_free(&parser_);
}

void CsvRows::restartParser(unsigned char options) {
    csv_free(&parser_);
    csv_init(&parser_, options);
    csv_set_delim(&parser_, static_cast<unsigned char>(delimiter_));
    csv_set_blk_size(&parser_, cellGrowth);
}

bool CsvRows::next(CsvRow& row, std::size_t columns) {
    do {
        dropReadLines();
        if (!takeLine()) {
            return false;
        }
    } while (isBlankLine());
    startRow(row);
    const bool isWhole = readRow();
    // A quote that was never closed swallows the lines behind it.
    if (!isWhole || (columns != 0 && row.size() > columns && row.firstLine != lineNumber_)) {
        readFirstLineAlone(columns);
    }
    row.lastLine = lineNumber_;
    return true;
}

void CsvRows::dropReadLines() {
    if (at_ == window_.size()) {
        window_.clear();
        at_ = 0;
    } else if (at_ > window_.size() / 2) {
        window_.erase(0, at_);
        at_ = 0;
    }
    rowBegin_ = at_;
}

/// Moves to the next line, one that was read before or a new one.
bool CsvRows::takeLine() {
    lineBegin_ = at_;
    if (at_ < window_.size()) {
        at_ += lineLength(std::string_view(window_).substr(at_));
    } else {
        Line line;
        if (!lines_.next(line)) {
            return false;
        }
        window_ += line.whole;
        isCut_ = line.isCut;
        at_ = window_.size();
    }
    ++lineNumber_;
    return true;
}

bool CsvRows::isBlankLine() const {
    return line().find_first_not_of(delimiter_ == '\t' ? " \r\n" : " \t\r\n") == std::string_view::npos && !isCutLine();
}

void CsvRows::startRow(CsvRow& row) {
    row_ = &row;
    row.firstLine = lineNumber_;
    row.cells.clear();
    row.ends.clear();
    row.fault.clear();
    row.hasStrayQuotes = false;
    isRowComplete_ = false;
}

/// Reads lines until the row is complete; the first one is there already. Returns false if the quotes break the rules.
bool CsvRows::readRow() {
    while (!isCutLine() && at_ - rowBegin_ <= longestRecord && feed()) {
        if (isRowComplete_) {
            return true;
        }
        if (!takeLine()) {
            return finish();
        }
    }
    return false;
}

void CsvRows::readFirstLineAlone(std::size_t columns) {
    at_ = rowBegin_ + lineLength(std::string_view(window_).substr(rowBegin_));
    lineBegin_ = rowBegin_;
    lineNumber_ = row_->firstLine;
    startRow(*row_);
    if (isCutLine()) {
        row_->fault = "the line is longer than " + std::to_string(longestRecord) + " bytes";
    } else {
        restartParser(lenient);
        if (feed() && !isRowComplete_) {
            finish();
        }
        row_->hasStrayQuotes = true;
        if (columns != 0 && row_->size() != columns) {
            row_->fault = "a quote is out of place or never closed";
        }
    }
    restartParser(strict);
}

void CsvRows::addCell(void* text, std::size_t length, void* self) {
    CsvRow& row = *static_cast<CsvRows*>(self)->row_;
    // Most cells of an address book are empty.
    if (length != 0) {
        row.cells.append(static_cast<const char*>(text), length);
    }
    row.ends.push_back(row.cells.size());
}

/// Returns false if the line breaks the rules.
bool CsvRows::feed() {
    return csv_parse(&parser_, line().data(), line().size(), addCell, endRow, this) == line().size();
}

/// Ends the last row of the file. Returns false if a quote is still open.
bool CsvRows::finish() {
    return csv_fini(&parser_, addCell, endRow, this) == 0;
}

}  // namespace calljournal
