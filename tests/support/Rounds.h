#pragma once

#include <cstdlib>

/// How many rounds of a random test are tried: a tenth of `count` where each of them takes some twenty times as long,
/// under an emulator and wherever CALLJOURNAL_SLOW is set, as script/check/memcheck does; CALLJOURNAL_SOAK times as many
/// where somebody runs them for long.
inline unsigned rounds(unsigned count) {
#ifdef CALLJOURNAL_EMULATED
    const bool isSlow = true;
#else
    static const bool isSlow = std::getenv("CALLJOURNAL_SLOW") != nullptr;
#endif
    const char* const factor = std::getenv("CALLJOURNAL_SOAK");
    return isSlow ? count / 10 : factor == nullptr ? count : count * static_cast<unsigned>(std::atoi(factor));
}
