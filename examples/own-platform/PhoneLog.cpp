#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "PlatformLog.h"

// This phone's log is its standard output. Of the adapter it wants requests and replies, of the importer its
// complaints.

bool loggingOnAppZel(const char* module, int level) {
    return (std::strcmp(module, "CallListDatabaseAdapter") == 0 && level == 5) ||
           (std::strcmp(module, "ImportContactscSVParser") == 0 && level == 2);
}

void logAppZel(const char* module, const char*, int level, int, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (length >= 0) {
        // Whole requests and replies come through here: no fixed buffer is long enough. Some lines end in line feeds.
        std::vector<char> text(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, again);
        std::string line(text.data());
        line.erase(line.find_last_not_of(" \n") + 1);
        std::printf("log: %s %d: %s\n", module, level, line.c_str());
    }
    va_end(again);
}
