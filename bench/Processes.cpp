#include "Processes.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void demand(bool isRight, const std::string& what) {
    if (!isRight) {
        std::fprintf(stderr, "bench_journal: %s failed\n", what.c_str());
        std::exit(1);
    }
}

/// Starts a program whose output goes to the descriptor `output`, or to nowhere if that is negative.
pid_t start(const std::vector<std::string>& arguments, int output) {
    std::vector<char*> words;
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (output < 0) {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    } else {
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    }
    pid_t process = 0;
    demand(::posix_spawnp(&process, words.front(), &actions, nullptr, words.data(), environ) == 0, arguments.front());
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

bool succeeds(pid_t process) {
    int status = 0;
    return ::waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string wordsOf(const std::vector<std::string>& arguments) {
    std::string words;
    for (const std::string& argument : arguments) {
        words += words.empty() ? argument : ' ' + argument;
    }
    return words;
}

struct Pipe {
    Pipe() { demand(::pipe2(ends, O_CLOEXEC) == 0, "pipe"); }
    int ends[2];
};

}  // namespace

double millisecondsOfProgram(const std::vector<std::string>& arguments) {
    const auto begin = Clock::now();
    const bool isDone = succeeds(start(arguments, -1));
    const double time = millisecondsSince(begin);
    demand(isDone, wordsOf(arguments));
    return time;
}

std::size_t linesOfProgram(const std::vector<std::string>& arguments) {
    const Pipe pipe;
    const pid_t process = start(arguments, pipe.ends[1]);
    ::close(pipe.ends[1]);
    std::size_t lines = 0;
    char bytes[4096];
    for (ssize_t size = 0; (size = ::read(pipe.ends[0], bytes, sizeof bytes)) > 0;) {
        for (ssize_t i = 0; i < size; ++i) {
            lines += bytes[i] == '\n' ? 1U : 0U;
        }
    }
    ::close(pipe.ends[0]);
    demand(succeeds(process), wordsOf(arguments));
    return lines;
}

double millisecondsOfProcesses(std::size_t count, const std::function<std::function<void()>(std::size_t)>& prepare) {
    const Pipe ready;
    const Pipe go;
    std::vector<pid_t> processes;
    std::fflush(stdout);
    for (std::size_t i = 0; i < count; ++i) {
        const pid_t process = ::fork();
        demand(process >= 0, "fork");
        if (process == 0) {
            ::close(go.ends[1]);
            const std::function<void()> work = prepare(i);
            char byte = 0;
            const bool isStarted = ::write(ready.ends[1], "", 1) == 1 && ::read(go.ends[0], &byte, 1) == 0;
            if (isStarted) {
                work();
            }
            ::_exit(isStarted ? 0 : 1);
        }
        processes.push_back(process);
    }
    ::close(ready.ends[1]);
    char byte = 0;
    for (std::size_t i = 0; i < count; ++i) {
        demand(::read(ready.ends[0], &byte, 1) == 1, "a process");
    }
    const auto begin = Clock::now();
    ::close(go.ends[1]);  // what they all wait for
    bool isDone = true;
    for (const pid_t process : processes) {
        isDone = succeeds(process) && isDone;
    }
    const double time = millisecondsSince(begin);
    demand(isDone, "a process");
    ::close(ready.ends[0]);
    ::close(go.ends[0]);
    return time;
}

RunningProgram::RunningProgram(const std::vector<std::string>& arguments) {
    const Pipe pipe;
    process_ = start(arguments, pipe.ends[1]);
    output_ = pipe.ends[0];
    ::close(pipe.ends[1]);
}

RunningProgram::~RunningProgram() {
    ::kill(process_, SIGINT);
    succeeds(process_);
    ::close(output_);
}

std::string RunningProgram::nextLine() {
    std::size_t end = 0;
    while ((end = read_.find('\n')) == std::string::npos) {
        pollfd wanted = {output_, POLLIN, 0};
        char bytes[4096];
        const ssize_t size = ::poll(&wanted, 1, 60000) == 1 ? ::read(output_, bytes, sizeof bytes) : 0;
        demand(size > 0, "waiting for a line");
        read_.append(bytes, static_cast<std::size_t>(size));
    }
    std::string line = read_.substr(0, end);
    read_.erase(0, end + 1);
    return line;
}

double RunningProgram::processorMilliseconds() const {
    clockid_t clock = 0;
    timespec time = {};
    demand(::clock_getcpuclockid(process_, &clock) == 0 && ::clock_gettime(clock, &time) == 0, "the processor's time");
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

}  // namespace bench
