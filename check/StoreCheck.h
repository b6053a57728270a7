#pragma once

#include <vector>

#include "Finding.h"
#include "Store.h"

namespace calljournal {

/// Compares what the entries of `store` are found by with what they are, and looks through its file. `store` was opened
/// with indexEntry. The places of the findings are empty: they are in no text. Throws StoreError.
std::vector<Finding> checkIndex(Store& store);

}  // namespace calljournal
