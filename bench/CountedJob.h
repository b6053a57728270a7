#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <valgrind/callgrind.h>

#include "CallListDatabaseAdapterHelper.h"
#include "Data.h"

/// A program that runs one job once, for script/check/bench-count: `PROGRAM JOB FORM N`. Instructions are counted by
/// callgrind, which collects while the job itself runs; allocations are counted by the program. It prints
/// "BYTES ENTRIES ALLOCATIONS KEPT", KEPT being the allocations that the result itself takes.
namespace bench {

/// Returns how often the program has called operator new.
std::uint64_t allocationsSoFar();

template <class Work>
std::size_t allocationsOf(const Work& work) {
    const std::uint64_t before = allocationsSoFar();
    work();
    return allocationsSoFar() - before;
}

/// What is measured: `work` alone. Returns its allocations.
template <class Work>
std::size_t measure(const Work& work) {
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_TOGGLE_COLLECT;
    const std::size_t count = allocationsOf(work);
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_STOP_INSTRUMENTATION;
    return count;
}

struct Result {
    std::size_t bytes;
    std::size_t entries;
    std::size_t allocations;
    std::size_t kept;
};

struct Size {
    Form form;
    std::size_t count;
};

inline void demand(bool isRight) {
    if (!isRight) {
        std::fprintf(stderr, "bench_count: the result is wrong\n");
        std::exit(1);
    }
}

using Jobs = std::map<std::string, Result (*)(Size)>;

inline int runJob(int argc, char** argv, const Jobs& jobs) {
    const auto job = argc == 4 ? jobs.find(argv[1]) : jobs.end();
    if (job == jobs.end()) {
        std::fprintf(stderr, "usage: %s JOB full|mixed N\n", argv[0]);
        return 2;
    }
    CallListDatabaseAdapterHelper::init();
    const Form form = std::string(argv[2]) == "full" ? Form::full : Form::mixed;
    const Result result = job->second({form, static_cast<std::size_t>(std::atol(argv[3]))});
    std::printf("%zu %zu %zu %zu\n", result.bytes, result.entries, result.allocations, result.kept);
    return 0;
}

}  // namespace bench
