#pragma once

#include <cstdint>

/// The work that this program has done. Counted, not timed: the same on every run.
struct WorkCounters {
    std::uint64_t blocks = 0;       ///< Basic blocks entered in code that is compiled to report them.
    std::uint64_t allocations = 0;  ///< By operator new.
    std::uint64_t allocatedBytes = 0;
    std::uint64_t movedBytes = 0;               ///< By memmove, in which the blocks entered are not counted.
    std::int64_t allocationsUntilFailure = -1;  ///< How many succeed before one fails; negative: none fails.
};

WorkCounters& workCounters();
