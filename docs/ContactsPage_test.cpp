// docs/contacts.md says of the programs what contacts/read/columns.tsv does.

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

#include "ColumnTable.h"
#include "ContactMapper.h"
#include "Page.h"

namespace calljournal {

namespace {

/// A table of the page by the programs that its rows are about.
std::map<std::string, Row> rowsOf(std::size_t table) {
    static const std::map<std::string, Section> page = readPage(CONTACTS_PAGE);
    std::map<std::string, Row> rows;
    for (const Row& row : page.at("What is taken from which program").tables.at(table)) {
        rows[row.at(0)] = row;
    }
    return rows;
}

std::set<std::string> split(const std::string& list, const std::string& separator) {
    std::set<std::string> parts;
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find(separator, at), list.size());
        parts.insert(list.substr(at, end - at));
        at = end + separator.size();
    }
    return parts;
}

/// What the page says a column becomes: a field of a contact, or one that the cell beside it says. Empty if it is left
/// out.
std::string targetOf(FieldKind kind) {
    static const ContactMapper mapper(NumberStyle::keep, "DE");
    static const std::set<FieldKind> notTaken = {FieldKind::address1Type, FieldKind::address2Type,
                                                 FieldKind::address1State, FieldKind::address2State};
    if (kind >= FieldKind::phone1 && kind <= FieldKind::phone7) {
        return "by kind";
    }
    if (kind >= FieldKind::formattedAddress1) {
        return notTaken.count(kind) == 0 ? "address by kind" : "";
    }
    AddressRecord record;
    record.values.add() = {kind, "1", "column"};
    MappedContact mapped;
    mapper.map(record, mapped);
    return mapped.taken.empty() || kind >= FieldKind::other ? "" : std::string(mapped.taken[0].field);
}

TEST(ContactsPage, NamesTheLanguagesOfEachProgramAndWhereItsNamesAreKnownFrom) {
    const std::map<std::string, std::string> evidence = {
        {"export", "exports"}, {"texts", "its translations *"}, {"table", "tables of other programs *"}};
    std::map<std::string, std::pair<std::set<std::string>, std::set<std::string>>> expected;
    for (const KnownHeader& header : builtInColumnTable().headers) {
        expected[header.program].first.merge(split(header.languages, ", "));
        expected[header.program].second.insert(evidence.at(header.evidence));
    }
    std::map<std::string, std::pair<std::set<std::string>, std::set<std::string>>> named;
    for (const auto& [program, row] : rowsOf(0)) {
        named[program] = {split(row.at(1), " "), split(row.at(2), ", ")};
    }
    EXPECT_EQ(named, expected);
}

TEST(ContactsPage, NamesWhatIsTakenFromEachProgramInItsFirstLanguage) {
    const std::map<std::string, Row> rows = rowsOf(1);
    EXPECT_EQ(rows.size(), rowsOf(0).size());
    for (const auto& [title, row] : rows) {
        const std::size_t bracket = title.find(" (");
        const std::string language = title.substr(bracket + 2, title.size() - bracket - 3);
        std::map<std::string, std::set<std::string>> expected;
        for (const KnownHeader& header : builtInColumnTable().headers) {
            if (header.program == title.substr(0, bracket) && split(header.languages, ", ").count(language) == 1) {
                for (const NamedKind& column : header.columns) {
                    expected[targetOf(column.kind)].insert(column.name);
                }
            }
        }
        expected.erase("");
        std::map<std::string, std::set<std::string>> named;
        for (const std::string& part : split(row.at(1), "; ")) {
            const std::size_t end = part.find("** ");
            named[part.substr(2, end - 2)] = split(part.substr(end + 3), ", ");
        }
        EXPECT_EQ(named, expected) << title;
    }
}

}  // namespace

}  // namespace calljournal
