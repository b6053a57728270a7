#pragma once

#include <ostream>
#include <string_view>

namespace calljournal {

/// Says on `err`, as the program, what went wrong.
inline void printError(std::ostream& err, std::string_view sentence) {
    err << "calljournal: " << sentence << '\n';
}

}  // namespace calljournal
