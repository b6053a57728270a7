#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ImportContactsCSVParser.h"
#include "Sentence.h"

namespace calljournal {

/// What the importer makes of an empty quoted field.
constexpr char loneQuote[] = "\"";

/// Takes the importer's own steps over a file once more, to say where and why they refuse it.
///
/// The importer reports an outcome and no place. Here its steps run line by line, unchanged, and what they leave in its
/// members is looked at after each; so a place found is one that the import stumbles over, whatever the rules are.
/// The file stays. The log should be off, or it gets every line twice.
class ImportReplay : public ImportContactsCSVParser {
public:
    /// Where an import went wrong, and why, in words for people.
    struct Fault {
        int outcome;  ///< A CSVType.
        Sentence sentence;
    };

    explicit ImportReplay(unsigned existingContacts);

    /// Replays the import of the file. Calls `progress`, if given, with the number of bytes that are done.
    void replay(const std::string& path, const std::function<void(std::uint64_t)>& progress = {});

    /// What the import stumbles over, in the order of the file. At most two: a line that is refused does not keep a
    /// later one from ending the import. Empty for a file that is imported.
    const std::vector<Fault>& faults() const { return faults_; }

    /// The most contacts that the phonebook holds.
    static unsigned contactLimit();

protected:
    /// Called after the header (of an accepted layout) and after each record that was taken without fault. `contact` is
    /// null for the header and for a record that gives none.
    virtual void recordTaken(const Contact* /*contact*/) {}

    /// The physical lines of the current record: "line 4" or "lines 4 to 6".
    std::string lines() const;
    bool isHeader() const { return isHeader_; }

    /// "column 12 DefaultDial"; columns count from 1.
    Sentence columnName(std::size_t index) const;

    /// Whether the comma separates columns, rather than the semicolon.
    bool isCommaSeparated() { return countColumns("a,b") == 2; }

    const std::vector<std::string>& headers() const { return headers_; }

private:
    bool readLine();
    bool isOnlyCounted() const;
    bool takeLine();
    void settle();
    void settleLimit();

    void makeUtf8(std::string& name) const;
    std::size_t countColumns(const std::string& text);
    bool endsInsideQuotes(const std::string& text);
    bool isRefused(const std::string& text);
    std::size_t startOfRefusedColumn();

    Sentence describeHeaderFault();
    Sentence describeHeaderNames();
    Sentence describeHeaderCount();
    Sentence describeDefaultDialFault();
    Sentence describeColumnFault();
    Sentence describeShortRecord(const std::string& first, bool isJoined);
    Sentence describeEscapeFault();
    std::string columnsFound(std::size_t count) const;

    std::vector<Fault> faults_;
    std::vector<std::string> headers_;
    unsigned existingContacts_;
    std::size_t records_ = 0;    ///< Records behind the header, those beyond the limit included.
    std::size_t limitLine_ = 0;  ///< The first line beyond the contact limit; 0 if there is none.
    std::size_t firstLine_ = 0;  ///< The physical lines of the current record, the first line of the file being 1.
    std::size_t lastLine_ = 0;
    std::size_t firstLength_ = 0;    ///< How much of `line` the record's first physical line was.
    std::size_t refusedColumn_ = 0;  ///< The column that the splitter refused.
    int layout_ = 0;                 ///< `csvType` before the current line.
    bool isHeader_ = false;          ///< The current line is the header.
    std::string exception_;          ///< What the current line threw.
};

/// A text of the file in quotes.
Sentence quoted(const std::string& text);

}  // namespace calljournal
