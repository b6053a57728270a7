#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "AddressRecord.h"
#include "FieldKind.h"

namespace calljournal {

/// A column of the header, in the order of the file.
struct RecognisedColumn {
    std::string name;  ///< As it is in the file, UTF-8.
    FieldKind kind = FieldKind::other;
    bool isKnown = false;   ///< Its name is in the columns file, or the user mapped it.
    bool isMapped = false;  ///< The user mapped it.
};

/// What an address book turned out to be.
struct Recognition {
    std::string format;      ///< "CSV", "vCard".
    std::string charset;     ///< "UTF-8", "windows-1252".
    std::string charsetWhy;  ///< How that was found: "byte-order mark", "all bytes are valid", "asked for".
    char delimiter = 0;      ///< Of a CSV file: comma, semicolon or tab.
    std::string program;     ///< Of a CSV file whose header is like a known one: "Outlook". Else empty.
    std::string language;    ///< BCP 47, as in the columns file: "de". Empty without a program.
    std::vector<RecognisedColumn> columns;    ///< Of a CSV file.
    std::vector<std::string> unusedMappings;  ///< The names of the user's mappings that fit no column of this file.
};

/// Returns the table that shows a user which columns were recognised as what and how to map the rest.
std::string columnTable(const Recognition& recognition);

/// Reads one address book, record by record, with memory for one record. A record longer than longestRecord bytes is
/// reported as a fault.
///
///     const std::unique_ptr<AddressReader> book = openAddressBook(file, {});
///     for (AddressRecord record; book->next(record);) { ... }
class AddressReader {
public:
    virtual ~AddressReader() = default;

    /// Replaces `record` by the next one and returns true, or returns false at the end. A record that cannot be used
    /// comes as well, with its `fault`, and the reading goes on behind it. Columns of a CSV file without a field kind are
    /// not in the records, recognition() names them once; properties of a vCard without one come as FieldKind::other.
    /// Throws AddressBookError if the file cannot be read on.
    virtual bool next(AddressRecord& record) = 0;

    /// What was found before the first record.
    const Recognition& recognition() const { return recognition_; }

    /// How many bytes of the file were taken so far, for a progress bar.
    virtual std::size_t bytesRead() const = 0;

protected:
    AddressReader() = default;

    Recognition recognition_;
};

/// The longest record in UTF-8. A picture in a vCard does not count: its lines are skipped as they come.
constexpr std::size_t longestRecord = std::size_t{1} << 20;

/// A column whose field kind the user stated: `--map "Handy=Mobile1"`.
struct ColumnMapping {
    std::string name;  ///< Compared as the names of the columns file are.
    FieldKind kind;    ///< FieldKind::other leaves the column out.
};

/// What the user says about an address book.
struct ReadingOptions {
    std::string charset;  ///< A name that ICU knows; empty: find out.
    std::string
        columnsFile;  ///< A file like contacts/read/columns.tsv, whose names come before the built-in ones; or empty.
    std::vector<ColumnMapping> mappings;
};

/// Returns the mapping that `NAME=MEANING` describes. MEANING is a word of FieldKind, a column of the phone's own file,
/// or "-" for a column that is to be left out. Throws AddressBookError for anything else, with the words that there
/// are.
ColumnMapping columnMapping(std::string_view pair);

/// Why an address book cannot be read at all. The text is for the user, whole sentences and tables, of one line or
/// more.
class AddressBookError : public std::runtime_error {
public:
    enum class Reason {
        file,     ///< It cannot be opened or read.
        charset,  ///< Nothing shows in which character set it is, or the one asked for is not known.
        header,   ///< No column that the phone could use was recognised. The text has the table of columns.
        option,   ///< A mapping or the columns file is wrong.
    };

    AddressBookError(Reason reason, const std::string& text) : std::runtime_error(text), reason_(reason) {}

    Reason reason() const { return reason_; }

private:
    Reason reason_;
};

/// Opens an address book, CSV or vCard: finds out format, character set, delimiter and columns from its bytes. Throws
/// AddressBookError.
std::unique_ptr<AddressReader> openAddressBook(const std::string& path, const ReadingOptions& options);

/// The same for bytes from anywhere. The stream is read from its present place and must allow seeking; it has to live
/// as long as the reader.
std::unique_ptr<AddressReader> openAddressBook(std::istream& bytes, const ReadingOptions& options);

}  // namespace calljournal
