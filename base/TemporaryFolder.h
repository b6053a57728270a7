#pragma once

#include <filesystem>
#include <string>

namespace calljournal {

/// A folder for this user alone that goes with the object, whatever is in it, and when a signal ends the process (see
/// TemporaryPaths.h). If the process is killed before that, the next object of any process of the user removes it.
class TemporaryFolder {
public:
    /// Throws std::system_error if none can be made.
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }

private:
    std::string make(const std::string& pattern);

    int lock_ = -1;  ///< The folder itself, locked: it is in use.
    std::filesystem::path path_;
};

}  // namespace calljournal
