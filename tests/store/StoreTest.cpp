#include "StoreTest.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef CALLJOURNAL_COVERAGE
extern "C" {
#include <gcov.h>
}
#endif

const std::string declaration = R"(<?xml version="1.0" encoding="utf-8"?>)";

std::string envelope(const std::string& schema, const std::string& content) {
    return declaration + "<Schema name=\"" + schema + "\">" + content + "</Schema>";
}

std::string readRequest(const std::string& schema) {
    return envelope(schema, "<ReasonForMessage>read_request</ReasonForMessage>");
}

std::string writeRequest(const std::string& schema, const std::string& entries) {
    return envelope(schema, "<ReasonForMessage>write_request</ReasonForMessage>" + entries);
}

std::string deleteRequest(const std::string& schema, const std::string& entries) {
    return envelope(schema, "<ReasonForMessage>delete_request</ReasonForMessage>" + entries);
}

std::string failed(const std::string& schema, const std::string& reason) {
    return envelope(schema, "<Result>failed</Result><Reason>" + reason + "</Reason>");
}

StoreTest::StoreTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "store_test_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    folder_ = pattern;
}

StoreTest::~StoreTest() {
    store_.reset();
    std::filesystem::permissions(folder_, std::filesystem::perms::owner_all);  // a test may have made it read-only
    std::filesystem::remove_all(folder_);
}

calljournal::Store& StoreTest::store() {
    if (!store_) {
        store_ = calljournal::openStore(file());
    }
    return *store_;
}

std::string StoreTest::ask(const std::string& request) {
    return store().processRequest(request);
}

std::string StoreTest::everything() {
    std::string text;
    for (const char* schema : {"CallLogMissedCalls", "CallLogDialledCalls", "CallLogReceivedCalls",
                               "CallLogForwardedCalls", "Conversations", "CallBacks"}) {
        text += ask(readRequest(schema)) + "\n";
    }
    return text;
}

std::string openingError(const std::string& url) {
    try {
        calljournal::openStore(url);
    } catch (const calljournal::StoreError& error) {
        return error.what();
    }
    return {};
}

std::string contentOf(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeFile(const std::string& file, const std::string& content) {
    std::ofstream(file, std::ios::binary) << content;
}

namespace {

/// Ends a child. What it ran counts in a build with counters, which need the rights that it started with.
[[noreturn]] void endChild(int status) {
#ifdef CALLJOURNAL_COVERAGE
    const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
    (void)setrlimit(RLIMIT_FSIZE, &unlimited);
    (void)!seteuid(0);
    __gcov_dump();
#endif
    _exit(status);
}

}  // namespace

void becomeNobody() {
    constexpr uid_t nobody = 65534;
    if (getuid() == 0 && setresuid(nobody, nobody, 0) != 0) {
        throw std::runtime_error("cannot change the user");
    }
}

Child::Child(const std::function<void(const Say&)>& work) {
    int ends[2];
    if (pipe(ends) != 0 || (pid_ = fork()) < 0) {
        throw std::runtime_error("no child process");
    }
    if (pid_ != 0) {
        close(ends[1]);
        output_ = ends[0];
        return;
    }
    int status = 1;
    try {
        work([&](const std::string& line) {
            const std::string text = line + "\n";
            if (write(ends[1], text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
                _exit(2);
            }
        });
        status = 0;
    } catch (const std::exception& failure) {
        const std::string text = std::string("exception: ") + failure.what() + "\n";
        (void)!write(ends[1], text.data(), text.size());
    }
    endChild(status);
}

Child::~Child() {
    kill();
    endedWell();
    close(output_);
}

std::string Child::nextLine() {
    for (;;) {
        const std::size_t end = unread_.find('\n');
        if (end != std::string::npos) {
            const std::string line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            return line;
        }
        char buffer[4096];
        const ssize_t length = read(output_, buffer, sizeof buffer);
        if (length <= 0) {
            return {};
        }
        unread_.append(buffer, static_cast<std::size_t>(length));
    }
}

std::vector<std::string> Child::allLines() {
    std::vector<std::string> lines;
    for (std::string line = nextLine(); !line.empty(); line = nextLine()) {
        lines.push_back(line);
    }
    return lines;
}

void Child::kill() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
    }
}

bool Child::endedWell() {
    if (pid_ <= 0) {
        return false;
    }
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
