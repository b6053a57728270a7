#include "Storage.h"

#include <cstddef>
#include <filesystem>
#include <limits>
#include <linux/limits.h>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "HostPlatform.h"

namespace {

/// What the phone calls its user data partition.
const char phoneData[] = "/data";
constexpr std::size_t phoneDataLength = sizeof(phoneData) - 1;

std::string& dataDirectory() {
    static std::string directory;
    return directory;
}

std::uint32_t saturated(std::uintmax_t size) {
    constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    return size > most ? most : static_cast<std::uint32_t>(size);
}

/// Returns whether the operating system would take `path` whole: a zero byte ends a path, and what is before it is
/// another file; and nothing is as long as PATH_MAX.
bool isPath(const std::string& path) {
    return path.size() < PATH_MAX && path.find('\0') == std::string::npos;
}

/// Returns where this machine keeps what the phone has in `directory`.
std::string placeOnHost(const std::string& directory) {
    const bool isBelowData = directory.compare(0, phoneDataLength, phoneData) == 0 &&
                             (directory.size() == phoneDataLength || directory[phoneDataLength] == '/');
    if (!isBelowData || dataDirectory().empty()) {
        return directory;
    }
    return dataDirectory() + directory.substr(phoneDataLength);
}

/// Cuts the last component off. "" (the current directory) and "/" have none: false.
bool cutToParent(std::string& path) {
    if (path.empty() || path == "/") {
        return false;
    }
    const std::size_t slash = path.rfind('/');
    path.resize(slash == std::string::npos ? 0 : slash == 0 ? 1 : slash);
    return true;
}

}  // namespace

void calljournal::setDataDirectory(const std::string& directory) {
    dataDirectory() = directory;
}

std::uint32_t Storage::UserDiskSpace(const std::string& directory) {
    std::string path = placeOnHost(directory);
    do {
        if (isPath(path)) {
            std::error_code error;
            const std::filesystem::space_info space = std::filesystem::space(path.empty() ? "." : path, error);
            if (!error) {
                return saturated(space.available);
            }
        }
    } while (cutToParent(path));
    return 0;
}

std::uint32_t Storage::fileSize(std::string path) {
    if (!isPath(path)) {
        return 0;
    }
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(std::move(path), error);
    return error ? 0 : saturated(size);
}

void Storage::deleteFile_noEx(const std::string& path) {
    // Unlike a check before a removal, this one call leaves directories alone and a link's target, too, whatever
    // happens to the path meanwhile.
    if (isPath(path)) {
        ::unlink(path.c_str());
    }
}
