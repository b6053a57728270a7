#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace calljournal::detail {

/// Returns column `index` of a record; a column that the record does not have is empty.
inline const std::string& columnOf(const std::vector<std::string>& columns, std::size_t index) {
    static const std::string none;
    return index < columns.size() ? columns[index] : none;
}

}  // namespace calljournal::detail
