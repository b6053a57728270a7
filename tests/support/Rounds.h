#ifndef ROUNDS_H
#define ROUNDS_H

/// How many rounds of a random test are tried: under an emulator, which is some twenty times slower, a tenth of `count`.
constexpr unsigned rounds(unsigned count) {
#ifdef CALLJOURNAL_EMULATED
    return count / 10;
#else
    return count;
#endif
}

#endif
