#include "Faults.h"

#include <cerrno>
#include <sqlite3.h>
#include <sys/syscall.h>
#include <unistd.h>

Disk disk;

namespace {

int synchronise(int descriptor) {
    ++disk.syncs;
    if (disk.syncError != 0) {
        ++disk.failedOperations;
        errno = disk.syncError;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

/// Returns whether the next write fails, and sets errno if it does.
bool writeFails() {
    if (disk.writeError == 0 || disk.writesLeft-- > 0 || disk.errorsLeft-- <= 0) {
        return false;
    }
    ++disk.failedOperations;
    errno = disk.writeError;
    return true;
}

ssize_t faultyWrite(int descriptor, const void* data, size_t size) {
    return writeFails() ? -1 : write(descriptor, data, size);
}

ssize_t faultyPwrite(int descriptor, const void* data, size_t size, off_t offset) {
    return writeFails() ? -1 : pwrite(descriptor, data, size, offset);
}

/// Its offset is longer where addresses have 32 bits.
ssize_t faultyPwrite64(int descriptor, const void* data, size_t size, off64_t offset) {
    return writeFails() ? -1 : pwrite64(descriptor, data, size, offset);
}

}  // namespace

void installFaultyDisk() {
    sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
    vfs->xSetSystemCall(vfs, "write", reinterpret_cast<sqlite3_syscall_ptr>(faultyWrite));
    vfs->xSetSystemCall(vfs, "pwrite", reinterpret_cast<sqlite3_syscall_ptr>(faultyPwrite));
    vfs->xSetSystemCall(vfs, "pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(faultyPwrite64));
}

void repairDisk() {
    disk.syncError = 0;
    disk.writeError = 0;
    disk.errorsLeft = INT_MAX;
    disk.failedOperations = 0;
}

// SQLite has no way to replace these two; the program's own take the place of the C library's.
extern "C" int fsync(int descriptor) {
    return synchronise(descriptor);
}

extern "C" int fdatasync(int descriptor) {
    return synchronise(descriptor);
}
