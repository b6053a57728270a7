#ifndef CALLJOURNAL_WELLFORMED_H
#define CALLJOURNAL_WELLFORMED_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace calljournal {

/// A place in an XML text that is not well-formed.
struct Defect {
    std::size_t line;    ///< From 1.
    std::size_t column;  ///< In bytes, from 1.
    std::string what;
};

/// Returns the first defect of a run of elements as the journal stores them: plain tags without attributes, texts, and
/// the five predefined entities and character references. Nothing if there is none.
std::optional<Defect> findDefect(const std::string& text);

// The letters of XML that the journal uses.

bool isNameStart(char c);
bool isNamePart(char c);
/// A control character that XML allows nowhere.
bool isForbidden(char c);
/// The length of the predefined entity or character reference at `at`, or 0 if there is none.
std::size_t entityLength(std::string_view text, std::size_t at);

/// "line 1, column 17: <Item> is never closed".
std::string describe(const Defect& defect);

}  // namespace calljournal

#endif
