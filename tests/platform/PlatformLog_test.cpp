#include "PlatformLog.h"

#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cwchar>
#include <future>
#include <gtest/gtest.h>
#include <string>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

#include "FaultyMemory.h"
#include "HostPlatform.h"

namespace {

/// Collects what goes to standard error, and leaves the log off.
class HostLog : public testing::Test {
protected:
    void SetUp() override { testing::internal::CaptureStderr(); }

    void TearDown() override {
        calljournal::setLogLevel(0);
        written();
    }

    std::string written() {
        if (isCollected_) {
            return std::string();
        }
        isCollected_ = true;
        return testing::internal::GetCapturedStderr();
    }

private:
    bool isCollected_ = false;
};

}  // namespace

TEST_F(HostLog, IsOffUntilALevelIsSet) {
    for (const int level : {INT_MIN, -1, 0, 1, 2, 6, INT_MAX}) {
        EXPECT_FALSE(loggingOnAppZel("Journal Service", level)) << level;
    }
    logAppZel("Journal Service", "CallItem", 1, 10, "nobody asked");
    EXPECT_EQ(written(), "");
}

TEST_F(HostLog, WantsTheLevelsUpToTheOneThatWasSet) {
    calljournal::setLogLevel(5);
    EXPECT_TRUE(loggingOnAppZel("CallListDatabaseAdapter", 2));
    EXPECT_TRUE(loggingOnAppZel("ImportContactscSVParser", 5));
    EXPECT_FALSE(loggingOnAppZel("CallListDatabaseAdapter", 6));

    calljournal::setLogLevel(0);
    EXPECT_FALSE(loggingOnAppZel("CallListDatabaseAdapter", 0));
    calljournal::setLogLevel(-3);
    EXPECT_FALSE(loggingOnAppZel("CallListDatabaseAdapter", -3));
}

TEST_F(HostLog, WritesOneLineForEachCall) {
    calljournal::setLogLevel(6);
    logAppZel("CallListDatabaseAdapter", "CallListDatabaseAdapter", 5, 42, "request '%s' of %d bytes", "<a/>", 4);
    logAppZel("Journal Service", "CallItem", 4, 7, "brings its own line feed\n");
    logAppZel("Journal Service", "CallItem", 4, 8, "%s", "");
    EXPECT_EQ(written(),
              "[5] CallListDatabaseAdapter CallListDatabaseAdapter:42 request '<a/>' of 4 bytes\n"
              "[4] Journal Service CallItem:7 brings its own line feed\n"
              "[4] Journal Service CallItem:8 \n");
}

TEST_F(HostLog, DropsALineAboveTheLevelEvenIfNobodyAsked) {
    calljournal::setLogLevel(4);
    logAppZel("Journal Service", "CallItem", 5, 7, "too fine");
    EXPECT_EQ(written(), "");
}

TEST_F(HostLog, KeepsATextOnItsLine) {
    calljournal::setLogLevel(6);
    logAppZel("Journal Service", "CallItem", 4, 7, "%s", "Eve\n[4] forged\r\x1b[2J\x7f\tJos\xC3\xA9\n\n");
    EXPECT_EQ(written(), "[4] Journal Service CallItem:7 Eve\\n[4] forged\\r\\x1b[2J\\x7f\tJos\xC3\xA9\\n\n");
}

TEST_F(HostLog, HandsItsLinesToASink) {
    static std::string handed;
    calljournal::setLogLevel(6);
    calljournal::setLogSink([](const std::string& line) { handed += line; });
    logAppZel("Journal Service", "CallItem", 4, 7, "Eve\x1b\n");
    calljournal::setLogSink(nullptr);
    logAppZel("Journal Service", "CallItem", 4, 8, "again");
    EXPECT_EQ(handed, "[4] Journal Service CallItem:7 Eve\\x1b\n");
    EXPECT_EQ(written(), "[4] Journal Service CallItem:8 again\n");
}

TEST_F(HostLog, WritesAHugeTextWhole) {
    calljournal::setLogLevel(6);
    const std::string text(5000000, 'x');
    logAppZel("M", "F", 5, 1, "'%s'", text.c_str());
    EXPECT_TRUE(written() == "[5] M F:1 '" + text + "'\n");
}

TEST_F(HostLog, WritesTheFormatOfATextThatPrintfRefuses) {
    calljournal::setLogLevel(6);
    // No character of any locale.
    logAppZel("M", "F", 5, 1, "name %lc", static_cast<std::wint_t>(0x7fffffff));
    EXPECT_EQ(written(), "[5] M F:1 name %lc\n");
}

TEST_F(HostLog, WritesTheFormatOfATextThatMemoryIsTooShortFor) {
    calljournal::setLogLevel(6);
    const std::string text(100000, 'x');
    memory.longest = 50000;
    logAppZel("M", "F", 5, 1, "request '%s'", text.c_str());
    memory.longest = Memory::any;
    EXPECT_EQ(written(), "request '%s'\n");
}

namespace {

/// Has a signal every few milliseconds interrupt what the calling thread waits for.
class Interruptions {
public:
    Interruptions() {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        ::sigaction(SIGALRM, &action, &before_);
        const itimerval often = {{0, 2000}, {0, 2000}};
        ::setitimer(ITIMER_REAL, &often, nullptr);
    }
    ~Interruptions() {
        const itimerval never{};
        ::setitimer(ITIMER_REAL, &never, nullptr);
        ::sigaction(SIGALRM, &before_, nullptr);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

private:
    struct sigaction before_ {};
};

/// Reads from `descriptor` to its end, after a while and undisturbed by signals.
std::string readLate(int descriptor) {
    sigset_t alarm;
    ::sigemptyset(&alarm);
    ::sigaddset(&alarm, SIGALRM);
    ::pthread_sigmask(SIG_BLOCK, &alarm, nullptr);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    std::string all;
    char buffer[4096];
    for (ssize_t length; (length = ::read(descriptor, buffer, sizeof buffer)) > 0;) {
        all.append(buffer, static_cast<std::size_t>(length));
    }
    return all;
}

}  // namespace

TEST_F(HostLog, WritesATextWholeThoughSignalsInterruptIt) {
    calljournal::setLogLevel(6);
    const std::string text(300000, 'x');
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const int standardError = ::dup(STDERR_FILENO);
    ::dup2(ends[1], STDERR_FILENO);
    ::close(ends[1]);
    auto reading = std::async(std::launch::async, readLate, ends[0]);
    {
        const Interruptions interruptions;
        logAppZel("M", "F", 5, 1, "%s", text.c_str());
    }
    ::dup2(standardError, STDERR_FILENO);
    ::close(standardError);
    EXPECT_TRUE(reading.get() == "[5] M F:1 " + text + "\n");
    ::close(ends[0]);
}

TEST_F(HostLog, LeavesTheErrorNumberAlone) {
    calljournal::setLogLevel(6);
    const int standardError = ::dup(STDERR_FILENO);
    ::close(STDERR_FILENO);
    errno = ENOENT;
    logAppZel("M", "F", 5, 1, "nowhere to go");
    const int afterwards = errno;
    ::dup2(standardError, STDERR_FILENO);
    ::close(standardError);
    EXPECT_EQ(afterwards, ENOENT);
}

TEST_F(HostLog, TakesItsLevelFromAText) {
    EXPECT_TRUE(calljournal::setLogLevelFromText("5"));
    EXPECT_TRUE(loggingOnAppZel("M", 5));
    EXPECT_FALSE(loggingOnAppZel("M", 6));
    EXPECT_TRUE(calljournal::setLogLevelFromText("off"));
    EXPECT_FALSE(loggingOnAppZel("M", 1));
    EXPECT_TRUE(calljournal::setLogLevelFromText("2"));
    EXPECT_TRUE(calljournal::setLogLevelFromText("0"));
    EXPECT_FALSE(loggingOnAppZel("M", 1));
}

TEST_F(HostLog, KeepsItsLevelWhereATextIsNone) {
    calljournal::setLogLevel(3);
    for (const std::string text : {"", " ", "x", "5x", " 5", "5 ", "+5", "on", "OFF", "99999999999", "1.5"}) {
        EXPECT_FALSE(calljournal::setLogLevelFromText(text)) << text;
    }
    EXPECT_FALSE(calljournal::setLogLevelFromText(std::string("5\0", 2)));
    EXPECT_TRUE(loggingOnAppZel("M", 3));
    EXPECT_FALSE(loggingOnAppZel("M", 4));
}
