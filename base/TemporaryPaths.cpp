#include "TemporaryPaths.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <system_error>

namespace calljournal {

namespace {

constexpr int mostAttempts = 1000;

struct Registry {
    std::mutex mutex;
    std::set<std::string> paths;
};

Registry& registry() {
    static Registry all;
    return all;
}

/// Where the environment wants temporary files.
std::filesystem::path temporaryPlace() {
    for (const char* const variable : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"}) {
        if (const char* const folder = std::getenv(variable)) {
            return folder;
        }
    }
    return "/tmp";
}

}  // namespace

std::string temporaryPattern(const std::string& purpose) {
    return (temporaryPlace() / ("calljournal-" + purpose + "-XXXXXX")).string();
}

void throwNoTemporary(const std::string& pattern) {
    const int reason = errno;
    throw std::system_error(reason, std::generic_category(),
                            "no temporary file can be made in " +
                                std::filesystem::path(pattern).parent_path().string() +
                                " (set TMPDIR to another folder)");
}

std::string makeTemporary(const std::function<std::string()>& make) {
    const std::unique_lock<std::mutex> hold = holdTemporaries();
    return *registry().paths.insert(make()).first;
}

void forgetTemporary(const std::string& path) {
    const std::unique_lock<std::mutex> hold = holdTemporaries();
    registry().paths.erase(path);
}

std::unique_lock<std::mutex> holdTemporaries() {
    return std::unique_lock<std::mutex>(registry().mutex);
}

void removeTemporaries(const std::unique_lock<std::mutex>&) {
    for (const std::string& path : registry().paths) {
        // Another thread may put something into a folder just when it is empty and about to go.
        std::error_code failure;
        for (int attempt = 0; attempt == 0 || (failure && attempt < mostAttempts); ++attempt) {
            std::filesystem::remove_all(path, failure);
        }
    }
    registry().paths.clear();
}

}  // namespace calljournal
