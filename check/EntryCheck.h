#ifndef CALLJOURNAL_ENTRYCHECK_H
#define CALLJOURNAL_ENTRYCHECK_H

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "KindDescriptor.h"
#include "Outline.h"

namespace calljournal {

/// Something wrong at a place of a text.
struct Finding {
    std::size_t at;  ///< Byte offset.
    std::string what;
};

/// What was found in a text, and which of its syntax errors are reported already.
struct Findings {
    explicit Findings(const Outline& outline);

    void add(std::size_t at, const std::string& place, const std::string& what);

    std::vector<Finding> all;
    std::map<std::size_t, std::vector<const SyntaxError*>> errorsOf;  ///< By element.
    std::set<const SyntaxError*> told;
};

/// Who reads the entries of a text.
enum class Reader { decoder, missedList };

/// Where an entry stands and what its reader made of it.
struct EntryUnderCheck {
    const KindDescriptor& kind;
    Reader reader;
    std::vector<std::size_t> elements;  ///< Its elements at the top level.
    std::size_t at;                     ///< Where it begins.
    std::string place;                  ///< "entry 2 (UniqueId 7)", or empty for the only entry of a text.
    const EntryValues* values;          ///< Null if it was not read at all.
    bool isServedByStore;               ///< The store serves pictures by the name that is read, whatever stands here.
};

/// Compares what the text of an entry says with what its reader made of it, and names each reason for which the two
/// differ or could differ.
void checkEntry(const Outline& outline, const EntryUnderCheck& entry, Findings& findings);

/// Finds text in `element` (or in the whole text, for noElement) that belongs to no element inside it; tells the first.
/// Returns whether there is any.
bool checkGaps(const Outline& outline, std::size_t element, const std::string& place, Findings& findings);

/// `text` in quotes, made visible, and shortened where it is long.
std::string quoted(std::string_view text);

}  // namespace calljournal

#endif
