#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace calljournal {

enum class Severity {
    damage,  ///< Something is refused, lost or read as something else.
    quirk,   ///< Odd, and yet the reader of this text takes it as it is meant.
};

/// What can be found in a text: a row each of the table in FindingKinds.inc.
enum class FindingKind {
#define FINDING(kind, severity, sentence) kind,
#include "FindingKinds.inc"
#undef FINDING
};

/// What the text in which something was found is read as.
enum class Outcome {
    unknown,    ///< Nobody read it, or the kind says it.
    unchanged,  ///< As it is.
    changed,    ///< As the last value of the finding.
};

/// Where something was found. The views point into the text.
struct Place {
    std::size_t at = 0;              ///< Byte offset.
    std::size_t entry = 0;           ///< From 1; 0 outside of entries and in an entry that is the whole text.
    std::string_view uniqueId = {};  ///< Of the entry; empty if it has none.
    std::size_t call = 0;            ///< From 1; 0 outside of calls.
    std::string_view element = {};   ///< The name of the element whose text it is in; empty for anything else.

    Place movedTo(std::size_t offset) const {
        Place place = *this;
        place.at = offset;
        return place;
    }
};

/// Something that was found in a text.
struct Finding {
    FindingKind kind;
    Place place;
    std::vector<std::string> values;  ///< Of the sentence, as they are in the text or as they are read.
    Outcome outcome = Outcome::unknown;

    Severity severity() const;
};

/// What a value is in a sentence.
enum class ValueUse {
    text,  ///< In quotes; may be long.
    id,    ///< May be long.
    name,  ///< Of an element, a schema, ...
};

/// Returns `value` as a front end shows it: escaped, shortened.
using ShowValue = std::string (*)(std::string_view value, ValueUse use);

/// "entry 2 (UniqueId 7), call 1: Number: raw \"&\", which an XML text holds as &amp;". The byte offset is left out.
std::string sentenceOf(const Finding& finding, ShowValue show);

}  // namespace calljournal
