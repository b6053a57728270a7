#include <iostream>

#include "CommandLine.h"
#include "ExitCode.h"

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    try {
        return calljournal::runCommand(argc, argv, std::cin, std::cout, std::cerr);
    } catch (const std::exception& error) {
        std::cout.flush();
        std::cerr << "calljournal: " << error.what() << '\n';
        return calljournal::exitRefused;
    }
}
