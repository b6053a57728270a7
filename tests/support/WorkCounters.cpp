#include "WorkCounters.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

WorkCounters counters;

}  // namespace

WorkCounters& workCounters() {
    return counters;
}

extern "C" void __sanitizer_cov_trace_pc() {
    ++counters.blocks;
}

// Takes the place of the C library's for all libraries of the program. Sanitizers start up through it and cannot watch
// it; `volatile` keeps the compiler from making a call of memmove of the loops.
extern "C" __attribute__((no_sanitize("address", "undefined"))) void* memmove(void* to, const void* from,
                                                                              std::size_t size) noexcept {
    counters.movedBytes += size;
    const auto source = static_cast<const volatile char*>(from);
    const auto target = static_cast<volatile char*>(to);
    if (to < from) {
        for (std::size_t index = 0; index < size; ++index) {
            target[index] = source[index];
        }
    } else {
        for (std::size_t index = size; index > 0; --index) {
            target[index - 1] = source[index - 1];
        }
    }
    return to;
}

void* operator new(std::size_t size) {
    ++counters.allocations;
    counters.allocatedBytes += size;
    const bool failing = counters.allocationsUntilFailure == 0;
    if (counters.allocationsUntilFailure >= 0) {
        --counters.allocationsUntilFailure;
    }
    void* const memory = failing ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
