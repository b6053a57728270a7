#ifndef CALLJOURNAL_DETAIL_BYTES_H
#define CALLJOURNAL_DETAIL_BYTES_H

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

namespace calljournal {
namespace detail {

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
CALLJOURNAL_INLINE bool isText(std::string_view text, std::string_view other) {
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

/// Returns the first of `bytes` among the sixteen bytes at `block`, or null.
template <class... Byte>
const char* findInBlock(const char* block, Byte... bytes) {
#ifdef __SSE2__
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
    const int matches = _mm_movemask_epi8((... | _mm_cmpeq_epi8(text, _mm_set1_epi8(bytes))));
    return matches == 0 ? nullptr : block + __builtin_ctz(static_cast<unsigned>(matches));
#else
    const char* found = nullptr;
    std::size_t size = 16;
    for (const char byte : {bytes...}) {
        if (const void* place = std::memchr(block, byte, size)) {
            found = static_cast<const char*>(place);
            size = static_cast<std::size_t>(found - block);
        }
    }
    return found;
#endif
}

/// Returns the place of the first of `bytes` from `at` on, or `end`.
template <class... Byte>
const char* findAny(const char* at, const char* end, Byte... bytes) {
    for (; end - at >= 16; at += 16) {
        if (const char* found = findInBlock(at, bytes...)) {
            return found;
        }
    }
    while (at != end && ((*at != bytes) && ...)) {
        ++at;
    }
    return at;
}

}  // namespace detail
}  // namespace calljournal

#endif
