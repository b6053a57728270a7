#include "Time.h"

#include <cstdio>
#include <ctime>

namespace calljournal {

void checkTime(const std::string& text) {
    std::tm time = {};
    const int count = std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d", &time.tm_year, &time.tm_mon, &time.tm_mday,
                                  &time.tm_hour, &time.tm_min, &time.tm_sec);
    char canonical[32] = "";
    if (count == 6 && text.size() == 19) {
        time.tm_year -= 1900;
        time.tm_mon -= 1;
        // A date outside the calendar, such as 30 February, comes back as another one.
        if (::timegm(&time) != -1) {
            std::strftime(canonical, sizeof canonical, "%Y-%m-%d %H:%M:%S", &time);
        }
    }
    if (text.empty() || text != canonical) {
        throw ValueError("\"" + text + "\" is not a time of the form YYYY-MM-DD HH:MM:SS");
    }
}

std::string currentTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    ::localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

}  // namespace calljournal
