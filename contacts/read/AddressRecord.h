#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "FieldKind.h"

namespace calljournal {

/// One text of a record and where it was.
struct AddressValue {
    FieldKind kind;
    std::string text;    ///< UTF-8, not empty, without blanks around it. It may hold line breaks, which are "\n".
    std::string source;  ///< The name of the column or property: "Telefon geschäftlich", "TEL;TYPE=CELL".
};

/// The values of a record. Those of the next record take over their memory, since a book has many records and most are
/// alike.
class AddressValues {
public:
    /// Adds a value and returns it, for its members to be assigned.
    AddressValue& add() {
        if (size_ == values_.size()) {
            values_.emplace_back();
        }
        return values_[size_++];
    }
    void dropLast() { --size_; }
    void clear() { size_ = 0; }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const AddressValue& operator[](std::size_t index) const { return values_[index]; }
    const AddressValue* begin() const { return values_.data(); }
    const AddressValue* end() const { return values_.data() + size_; }

    /// How many bytes of memory they have, those of the records before included.
    std::size_t memory() const {
        std::size_t bytes = 0;
        for (const AddressValue& value : values_) {
            bytes += sizeof value + value.text.capacity() + value.source.capacity();
        }
        return bytes;
    }

private:
    std::vector<AddressValue> values_;
    std::size_t size_ = 0;  ///< Those behind it are of records before.
};

/// Something odd in an address book, with its place.
struct Problem {
    std::size_t line;    ///< The physical line, from 1.
    std::string column;  ///< The column or property; empty if it is about the record as a whole.
    std::string text;  ///< A sentence without a full stop: "the quotes are out of place; they were read as they stand".
};

/// One record of an address book, whatever its format. Lines are physical ones, counted from 1; a line ends in CR, LF
/// or CR LF.
struct AddressRecord {
    std::size_t number = 0;  ///< Counted from 1, those that cannot be used included.
    std::size_t firstLine = 0;
    std::size_t lastLine = 0;
    /// In the order of the file. A kind may occur more than once: the earlier value is the preferred one.
    AddressValues values;
    std::vector<Problem> problems;
    /// Why the record cannot be used; it has no values then. Empty for all others.
    std::string fault;
};

}  // namespace calljournal
