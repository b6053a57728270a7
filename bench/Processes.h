#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace bench {

/// Runs a program to its end, its output to nowhere. Returns the milliseconds from start to exit; ends this program if it
/// fails.
double millisecondsOfProgram(const std::vector<std::string>& arguments);

/// Returns the lines that a program prints.
std::size_t linesOfProgram(const std::vector<std::string>& arguments);

/// Runs `work` in `count` processes of their own, numbered from 0, each after its own `prepare`; they begin together.
/// Returns the milliseconds until the last has done its work; ends this program if one fails.
double millisecondsOfProcesses(std::size_t count, const std::function<std::function<void()>(std::size_t)>& prepare);

/// A program that goes on, its output in a pipe; interrupted at the end.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string>& arguments);
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    /// Waits for its next line; ends this program if none comes within a minute.
    std::string nextLine();

    /// Returns the milliseconds that it has worked on a processor.
    double processorMilliseconds() const;

private:
    pid_t process_ = 0;
    int output_ = -1;
    std::string read_;
};

}  // namespace bench
