#ifndef CALLJOURNAL_ADDRESSREADER_H
#define CALLJOURNAL_ADDRESSREADER_H

#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "AddressRecord.h"

namespace calljournal {

/// A file that cannot be read as an address book. `what()` says why and what to do, in as many lines as it needs.
class AddressBookError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What a user may say about a file.
struct ReadOptions {
    std::string charset;      ///< Its character set; empty to find out.
    std::string columnsFile;  ///< More names of columns; empty for none.
    std::map<std::string, std::string>
        named;  ///< Columns by name: what they are called and what they mean ("Mobile1").
};

/// What became of a column of the header.
struct ReadColumn {
    std::string name;
    Meaning meaning;
    bool isKnown;  ///< Found by its name.
};

/// Reads the records of one address book, one at a time, in memory that does not grow with the file.
class AddressReader {
public:
    virtual ~AddressReader() = default;

    /// Fetches the next record; reuses what `record` holds. Returns false at the end.
    virtual bool next(AddressRecord& record) = 0;

    /// What was found out: "comma separated, Windows-1252".
    virtual std::string description() const = 0;

    /// The columns of the header; empty for a file that has none.
    virtual const std::vector<ReadColumn>& columns() const = 0;

    /// How many bytes of the file are behind the reader. May be asked from another thread.
    virtual std::uint64_t position() const = 0;
};

/// Opens an address book; finds out its form and character set. Throws AddressBookError, at once or from next().
std::unique_ptr<AddressReader> openAddressBook(const std::string& path, const ReadOptions& options);

}  // namespace calljournal

#endif
