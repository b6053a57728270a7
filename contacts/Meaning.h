#ifndef CALLJOURNAL_MEANING_H
#define CALLJOURNAL_MEANING_H

#include <cstddef>
#include <string_view>

namespace calljournal {

/// What a field of an address book is about, whatever the program that wrote it calls it.
enum class Meaning : unsigned char {
#define CALLJOURNAL_MEANING(name) name,
#include "Meanings.inc"
#undef CALLJOURNAL_MEANING
};

/// The number of meanings; each is below.
std::size_t meaningCount();

/// The name of a meaning, as the table of columns and --map have it: "workPhone".
std::string_view nameOf(Meaning meaning);

/// Finds the meaning of that name, letter by letter; false if there is none.
bool findMeaning(std::string_view name, Meaning& meaning);

}  // namespace calljournal

#endif
