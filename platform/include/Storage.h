#ifndef CALLJOURNAL_STORAGE_H
#define CALLJOURNAL_STORAGE_H

#include <cstdint>
#include <string>

/// File storage of the platform. Sizes are in bytes and saturate at 2^32 - 1.
namespace Storage {

/// Returns the space that a user may still fill on the storage that holds `directory`, or would hold it: the nearest
/// existing ancestor answers for a missing one.
std::uint32_t UserDiskSpace(const std::string& directory);

/// Returns the size of the file at `path`; 0 if there is none.
std::uint32_t fileSize(std::string path);

/// Removes the file at `path`. Directories stay, a missing file is no failure, and nothing is thrown.
void deleteFile_noEx(const std::string& path);

}  // namespace Storage

#endif
