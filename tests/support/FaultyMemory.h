#pragma once

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <new>

/// The `new` of a test program, which fails on purpose and counts. Link `faulty_memory` to have it.
struct Memory {
    static constexpr std::size_t any = std::numeric_limits<std::size_t>::max();

    std::size_t longest = any;  ///< A longer piece cannot be had.
    std::size_t left = any;     ///< How many pieces can be had before failures.
    std::size_t failures = 0;   ///< How many cannot be had after those.
};

extern Memory memory;

/// How many pieces are in use. Equal numbers before and after some work: it leaks nothing.
long piecesInUse();

/// How many pieces were refused since the program began.
std::size_t refusedPieces();

/// Has the piece at each place in turn be missing - alone, then with all that follow - from `work`, which gets a fresh
/// state from `prepare` each time, until it gets by with what is there. `check` is told whether `work` threw, with all
/// memory there again. Returns false at the first leak: the pieces in use before and after differ.
template <class Prepare, class Work, class Check>
bool failAtEachPiece(Prepare prepare, Work work, Check check) {
    const auto attempt = [&](std::size_t place, std::size_t failures) {
        auto state = prepare();
        bool hasThrown = false;
        memory.left = place;
        memory.failures = failures;
        try {
            work(state);
        } catch (const std::bad_alloc&) {
            hasThrown = true;
        }
        const bool hasFailed = memory.failures < failures;
        memory = Memory();
        check(state, hasThrown);
        return hasFailed;
    };
    attempt(Memory::any, 0);  // what is set up once and kept is no leak
    for (const std::size_t failures : {std::size_t{1}, Memory::any}) {
        bool hasFailed = true;
        for (std::size_t place = 0; hasFailed; ++place) {
            const long before = piecesInUse();
            hasFailed = attempt(place, failures);
            if (piecesInUse() != before) {
                return false;
            }
        }
    }
    return true;
}
