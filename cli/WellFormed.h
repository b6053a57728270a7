#ifndef CALLJOURNAL_WELLFORMED_H
#define CALLJOURNAL_WELLFORMED_H

#include <cstddef>
#include <optional>
#include <string>

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

/// "line 1, column 17: <Item> is never closed".
std::string describe(const Defect& defect);

}  // namespace calljournal

#endif
