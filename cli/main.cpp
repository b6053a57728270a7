#include <iostream>
#include <unistd.h>

#include "CommandLine.h"
#include "ErrorMessage.h"
#include "HostPlatform.h"
#include "TerminalOutput.h"

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    const calljournal::TerminalOutput out(std::cout, STDOUT_FILENO);
    const calljournal::TerminalOutput err(std::cerr, STDERR_FILENO);
    calljournal::setLogSink([](const std::string& line) { std::cerr << line << std::flush; });
    try {
        return calljournal::runCommand(argc, argv, std::cin, std::cout, std::cerr);
    } catch (const std::exception& error) {
        std::cout.flush();
        calljournal::printError(std::cerr, error.what());
        return calljournal::exitRefused;
    }
}
