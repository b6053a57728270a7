#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// One line that the library wrote to the platform log.
struct LogLine {
    std::string module;
    std::string sourceFile;
    int level;
    std::string text;  ///< After formatting.
};

/// The state behind the fake platform functions. One per process; reset() it before each test.
struct FakePlatform {
    std::set<std::pair<std::string, int>> loggingOn;  ///< Modules and levels that are switched on.
    std::vector<LogLine> log;
    bool logFails = false;         ///< Each line throws, as where memory runs out over it.
    unsigned switchQuestions = 0;  ///< How often loggingOnAppZel was asked.

    std::uint32_t freeSpace = 100000000;
    std::string askedDirectory;                      ///< The last directory that UserDiskSpace was asked for.
    std::map<std::string, std::uint32_t> fileSizes;  ///< Answers of fileSize; 0 for any other path.
    std::vector<std::string> deletedFiles;           ///< Calls of deleteFile_noEx; existing files are removed.

    bool isNq = false;
    int hardwareVariant = 0;

    void reset() { *this = FakePlatform(); }
    void switchOn(const std::string& module, int level) { loggingOn.insert({module, level}); }

    /// The texts of all lines, in order.
    std::vector<std::string> logTexts() const;
};

FakePlatform& fakePlatform();
