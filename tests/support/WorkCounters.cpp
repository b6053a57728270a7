#include "WorkCounters.h"

#include <cstddef>
#include <cstdlib>
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
