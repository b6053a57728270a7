#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "FieldKind.h"

namespace calljournal {

/// What two names have in common that differ in case, accents, blanks and punctuation only: the key of both is the
/// same. "E-Mail Adresse" and "e-mail-adresse" have one. Empty for a name without letters, digits and symbols.
std::string nameKey(std::string_view name);

/// A name and what it means.
struct NamedKind {
    std::string name;
    std::string key;
    FieldKind kind;
};

/// The columns that one version of one program writes in some languages, in its order.
struct KnownHeader {
    std::string program;
    std::string version;
    std::string languages;  ///< BCP 47, with ", " between them.
    int priority;           ///< Of equally good headers the smallest counts.
    std::string evidence;   ///< "export", "texts" or "table": see columns.tsv.
    std::vector<NamedKind> columns;
};

/// What columns.tsv, or a user's file of that kind, says.
struct ColumnTable {
    std::vector<KnownHeader> headers;
    std::vector<NamedKind> phoneTypes;    ///< "Mobil" is mobile.
    std::vector<NamedKind> addressTypes;  ///< "Privat" is homeAddress.
};

/// Reads such a file. `origin` is what it is called in the AddressBookError that a bad line throws.
ColumnTable readColumnTable(std::string_view text, const std::string& origin);

/// The table that the program comes with.
const ColumnTable& builtInColumnTable();

}  // namespace calljournal
