#pragma once

#include <ostream>
#include <string_view>

#include "PrintableText.h"

namespace calljournal {

/// Says on `err`, as the program, what went wrong, on one line whatever is in the sentence.
inline void printError(std::ostream& err, std::string_view sentence) {
    err << "calljournal: " << printable(sentence) << '\n';
}

}  // namespace calljournal
