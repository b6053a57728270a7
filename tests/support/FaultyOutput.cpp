// Loaded in front of a program's libraries, fails one of its writes or synchronisations as a disk would. The variable
// CALLJOURNAL_FAULT says which: "write 3" is the third write, "full 3" that one, of which half is done, and all after it,
// "sync 3" the third synchronisation, "close 1" the end of standard output. The file that CALLJOURNAL_FAULT_MARK names is
// made when it happens. Standard error works.

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

std::atomic<int> writes{0};
std::atomic<int> synchronisations{0};

struct Fault {
    char kind[8] = "";
    int number = 0;
};

Fault readFault() {
    Fault fault;
    const char* const text = std::getenv("CALLJOURNAL_FAULT");
    if (text == nullptr || std::sscanf(text, "%7s %d", fault.kind, &fault.number) != 2) {
        std::abort();
    }
    return fault;
}

const Fault& theFault() {
    static const Fault fault = readFault();
    return fault;
}

bool isKind(const Fault& fault, const char* kind) {
    return std::strcmp(fault.kind, kind) == 0;
}

void mark() {
    const char* const file = std::getenv("CALLJOURNAL_FAULT_MARK");
    ::syscall(SYS_close, ::open(file, O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
}

/// Returns how many of `length` bytes are to be written; -1 with errno if that fails.
ssize_t allowed(int descriptor, std::size_t length) {
    const Fault& fault = theFault();
    if (descriptor == STDERR_FILENO) {
        return static_cast<ssize_t>(length);
    }
    const int number = ++writes;
    const bool isFull = isKind(fault, "full");
    if (isFull ? number < fault.number : !isKind(fault, "write") || number != fault.number) {
        return static_cast<ssize_t>(length);
    }
    mark();
    if (isFull && number == fault.number && length > 1) {
        return static_cast<ssize_t>(length / 2);
    }
    errno = ENOSPC;
    return -1;
}

bool isSynchronised() {
    const Fault& fault = theFault();
    if (++synchronisations != fault.number || !isKind(fault, "sync")) {
        return true;
    }
    mark();
    errno = EIO;
    return false;
}

}  // namespace

extern "C" {

ssize_t write(int descriptor, const void* bytes, std::size_t length) {
    const ssize_t part = allowed(descriptor, length);
    return part < 0 ? part : ::syscall(SYS_write, descriptor, bytes, part);
}

ssize_t writev(int descriptor, const iovec* pieces, int count) {
    return allowed(descriptor, 1) < 0 ? -1 : ::syscall(SYS_writev, descriptor, pieces, count);
}

ssize_t pwrite64(int descriptor, const void* bytes, std::size_t length, off64_t place) {
    const ssize_t part = allowed(descriptor, length);
    return part < 0 ? part : ::syscall(SYS_pwrite64, descriptor, bytes, part, place);
}

ssize_t pwrite(int descriptor, const void* bytes, std::size_t length, off_t place) {
    return pwrite64(descriptor, bytes, length, place);
}

int close(int descriptor) {
    const Fault& fault = theFault();
    if (descriptor != STDOUT_FILENO || !isKind(fault, "close") || fault.number != 1) {
        return static_cast<int>(::syscall(SYS_close, descriptor));
    }
    mark();
    errno = EDQUOT;
    return -1;
}

int fsync(int descriptor) {
    return isSynchronised() ? static_cast<int>(::syscall(SYS_fsync, descriptor)) : -1;
}

int fdatasync(int descriptor) {
    return isSynchronised() ? static_cast<int>(::syscall(SYS_fdatasync, descriptor)) : -1;
}

int syncfs(int descriptor) noexcept {
    return isSynchronised() ? static_cast<int>(::syscall(SYS_syncfs, descriptor)) : -1;
}
}
