#pragma once

#include <string>

#include "Salvage.h"

namespace calljournal {

/// salvageStore() for a SQLite file.
Salvage salvageSqliteStore(const std::string& url);

}  // namespace calljournal
