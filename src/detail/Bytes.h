#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// Where the compiler's own judgement of what to put into the middle of a busy function costs measurably.
#define CALLJOURNAL_INLINE inline __attribute__((always_inline))
#ifdef __OPTIMIZE_SIZE__
#define CALLJOURNAL_FLAT
#else
#define CALLJOURNAL_FLAT __attribute__((flatten))
#endif
#define CALLJOURNAL_APART __attribute__((noinline))
#define CALLJOURNAL_RARE __attribute__((noinline, cold))

namespace calljournal::detail {

// Tags, words and most values are short. For them a few reads of fixed size take fewer steps than a call of the library
// function, which longer texts are left to.

/// Whether both ends of two texts, `size` bytes each, are the same. The ends may overlap.
template <std::size_t size>
bool sameEnds(const char* first, const char* second, std::size_t length) {
    const std::size_t last = length - size;
    return std::memcmp(first, second, size) == 0 && std::memcmp(first + last, second + last, size) == 0;
}

inline bool sameBytes(const char* first, const char* second, std::size_t length) {
    if (length - 8 <= 8) {
        return sameEnds<8>(first, second, length);
    }
    if (length - 16 <= 16) {
        return sameEnds<16>(first, second, length);
    }
    if (length - 4 <= 4) {
        return sameEnds<4>(first, second, length);
    }
    return length == 0 || std::memcmp(first, second, length) == 0;
}

/// Whether `text` is the constant `other`, whose length the compiler knows.
CALLJOURNAL_INLINE bool isConstant(std::string_view text, std::string_view other) {
    return text.size() == other.size() && std::memcmp(text.data(), other.data(), other.size()) == 0;
}

/// Copies both ends of a text, `size` bytes each. The ends may overlap.
template <std::size_t size>
void copyEnds(char* out, const char* text, std::size_t length) {
    const std::size_t last = length - size;
    std::memcpy(out, text, size);
    std::memcpy(out + last, text + last, size);
}

inline void copyBytes(char* out, const char* text, std::size_t length) {
    if (length - 8 <= 8) {
        copyEnds<8>(out, text, length);
    } else if (length - 16 <= 16) {
        copyEnds<16>(out, text, length);
    } else if (length - 4 <= 4) {
        copyEnds<4>(out, text, length);
    } else {
        std::memcpy(out, text, length);
    }
}

/// Returns the place of the first of `bytes` from `at` on, or `end`.
template <class... Byte>
const char* findAny(const char* at, const char* end, Byte... bytes) {
#ifdef __SSE2__
    for (; end - at >= 16; at += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const int matches = _mm_movemask_epi8((... | _mm_cmpeq_epi8(block, _mm_set1_epi8(bytes))));
        if (matches != 0) {
            return at + __builtin_ctz(static_cast<unsigned>(matches));
        }
    }
    while (at != end && ((*at != bytes) && ...)) {
        ++at;
    }
    return at;
#else
    // Piece by piece: one of the bytes may be far away while another one comes again and again.
    constexpr std::ptrdiff_t pieceSize = 64;
    while (at != end) {
        const char* const pieceEnd = end - at > pieceSize ? at + pieceSize : end;
        const char* first = pieceEnd;
        for (const char byte : {bytes...}) {
            const void* found = std::memchr(at, byte, static_cast<std::size_t>(first - at));
            first = found == nullptr ? first : static_cast<const char*>(found);
        }
        if (first != pieceEnd) {
            return first;
        }
        at = pieceEnd;
    }
    return end;
#endif
}

}  // namespace calljournal::detail
