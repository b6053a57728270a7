#pragma once

#include <chrono>
#include <string>
#include <vector>

/// What a program printed before it ended or was killed.
struct KilledRun {
    bool wasKilled;  ///< Else it ended by itself, in time.
    std::string out;
};

/// Runs `arguments` (program first) and kills it after `delay`, with no chance to do anything about it.
KilledRun runAndKill(const std::vector<std::string>& arguments, std::chrono::microseconds delay);
