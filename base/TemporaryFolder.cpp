#include "TemporaryFolder.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "TemporaryPaths.h"

namespace calljournal {

namespace {

namespace fs = std::filesystem;

/// Whether mkdtemp() may have made `name` by `pattern`.
bool fits(const std::string& name, const std::string& pattern) {
    const std::size_t same = pattern.find_last_of('-') + 1;
    return name.size() == pattern.size() && name.compare(0, same, pattern, 0, same) == 0;
}

int openFolder(const fs::path& path) {
    return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

bool isForThisUserAlone(int folder) {
    struct stat status = {};
    constexpr mode_t permissions = 0777;
    return ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() && (status.st_mode & permissions) == S_IRWXU;
}

/// Removes the folders of processes that were killed: the lock of a process ends with it.
void removeLeftFolders(const fs::path& pattern) {
    std::error_code ignored;
    for (fs::directory_iterator entry(pattern.parent_path(), ignored), end; entry != end; entry.increment(ignored)) {
        const fs::path& path = entry->path();
        if (fits(path.filename(), pattern.filename())) {
            const int folder = openFolder(path);
            if (isForThisUserAlone(folder) && ::flock(folder, LOCK_EX | LOCK_NB) == 0) {
                fs::remove_all(path, ignored);
            }
            ::close(folder);
        }
    }
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
    const std::string pattern = temporaryPattern("run");
    removeLeftFolders(pattern);
    path_ = makeTemporary([&] { return make(pattern); });
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    forgetTemporary(path_.string());
    ::close(lock_);
}

/// Another process may take the folder for one that was left until it is locked; then it is made again.
std::string TemporaryFolder::make(const std::string& pattern) {
    for (;;) {
        std::string path = pattern;
        if (::mkdtemp(path.data()) == nullptr) {
            throwNoTemporary(pattern);
        }
        lock_ = openFolder(path);
        ::flock(lock_, LOCK_EX);
        if (fs::exists(path)) {
            // Without links, so that it is the name the system knows its files by.
            return fs::canonical(path).string();
        }
        ::close(lock_);
    }
}

}  // namespace calljournal
