#pragma once

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>

/// What a fuzz target is made of: LLVMFuzzerTestOneInput states what holds for any input, with FUZZ_CHECK.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Stops the program, which the fuzzer reports, unless the condition holds.
#define FUZZ_CHECK(condition)                                                         \
    do {                                                                              \
        if (!(condition)) {                                                           \
            std::cerr << __FILE__ << ":" << __LINE__ << ": not so: " #condition "\n"; \
            __builtin_trap();                                                         \
        }                                                                             \
    } while (false)

inline std::string textOf(const std::uint8_t* data, std::size_t size) {
    return std::string(reinterpret_cast<const char*>(data), size);
}

/// Reads numbers off the input; zeros once it is used up.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool isEmpty() const { return rest_.empty(); }

    unsigned byte() {
        if (rest_.empty()) {
            return 0;
        }
        const unsigned char first = static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(1);
        return first;
    }

    std::string rest() const { return std::string(rest_); }

private:
    std::string_view rest_;
};
