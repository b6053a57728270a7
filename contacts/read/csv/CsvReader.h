#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "AddressReader.h"
#include "ColumnFinder.h"
#include "CsvRows.h"
#include "ValueKinds.h"

namespace calljournal {

/// What the beginning of a CSV file shows.
struct CsvLayout {
    char delimiter = ',';
    bool hasSeparatorLine = false;  ///< "sep=;" is above the header, as spreadsheets like it.
    FoundColumns header;
};

/// Finds out the delimiter: the one with which most columns are known, or else which gives most columns.
CsvLayout csvLayout(const std::string& beginning, const ColumnFinder& finder);

/// Reads the records of a CSV file whose first row names the columns.
class CsvReader : public AddressReader {
public:
    /// `recognition` says how the bytes of `stream` were found to be characters. Throws AddressBookError if no column
    /// means anything.
    CsvReader(TextStream stream, CsvLayout layout, std::shared_ptr<const ColumnFinder> finder, Recognition recognition);

    bool next(AddressRecord& record) override;
    std::size_t bytesRead() const override { return rows_.bytesRead(); }

private:
    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    /// A column whose texts are values as they are.
    struct PlainColumn {
        std::size_t column;
        FieldKind kind;
        bool isList;  ///< A cell may hold several values.
    };
    /// A phone whose type is in another column.
    struct TypedPhone {
        std::size_t value = nowhere;
        std::size_t type = nowhere;
    };
    /// A column of an address whose type is in another column.
    struct TypedPart {
        std::size_t column;
        std::size_t address;
        AddressPart part;
    };

    void planColumns();
    void planTyped(std::size_t column, FieldKind kind);
    void noteLost(AddressRecord& record, std::string_view text, const std::string& source) const;
    void addPlain(AddressRecord& record, const PlainColumn& plain, std::string_view text) const;
    void addPhones(AddressRecord& record) const;
    void addAddresses(AddressRecord& record) const;
    std::string_view cell(std::size_t column) const;
    const std::string& nameOf(std::size_t column) const { return recognition_.columns[column].name; }

    CsvRows rows_;
    std::shared_ptr<const ColumnFinder> finder_;
    CsvRow row_;
    bool hasLostCharacters_ = false;  ///< The row has characters that could not be read.
    std::size_t number_ = 0;
    std::vector<PlainColumn> plain_;  ///< The user's own first.
    TypedPhone phones_[7];
    std::vector<TypedPart> addressParts_;
    std::size_t addressTypes_[2] = {nowhere, nowhere};
};

}  // namespace calljournal
