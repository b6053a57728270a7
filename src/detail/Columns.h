#ifndef CALLJOURNAL_DETAIL_COLUMNS_H
#define CALLJOURNAL_DETAIL_COLUMNS_H

#include <cstddef>
#include <string>
#include <vector>

namespace calljournal {
namespace detail {

/// Returns column `index` of a record; a column that the record does not have is empty.
inline const std::string& columnOf(const std::vector<std::string>& columns, std::size_t index) {
    static const std::string none;
    return index < columns.size() ? columns[index] : none;
}

}  // namespace detail
}  // namespace calljournal

#endif
