#include "TemporaryPaths.h"

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

}  // namespace

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
