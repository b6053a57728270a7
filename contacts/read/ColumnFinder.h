#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
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

/// The names of column tables, for looking them up.
class ColumnIndex {
public:
    /// A column of a known header.
    struct Place {
        std::size_t header;
        std::size_t column;
    };
    using Places = std::vector<Place>;

    /// Adds a table, which has to live as long. What was there before counts more.
    void add(const ColumnTable& table);

    const std::vector<const KnownHeader*>& headers() const { return headers_; }

    /// Returns all columns of that name, or null.
    const Places* placesOf(const std::string& name) const;

    std::optional<FieldKind> phoneType(std::string_view word) const;
    std::optional<FieldKind> addressType(std::string_view word) const;

private:
    std::vector<const KnownHeader*> headers_;
    std::unordered_map<std::string, Places> places_;
    std::unordered_map<std::string, FieldKind> phoneTypes_;
    std::unordered_map<std::string, FieldKind> addressTypes_;
};

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
    std::optional<FieldKind> phoneType(std::string_view word) const { return index_->phoneType(word); }
    std::optional<FieldKind> addressType(std::string_view word) const { return index_->addressType(word); }

private:
    using Place = ColumnIndex::Place;
    using Places = ColumnIndex::Places;

    /// For each name the places in all headers, or null.
    std::vector<const Places*> placesOf(const std::vector<std::string>& names) const;
    /// The headers that know a column at all, the best one first.
    std::vector<std::size_t> ranking(const std::vector<const Places*>& places) const;

    static std::size_t bestHeader(const Places& places, const std::vector<std::size_t>& rank);
    static std::vector<std::size_t> placesIn(std::size_t header, const Places& places);
    void applyMappings(FoundColumns& found) const;

    ColumnTable own_;
    ColumnIndex ownIndex_;  ///< Of the user's file and the built-in table behind it; empty without such a file.
    const ColumnIndex* index_;
    struct Mapping {
        std::string name;
        FieldKind kind;
    };
    std::map<std::string, Mapping> mappings_;  ///< By the key of the name.
};

}  // namespace calljournal
