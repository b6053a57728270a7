#pragma once

#include <csignal>
#include <sys/resource.h>

/// While the object lives, no file may grow beyond a size, as on a disk that is full.
class LargestFile {
public:
    explicit LargestFile(rlim_t size) : before_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &limit_);
        const rlimit smaller = {size, limit_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &smaller);
    }
    LargestFile(const LargestFile&) = delete;
    LargestFile& operator=(const LargestFile&) = delete;
    ~LargestFile() {
        ::setrlimit(RLIMIT_FSIZE, &limit_);
        std::signal(SIGXFSZ, before_);
    }

private:
    void (*before_)(int);
    rlimit limit_ = {};
};
