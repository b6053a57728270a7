#include "FaultyMemory.h"

#include <atomic>
#include <cstdlib>

Memory memory;

namespace {

// A library under test may have threads of its own.
std::atomic<long> inUse{0};
std::atomic<std::size_t> refused{0};

bool isRefused(std::size_t size) {
    if (memory.left > 0) {
        memory.left -= memory.left == Memory::any ? 0 : 1;
        return size > memory.longest;
    }
    if (memory.failures > 0) {
        --memory.failures;
        return true;
    }
    return size > memory.longest;
}

}  // namespace

long piecesInUse() {
    return inUse;
}

std::size_t refusedPieces() {
    return refused;
}

void* operator new(std::size_t size) {
    const bool canBeHad = !isRefused(size);
    void* piece = canBeHad ? std::malloc(size) : nullptr;
    if (piece == nullptr) {
        ++refused;
        throw std::bad_alloc();
    }
    ++inUse;
    return piece;
}

void operator delete(void* piece) noexcept {
    inUse -= piece == nullptr ? 0 : 1;
    std::free(piece);
}

void operator delete(void* piece, std::size_t) noexcept {
    operator delete(piece);
}
