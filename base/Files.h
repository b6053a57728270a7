#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace calljournal {

/// Returns everything from the stream's present place to its end.
std::string readAll(std::istream& in);

/// Writes all of `bytes` to a descriptor, however often a signal interrupts it. Returns false, with the reason in errno,
/// if a write fails; some of the bytes may be written then.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace calljournal
