#include <csignal>
#include <iostream>
#include <new>
#include <unistd.h>

#include "CommandLine.h"
#include "ErrorMessage.h"
#include "HostPlatform.h"
#include "StandardOutput.h"

namespace {

using namespace calljournal;

/// Says on standard error what the command throws, other than OutputError.
ExitCode run(int argc, const char* const* argv, std::ostream& out, std::ostream& trace) {
    try {
        return runCommand(argc, argv, std::cin, out, std::cerr, trace);
    } catch (const OutputError&) {
        throw;
    } catch (const std::bad_alloc&) {
        printError(std::cerr, "there is not enough memory for this; close other programs, or give it less at once");
    } catch (const std::exception& error) {
        printError(std::cerr, error.what());
    }
    return exitRefused;
}

}  // namespace

int main(int argc, char** argv) {
    refuseClosedDescriptors();
    // What nobody reads, or what is larger than a file may be, fails as all else that cannot be written.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    std::ios::sync_with_stdio(false);
    std::ostream trace(std::cerr.rdbuf());
    const PrintableOutput messages(std::cerr);
    StandardOutput out(std::cerr);
    trace.tie(std::cerr.tie());
    trace << std::unitbuf;
    const TerminalOutput shownTrace(trace, STDERR_FILENO);
    setLogSink([](const std::string& line) { std::cerr << line << std::flush; });
    try {
        const ExitCode code = run(argc, argv, out.stream(), trace);
        out.close();
        return code;
    } catch (const OutputError& error) {
        if (error.isUnread()) {
            return exitDone;
        }
        printError(std::cerr, error.what());
        return exitRefused;
    }
}
