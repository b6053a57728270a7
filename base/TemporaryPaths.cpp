#include "TemporaryPaths.h"

#include <filesystem>
#include <set>
#include <system_error>

namespace calljournal {

namespace {

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
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    registry().paths.clear();
}

}  // namespace calljournal
