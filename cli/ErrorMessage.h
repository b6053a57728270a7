#pragma once

#include <ostream>
#include <string>

namespace calljournal {

/// Says on `err`, as the program, what went wrong.
inline void printError(std::ostream& err, const std::string& sentence) {
    err << "calljournal: " << sentence << '\n';
}

}  // namespace calljournal
