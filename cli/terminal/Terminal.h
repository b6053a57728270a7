#pragma once

#include <cstddef>

namespace calljournal {

/// Whether standard output goes to a terminal.
bool isTerminal();

/// The columns of that terminal (or of the environment's COLUMNS); 0 where there is no limit.
std::size_t terminalWidth();

}  // namespace calljournal
