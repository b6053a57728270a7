#include "KilledCommand.h"

#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

std::string readToTheEnd(int descriptor) {
    std::string text;
    char buffer[4096];
    for (ssize_t length = 0; (length = read(descriptor, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(length));
    }
    return text;
}

}  // namespace

KilledRun runAndKill(const std::vector<std::string>& arguments, std::chrono::microseconds delay) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        execv(argv[0], argv.data());
        _exit(127);
    }
    close(ends[1]);
    std::this_thread::sleep_for(delay);
    kill(child, SIGKILL);
    KilledRun run;
    run.out = readToTheEnd(ends[0]);  // what is printed is short enough for the pipe
    close(ends[0]);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        throw std::runtime_error("cannot run " + arguments[0]);
    }
    run.wasKilled = WIFSIGNALED(status);
    return run;
}
