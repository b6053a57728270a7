#include "CsvReader.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <tuple>
#include <utility>

#include "ValueKinds.h"

namespace calljournal {

namespace {

constexpr char delimiters[] = {',', ';', '\t'};

/// What is between several values in one cell.
constexpr std::string_view between = " ::: ";

/// No program has more columns; a line with more is no header.
constexpr std::size_t mostColumns = 4096;

std::vector<std::string> firstRow(const std::string& text, char delimiter) {
    std::istringstream bytes(text);
    CsvRows rows(LineReader(TextStream(bytes, "")), delimiter);
    CsvRow row;
    std::vector<std::string> cells;
    if (rows.next(row, 0) && row.size() <= mostColumns) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            cells.push_back(valueText(row.cell(i)));
        }
    }
    return cells;
}

/// The delimiter that a line "sep=;" above the header names.
std::optional<char> namedDelimiter(std::string_view line) {
    std::string text;
    std::copy_if(line.begin(), line.end(), std::back_inserter(text),
                 [](char c) { return c != '"' && c != '\r' && c != '\n'; });
    if (text.size() == 5 && text.compare(0, 4, "sep=") == 0 &&
        std::find(std::begin(delimiters), std::end(delimiters), text[4]) != std::end(delimiters)) {
        return text[4];
    }
    return {};
}

std::size_t offset(FieldKind kind, FieldKind first) {
    return static_cast<std::size_t>(kind) - static_cast<std::size_t>(first);
}

bool isBetween(FieldKind kind, FieldKind first, FieldKind last) {
    return kind >= first && kind <= last;
}

/// The parts of formattedAddress1 and formattedAddress2, in the order of their field kinds; the second is the type.
constexpr AddressPart typedParts[] = {AddressPart::whole,    AddressPart::whole,   AddressPart::street,
                                      AddressPart::street2,  AddressPart::city,    AddressPart::state,
                                      AddressPart::postcode, AddressPart::country, AddressPart::poBox};

/// "* Mobile" is the mobile phone that the person likes best.
std::string_view withoutStar(std::string_view word) {
    return word.substr(std::min(word.find_first_not_of("* "), word.size()));
}

template <class Take>
void forEachPart(std::string_view cell, const Take& take) {
    for (std::size_t end = cell.find(between); end != std::string_view::npos; end = cell.find(between)) {
        take(cell.substr(0, end));
        cell.remove_prefix(end + between.size());
    }
    take(cell);
}

std::string sourceWithType(const std::string& name, std::string_view type) {
    return type.empty() ? name : name + " (" + std::string(type) + ')';
}

}  // namespace

CsvLayout csvLayout(const std::string& beginning, const ColumnFinder& finder) {
    CsvLayout best;
    const std::size_t firstLine = lineLength(beginning);
    const std::optional<char> named = namedDelimiter(std::string_view(beginning).substr(0, firstLine));
    const std::string header = named ? beginning.substr(firstLine) : beginning;
    const auto rank = [](const CsvLayout& layout) {
        return std::make_tuple(layout.header.useful, layout.header.known, layout.header.columns.size());
    };
    for (const char delimiter : delimiters) {
        if (named && *named != delimiter) {
            continue;
        }
        CsvLayout layout{delimiter, named.has_value(), finder.find(firstRow(header, delimiter))};
        if (best.header.columns.empty() || rank(layout) > rank(best)) {
            best = std::move(layout);
        }
    }
    return best;
}

CsvReader::CsvReader(TextStream stream, CsvLayout layout, std::shared_ptr<const ColumnFinder> finder,
                     Recognition recognition)
    : rows_(LineReader(std::move(stream)), layout.delimiter), finder_(std::move(finder)) {
    recognition_ = std::move(recognition);
    recognition_.format = "CSV";
    recognition_.delimiter = layout.delimiter;
    recognition_.program = std::move(layout.header.program);
    recognition_.language = std::move(layout.header.language);
    recognition_.columns = std::move(layout.header.columns);
    recognition_.unusedMappings = std::move(layout.header.unusedMappings);
    if (layout.header.useful == 0) {
        throw AddressBookError(AddressBookError::Reason::header, columnTable(recognition_));
    }
    if (layout.hasSeparatorLine) {
        rows_.next(row_, 0);
    }
    rows_.next(row_, 0);
    planColumns();
}

void CsvReader::planColumns() {
    const std::vector<RecognisedColumn>& columns = recognition_.columns;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        const FieldKind kind = columns[column].kind;
        if (kind < FieldKind::other) {
            plain_.push_back({column, kind, isBetween(kind, FieldKind::email1, FieldKind::email4)});
        } else {
            planTyped(column, kind);
        }
    }
    std::stable_partition(plain_.begin(), plain_.end(),
                          [&](const PlainColumn& plain) { return columns[plain.column].isMapped; });
}

void CsvReader::planTyped(std::size_t column, FieldKind kind) {
    if (isBetween(kind, FieldKind::phone1, FieldKind::phone7)) {
        phones_[offset(kind, FieldKind::phone1)].value = column;
    } else if (isBetween(kind, FieldKind::phoneType1, FieldKind::phoneType7)) {
        phones_[offset(kind, FieldKind::phoneType1)].type = column;
    } else if (kind == FieldKind::address1Type || kind == FieldKind::address2Type) {
        addressTypes_[kind == FieldKind::address1Type ? 0 : 1] = column;
    } else if (kind >= FieldKind::formattedAddress1) {
        const std::size_t place = offset(kind, FieldKind::formattedAddress1);
        addressParts_.push_back({column, place / std::size(typedParts), typedParts[place % std::size(typedParts)]});
    }
}

std::string_view CsvReader::cell(std::size_t column) const {
    return column < row_.size() ? row_.cell(column) : std::string_view();
}

bool CsvReader::next(AddressRecord& record) {
    const std::size_t columns = recognition_.columns.size();
    if (!rows_.next(row_, columns)) {
        return false;
    }
    record.number = ++number_;
    record.firstLine = row_.firstLine;
    record.lastLine = row_.lastLine;
    record.values.clear();
    record.problems.clear();
    record.fault = row_.fault;
    // Only texts count behind the last column of the header.
    if (record.fault.empty() && row_.size() > columns && row_.ends[columns - 1] != row_.cells.size()) {
        record.fault = "it has " + std::to_string(row_.size()) + " columns, the header " + std::to_string(columns);
    }
    if (!record.fault.empty()) {
        return true;
    }
    if (row_.size() < columns) {
        record.problems.push_back({record.firstLine, "",
                                   "it has " + std::to_string(row_.size()) + " columns, the header " +
                                       std::to_string(columns) + "; the others were taken for empty"});
    }
    if (row_.hasStrayQuotes) {
        record.problems.push_back({record.firstLine, "", "its quotes are out of place and were read as they stand"});
    }
    hasLostCharacters_ = row_.cells.find("\ufffd") != std::string::npos;
    for (const PlainColumn& plain : plain_) {
        const std::string_view text = cell(plain.column);
        if (!text.empty()) {
            addPlain(record, plain, text);
        }
    }
    addPhones(record);
    addAddresses(record);
    return true;
}

/// Hardly any row has such characters, so its texts are looked at only if it has.
void CsvReader::noteLost(AddressRecord& record, std::string_view text, const std::string& source) const {
    if (hasLostCharacters_) {
        noteLostCharacters(record, record.firstLine, text, source);
    }
}

void CsvReader::addPlain(AddressRecord& record, const PlainColumn& plain, std::string_view text) const {
    const std::string& source = nameOf(plain.column);
    if (plain.isList) {
        forEachPart(text, [&](std::string_view part) { addValue(record, plain.kind, part, source); });
    } else {
        addValue(record, plain.kind, text, source);
    }
    noteLost(record, text, source);
}

void CsvReader::addPhones(AddressRecord& record) const {
    PhonePlaces places;
    for (const TypedPhone& phone : phones_) {
        const std::string_view text = cell(phone.value);
        if (text.empty()) {
            continue;
        }
        const std::string_view type = withoutStar(cell(phone.type));
        const FieldKind kind =
            type.empty() ? FieldKind::primaryPhone : finder_->phoneType(type).value_or(FieldKind::otherPhone);
        const std::string source = sourceWithType(nameOf(phone.value), type);
        forEachPart(text, [&](std::string_view part) { addValue(record, places.place(kind), part, source); });
        noteLost(record, text, source);
    }
}

void CsvReader::addAddresses(AddressRecord& record) const {
    for (const TypedPart& part : addressParts_) {
        const std::string_view text = cell(part.column);
        if (text.empty()) {
            continue;
        }
        const std::string_view type = withoutStar(cell(addressTypes_[part.address]));
        const FieldKind address = finder_->addressType(type).value_or(FieldKind::otherAddress);
        const std::string source = sourceWithType(nameOf(part.column), type);
        addValue(record, addressPart(address, part.part), text, source);
        noteLost(record, text, source);
    }
}

}  // namespace calljournal
