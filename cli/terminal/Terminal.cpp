#include "Terminal.h"

#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace calljournal {

bool isTerminal() {
    return ::isatty(STDOUT_FILENO) != 0;
}

std::size_t terminalWidth() {
    if (const char* columns = std::getenv("COLUMNS")) {
        const unsigned long width = std::strtoul(columns, nullptr, 10);
        if (width > 0) {
            return width;
        }
    }
    winsize size = {};
    if (isTerminal() && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) {
        return size.ws_col;
    }
    return 0;
}

}  // namespace calljournal
