#ifndef CALLJOURNAL_DETAIL_CONTACTCOLUMNS_H
#define CALLJOURNAL_DETAIL_CONTACTCOLUMNS_H

#include <cstddef>
#include <string>
#include <vector>

namespace calljournal {
namespace detail {

/// The Tamber column, and field, that holds the number to dial by default.
constexpr int defaultDialField = 11;

/// Returns column `index` of a record; a column that the record does not have is empty.
inline std::string columnOf(const std::vector<std::string>& columns, std::size_t index) {
    return index < columns.size() ? columns[index] : std::string();
}

}  // namespace detail
}  // namespace calljournal

#endif
