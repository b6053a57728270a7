#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AddressReader.h"
#include "ColumnTable.h"

namespace calljournal {

/// What a header turned out to be.
struct FoundColumns {
    std::string program;
    std::string language;
    std::vector<RecognisedColumn> columns;
    std::vector<std::string> unusedMappings;
    std::size_t known = 0;   ///< Columns whose name is known.
    std::size_t useful = 0;  ///< Those of them that mean something.
};

class ColumnIndex;

/// Finds out what the columns of a header mean: by what the user says about them, then by the user's file, then by the
/// header of the built-in table that is most like it.
class ColumnFinder {
public:
    /// Throws AddressBookError if the user's file cannot be read.
    explicit ColumnFinder(const ReadingOptions& options);
    ColumnFinder(const ColumnFinder&) = delete;
    ColumnFinder& operator=(const ColumnFinder&) = delete;

    FoundColumns find(const std::vector<std::string>& names) const;

    /// What a phone or an address of that kind is: "* Mobil" is mobile. Nothing for unknown words.
    std::optional<FieldKind> phoneType(std::string_view word) const;
    std::optional<FieldKind> addressType(std::string_view word) const;

private:
    void applyMappings(FoundColumns& found) const;

    ColumnTable own_;
    std::shared_ptr<const ColumnIndex> index_;       ///< Of the user's file and the built-in table behind it.
    std::map<std::string, ColumnMapping> mappings_;  ///< By the key of the name.
};

}  // namespace calljournal
