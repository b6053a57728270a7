#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace calljournal {

/// A value of a row. Numbers of this store's tables are integers; NULL is 0.
struct RecordValue {
    bool isText = false;
    std::int64_t number = 0;
    std::string text;
};

/// A row of a table, or of an index, whose last value is the row's number then.
struct Record {
    bool isOfTable = false;
    std::int64_t rowId = 0;  ///< Of a table.
    std::vector<RecordValue> values;
};

/// The pages of a database with checksums, and of the log beside it, read without SQLite, which gives up at the first
/// that is damaged. The format: https://sqlite.org/fileformat2.html
class PageFile {
public:
    /// Opens the file; one that cannot be read has no pages.
    explicit PageFile(const std::string& path);

    /// The numbers of all pages, ascending.
    const std::vector<std::uint32_t>& numbers() const { return numbers_; }

    /// Returns whether the log has lost transactions that were complete.
    bool hasDamagedLog() const { return hasDamagedLog_; }

    /// Returns whether the page is as it was written.
    bool isWhole(std::uint32_t number) { return !page(number).empty(); }

    /// Returns the numbers of pages that hold nothing; `isWhole` says whether their list could be read to its end.
    std::set<std::uint32_t> freePages(bool& isWhole);

    /// Returns the whole rows on a page, none if it is not one of a table or an index. Those that go on on a page that
    /// is damaged are counted in `broken`.
    std::vector<Record> records(std::uint32_t number, int& broken);

private:
    std::string page(std::uint32_t number);
    std::string payload(const std::string& page, std::size_t at, std::uint64_t size, std::size_t mostHere);

    std::ifstream database_;
    std::ifstream log_;
    std::map<std::uint32_t, std::int64_t> inLog_;
    bool hasDamagedLog_ = false;
    std::vector<std::uint32_t> numbers_;
};

}  // namespace calljournal
