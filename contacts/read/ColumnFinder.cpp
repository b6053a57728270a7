#include "ColumnFinder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <unordered_map>
#include <utility>

namespace calljournal {

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
    void add(const ColumnTable& table) {
        for (const KnownHeader& header : table.headers) {
            for (std::size_t column = 0; column < header.columns.size(); ++column) {
                places_[header.columns[column].key].push_back({headers_.size(), column});
            }
            headers_.push_back(&header);
        }
        addWords(phoneTypes_, table.phoneTypes);
        addWords(addressTypes_, table.addressTypes);
    }

    const std::vector<const KnownHeader*>& headers() const { return headers_; }

    /// Returns all columns of that name, or null.
    const Places* placesOf(const std::string& name) const {
        const auto found = places_.find(nameKey(name));
        return found == places_.end() ? nullptr : &found->second;
    }

    std::optional<FieldKind> phoneType(std::string_view word) const { return kindIn(phoneTypes_, word); }
    std::optional<FieldKind> addressType(std::string_view word) const { return kindIn(addressTypes_, word); }

private:
    using Words = std::unordered_map<std::string, FieldKind>;

    static void addWords(Words& words, const std::vector<NamedKind>& rows) {
        for (const NamedKind& row : rows) {
            words.emplace(row.key, row.kind);
        }
    }

    static std::optional<FieldKind> kindIn(const Words& words, std::string_view word) {
        const auto found = words.find(nameKey(word));
        return found == words.end() ? std::nullopt : std::optional<FieldKind>(found->second);
    }

    std::vector<const KnownHeader*> headers_;
    std::unordered_map<std::string, Places> places_;
    Words phoneTypes_;
    Words addressTypes_;
};

namespace {

using Place = ColumnIndex::Place;
using Places = ColumnIndex::Places;

/// Larger files are not lists of columns.
constexpr std::streamsize largestColumnsFile = 16 << 20;

std::string readColumnsFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text(static_cast<std::size_t>(largestColumnsFile), '\0');
    file.read(text.data(), largestColumnsFile);
    if (!file.eof()) {
        throw AddressBookError(AddressBookError::Reason::option, path + ": cannot be read as a list of columns");
    }
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

/// That of the built-in table, which is made once.
std::shared_ptr<const ColumnIndex> builtInIndex() {
    static const std::shared_ptr<const ColumnIndex> index = [] {
        auto made = std::make_shared<ColumnIndex>();
        made->add(builtInColumnTable());
        return made;
    }();
    return index;
}

/// Chooses among the columns of one header that have the same name: programs keep their order, so it is the first one
/// behind the column before it.
class Walk {
public:
    std::size_t choose(const std::vector<std::size_t>& candidates) {
        const auto isFree = [&](std::size_t column) {
            return std::find(taken_.begin(), taken_.end(), column) == taken_.end();
        };
        auto chosen = std::find_if(candidates.begin(), candidates.end(),
                                   [&](std::size_t column) { return column >= next_ && isFree(column); });
        if (chosen == candidates.end()) {
            chosen = std::find_if(candidates.begin(), candidates.end(), isFree);
        }
        const std::size_t column = chosen == candidates.end() ? candidates.front() : *chosen;
        if (candidates.size() > 1 && isFree(column)) {
            taken_.push_back(column);
        }
        next_ = column + 1;
        return column;
    }

private:
    std::size_t next_ = 0;
    std::vector<std::size_t> taken_;  ///< Of those with a name that occurs more than once.
};

/// The headers that know a column at all, the best one first; the first `ownCount` are the user's.
std::vector<std::size_t> ranking(const std::vector<const KnownHeader*>& headers, std::size_t ownCount,
                                 const std::vector<const Places*>& places) {
    std::vector<std::size_t> score(headers.size());
    std::unordered_map<const Places*, std::size_t> seen;
    for (const Places* const all : places) {
        if (all == nullptr) {
            continue;
        }
        // A name that is in the file for the second time counts for the headers that have it twice.
        const std::size_t time = seen[all]++;
        std::unordered_map<std::size_t, std::size_t> times;
        for (const Place& place : *all) {
            score[place.header] += times[place.header]++ == time ? 1 : 0;
        }
    }
    std::vector<std::size_t> best;
    for (std::size_t header = 0; header < headers.size(); ++header) {
        if (score[header] > 0) {
            best.push_back(header);
        }
    }
    std::stable_sort(best.begin(), best.end(), [&](std::size_t a, std::size_t b) {
        const bool isOwnA = a < ownCount;
        const bool isOwnB = b < ownCount;
        if (isOwnA != isOwnB) {
            return isOwnA;
        }
        return score[a] != score[b] ? score[a] > score[b] : headers[a]->priority < headers[b]->priority;
    });
    return best;
}

/// The header that speaks about a name: of all that know it the one that is most like the file's.
std::size_t bestHeader(const Places& places, const std::vector<std::size_t>& rank) {
    return std::min_element(places.begin(), places.end(),
                            [&](const Place& a, const Place& b) { return rank[a.header] < rank[b.header]; })
        ->header;
}

std::vector<std::size_t> placesIn(std::size_t header, const Places& places) {
    std::vector<std::size_t> columns;
    for (const Place& place : places) {
        if (place.header == header) {
            columns.push_back(place.column);
        }
    }
    return columns;
}

}  // namespace

ColumnFinder::ColumnFinder(const ReadingOptions& options) : index_(builtInIndex()) {
    if (!options.columnsFile.empty()) {
        own_ = readColumnTable(readColumnsFile(options.columnsFile), options.columnsFile);
        const auto index = std::make_shared<ColumnIndex>();
        index->add(own_);
        index->add(builtInColumnTable());
        index_ = index;
    }
    for (const ColumnMapping& mapping : options.mappings) {
        mappings_.emplace(nameKey(mapping.name), mapping);
    }
}

std::optional<FieldKind> ColumnFinder::phoneType(std::string_view word) const {
    return index_->phoneType(word);
}

std::optional<FieldKind> ColumnFinder::addressType(std::string_view word) const {
    return index_->addressType(word);
}

FoundColumns ColumnFinder::find(const std::vector<std::string>& names) const {
    const std::vector<const KnownHeader*>& headers = index_->headers();
    std::vector<const Places*> places(names.size());
    std::transform(names.begin(), names.end(), places.begin(),
                   [this](const std::string& name) { return index_->placesOf(name); });
    const std::vector<std::size_t> best = ranking(headers, own_.headers.size(), places);
    std::vector<std::size_t> rank(headers.size());
    for (std::size_t i = 0; i < best.size(); ++i) {
        rank[best[i]] = i;
    }
    FoundColumns found;
    if (!best.empty()) {
        const KnownHeader& header = *headers[best[0]];
        found.program = header.program;
        found.language = header.languages.substr(0, header.languages.find(','));
    }
    std::vector<Walk> walks(headers.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        RecognisedColumn column;
        column.name = names[i];
        if (places[i] != nullptr) {
            const std::size_t header = bestHeader(*places[i], rank);
            const std::size_t place = walks[header].choose(placesIn(header, *places[i]));
            column.kind = headers[header]->columns[place].kind;
            column.isKnown = true;
        }
        found.columns.push_back(std::move(column));
    }
    applyMappings(found);
    for (const RecognisedColumn& column : found.columns) {
        found.known += column.isKnown ? 1 : 0;
        found.useful += column.kind != FieldKind::other ? 1 : 0;
    }
    return found;
}

void ColumnFinder::applyMappings(FoundColumns& found) const {
    std::set<std::string> used;
    for (RecognisedColumn& column : found.columns) {
        const auto mapping = mappings_.find(nameKey(column.name));
        if (mapping != mappings_.end()) {
            column.kind = mapping->second.kind;
            column.isKnown = column.isMapped = true;
            used.insert(mapping->first);
        }
    }
    for (const auto& [key, mapping] : mappings_) {
        if (used.count(key) == 0) {
            found.unusedMappings.push_back(mapping.name);
        }
    }
}

}  // namespace calljournal
