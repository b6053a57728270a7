#include "Interruption.h"

#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "TemporaryPaths.h"

namespace calljournal {

namespace {

sigset_t endingSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&set, signal);
    }
    return set;
}

/// Ends the process as the signal does if nobody minds it.
void endBy(int signal) {
    ::signal(signal, SIG_DFL);
    ::raise(signal);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

}  // namespace

Interruption::Interruption() {
    const sigset_t ending = endingSignals();
    sigset_t blocked = ending;
    sigaddset(&blocked, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before_);
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
        endBy(static_cast<int>(signal.ssi_signo));
    }
}

}  // namespace calljournal
