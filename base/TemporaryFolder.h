#pragma once

#include <filesystem>
#include <string>

namespace calljournal {

/// A folder for this user alone that goes with the object, whatever is in it, and when a signal ends the process (see
/// TemporaryPaths.h).
class TemporaryFolder {
public:
    /// Throws std::system_error if none can be made. `purpose` becomes a part of its name.
    explicit TemporaryFolder(const std::string& purpose);
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace calljournal
