#include <algorithm>
#include <limits>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "Storage.h"

namespace {

std::uint32_t saturated(unsigned long long size) {
    return static_cast<std::uint32_t>(std::min<unsigned long long>(size, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

// The library asks for "/data/". Here user data lives below the current directory.
std::uint32_t Storage::UserDiskSpace(const std::string&) {
    struct statvfs space;
    if (::statvfs(".", &space) != 0) {
        return 0;
    }
    return saturated(static_cast<unsigned long long>(space.f_bavail) * space.f_frsize);
}

std::uint32_t Storage::fileSize(std::string path) {
    struct stat file;
    return ::stat(path.c_str(), &file) == 0 ? saturated(static_cast<unsigned long long>(file.st_size)) : 0;
}

void Storage::deleteFile_noEx(const std::string& path) {
    ::unlink(path.c_str());
}
