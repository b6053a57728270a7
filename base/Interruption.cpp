#include "Interruption.h"

#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "TemporaryPaths.h"

namespace calljournal {

namespace {

/// What ends the process as it is: a signal that somebody has it ignore, as nohup does, stays ignored.
sigset_t endingSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGALRM, SIGTERM, SIGXCPU}) {
        struct sigaction action = {};
        ::sigaction(signal, nullptr, &action);
        if (action.sa_handler != SIG_IGN) {
            sigaddset(&set, signal);
        }
    }
    return set;
}

/// Lets the signal do what it would have done.
void pass(int signal) {
    ::raise(signal);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

}  // namespace

Interruption::Interruption() {
    const sigset_t ending = endingSignals();
    ::pthread_sigmask(SIG_BLOCK, &ending, &before_);
    signals_ = ::signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);
    stop_ = ::eventfd(0, EFD_CLOEXEC);
    thread_ = std::thread([this] { wait(); });
}

Interruption::~Interruption() {
    ::eventfd_write(stop_, 1);
    thread_.join();
    ::close(signals_);
    ::close(stop_);
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void Interruption::wait() const {
    pollfd awaited[] = {{stop_, POLLIN, 0}, {signals_, POLLIN, 0}};
    ::poll(awaited, 2, -1);
    signalfd_siginfo signal = {};
    if (awaited[0].revents == 0 && ::read(signals_, &signal, sizeof signal) == sizeof signal) {
        const std::unique_lock<std::mutex> hold = holdTemporaries();
        removeTemporaries(hold);
        pass(static_cast<int>(signal.ssi_signo));
    }
}

}  // namespace calljournal
