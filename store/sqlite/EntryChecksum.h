#pragma once

#include <string_view>

namespace calljournal {

/// Returns a number from 0 to 2^32 - 1 that changes with what is stored of an entry: a database notices a broken page, not
/// a changed letter. Stored; it stays what it is. It is no protection against changes on purpose.
long long entryChecksum(std::string_view schema, std::string_view id, long long place, std::string_view body);

}  // namespace calljournal
