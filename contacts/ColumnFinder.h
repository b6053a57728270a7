#ifndef CALLJOURNAL_COLUMNFINDER_H
#define CALLJOURNAL_COLUMNFINDER_H

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

/// Finds out what the columns of a header mean: by what the user says about them, then by the user's file, then by the
/// header of the built-in table that is most like it.
class ColumnFinder {
public:
    /// Throws AddressBookError if the user's file cannot be read.
    explicit ColumnFinder(const ReadingOptions& options);

    FoundColumns find(const std::vector<std::string>& names) const;

    /// What a phone or an address of that kind is: "* Mobil" is mobile. Nothing for unknown words.
    std::optional<Meaning> phoneType(std::string_view word) const;
    std::optional<Meaning> addressType(std::string_view word) const;

private:
    /// A column of a known header.
    struct Place {
        std::size_t header;
        std::size_t column;
    };
    using Places = std::vector<Place>;

    void add(const ColumnTable& table);
    /// For each name the places in all headers, or null.
    std::vector<const Places*> placesOf(const std::vector<std::string>& names) const;
    /// The headers that know a column at all, the best one first.
    std::vector<std::size_t> ranking(const std::vector<const Places*>& places) const;

    static std::size_t bestHeader(const Places& places, const std::vector<std::size_t>& rank);
    static std::vector<std::size_t> placesIn(std::size_t header, const Places& places);
    void applyMappings(FoundColumns& found) const;

    ColumnTable own_;
    std::vector<const KnownHeader*> headers_;
    std::size_t ownHeaders_ = 0;
    std::unordered_map<std::string, Places> places_;
    std::unordered_map<std::string, Meaning> phoneTypes_;
    std::unordered_map<std::string, Meaning> addressTypes_;
    struct Mapping {
        std::string name;
        Meaning meaning;
    };
    std::map<std::string, Mapping> mappings_;  ///< By the key of the name.
};

}  // namespace calljournal

#endif
