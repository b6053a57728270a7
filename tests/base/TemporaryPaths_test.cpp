#include "TemporaryPaths.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

#include "Interruption.h"
#include "RunCommand.h"

namespace calljournal {
namespace {

namespace fs = std::filesystem;

std::atomic<int> passed{0};

void takeNote(int signal) {
    passed = signal;
}

/// Sends the process a signal with a handler of this test, and gives it time to arrive.
void send(int signal, void (*handler)(int)) {
    passed = 0;
    void (*const before)(int) = std::signal(signal, handler);
    {
        const Interruption interruption;
        ::kill(::getpid(), signal);
        for (int i = 0; i < (handler == SIG_IGN ? 50 : 5000) && passed == 0; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    std::signal(signal, before);
}

std::string makeFile(const ::TemporaryFolder& folder, const std::string& name) {
    return makeTemporary([&] { return folder.write(name, "text"); });
}

TEST(TemporaryPaths, GoBeforeASignalIsPassedOn) {
    const ::TemporaryFolder folder;
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGALRM, SIGTERM, SIGXCPU}) {
        const std::string gone = makeFile(folder, "gone");
        const std::string delivered = makeFile(folder, "delivered");
        forgetTemporary(delivered);
        send(signal, takeNote);
        EXPECT_EQ(passed, signal);
        EXPECT_FALSE(fs::exists(gone));
        EXPECT_TRUE(fs::exists(delivered));
    }
}

TEST(TemporaryPaths, StayIfTheSignalIsIgnored) {
    const ::TemporaryFolder folder;
    const std::string file = makeFile(folder, "file");
    send(SIGHUP, SIG_IGN);
    EXPECT_TRUE(fs::exists(file));
    forgetTemporary(file);
}

TEST(TemporaryPaths, GoWhileAnotherThreadPutsSomethingIntoThem) {
    const ::TemporaryFolder folder;
    for (int round = 0; round < 20; ++round) {
        const std::string busy = makeTemporary([&] {
            fs::create_directory(folder.file("busy"));
            return folder.file("busy");
        });
        std::atomic<bool> isOver{false};
        std::thread writer([&] {
            for (int file = 0; !isOver; ++file) {
                std::ofstream(busy + '/' + std::to_string(file));
            }
        });
        while (fs::is_empty(busy)) {
        }
        removeTemporaries(holdTemporaries());
        EXPECT_FALSE(fs::exists(busy)) << round;
        isOver = true;
        writer.join();
        fs::remove_all(busy);
    }
}

}  // namespace
}  // namespace calljournal
