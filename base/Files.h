#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace calljournal {

/// As much as is read of an input whose size is not known, so that one without an end, such as /dev/zero, has one.
constexpr std::uint64_t mostInput = std::uint64_t{256} << 20;

/// What is wrong with an input of more than `most` bytes, for a sentence after its name.
std::string tooMuchInput(std::uint64_t most = mostInput);

/// "256 MiB"; "5 bytes" where it is no whole number of these.
std::string sizeText(std::uint64_t bytes);

/// Hands `use` everything from the stream's present place to its end, piece by piece. Throws std::runtime_error if it
/// cannot be read or was not opened; `what()` is for a sentence after its name: "cannot be read (Is a directory)".
void readPieces(std::istream& in, const std::function<void(std::string_view)>& use);

/// Returns everything from the stream's present place to its end. Throws as readPieces does, and for more than
/// mostInput where the size is not known before.
std::string readAll(std::istream& in);

/// Writes all of `bytes` to a descriptor, however often a signal interrupts it or a pipe has no room at once. Returns
/// false, with the reason in errno, if a write fails; some of the bytes may be written then.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace calljournal
