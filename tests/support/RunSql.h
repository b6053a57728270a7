#pragma once

#include <string>

/// Runs `sql` on the SQLite file of a store, whose pages keep their checksums, and returns the values of all rows, each
/// followed by a line feed. Throws std::runtime_error if it fails.
std::string runSql(const std::string& file, const std::string& sql);
