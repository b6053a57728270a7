#include "RunCommand.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

std::filesystem::path makeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "calljournal-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot make " + pattern);
    }
    return pattern;
}

}  // namespace

TemporaryFolder::TemporaryFolder() : path_(makeFolder().string()) {}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(file(name), std::ios::binary) << content;
    return file(name);
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

namespace {

/// A program that runs, with files for what it reads and prints: whatever their sizes, nobody waits for anybody.
class Program {
public:
    Program(const std::vector<std::string>& arguments, const std::string& input)
        : out_(folder_.file("out")), err_(folder_.file("err")) {
        const std::string in = folder_.write("in", input);
        std::vector<char*> argv;
        for (const std::string& argument : arguments) {
            argv.push_back(const_cast<char*>(argument.c_str()));
        }
        argv.push_back(nullptr);

        child_ = ::fork();
        if (child_ == 0) {
            ::setenv("LC_ALL", "C.UTF-8", 1);
            ::unsetenv("CALLJOURNAL_REGION");
            if (std::freopen(in.c_str(), "r", stdin) != nullptr && std::freopen(out_.c_str(), "w", stdout) != nullptr &&
                std::freopen(err_.c_str(), "w", stderr) != nullptr) {
                ::execvp(argv[0], argv.data());
            }
            ::_exit(127);
        }
        if (child_ < 0) {
            throw std::runtime_error("cannot run " + arguments[0]);
        }
    }

    /// Returns whether it has ended; waits for that if `options` does not say WNOHANG.
    bool hasEnded(int options) { return ::waitpid(child_, &status_, options) == child_; }

    void send(int signal) const { ::kill(child_, signal); }

    Finished result() const {
        return {WIFEXITED(status_) ? WEXITSTATUS(status_) : 128 + WTERMSIG(status_), readFile(out_), readFile(err_)};
    }

private:
    const TemporaryFolder folder_;
    const std::string out_;
    const std::string err_;
    pid_t child_ = -1;
    int status_ = 0;
};

}  // namespace

Finished runProgram(const std::vector<std::string>& arguments, const std::string& input) {
    Program program(arguments, input);
    if (!program.hasEnded(0)) {
        throw std::runtime_error("cannot wait for " + arguments[0]);
    }
    return program.result();
}

Finished interruptProgram(const std::vector<std::string>& arguments, int signal, const std::function<bool()>& isTime) {
    Program program(arguments, std::string());
    while (!isTime()) {
        if (program.hasEnded(WNOHANG)) {
            return program.result();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    program.send(signal);
    program.hasEnded(0);
    return program.result();
}
