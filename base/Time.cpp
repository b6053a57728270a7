#include "Time.h"

#include <charconv>
#include <ctime>

namespace calljournal {

void checkTime(const std::string& text) {
    char canonical[32] = "";
    if (text.size() == 19) {
        const auto number = [&](std::size_t begin, std::size_t length) {
            int value = 0;
            std::from_chars(text.data() + begin, text.data() + begin + length, value);
            return value;
        };
        std::tm time = {};
        time.tm_year = number(0, 4) - 1900;
        time.tm_mon = number(5, 2) - 1;
        time.tm_mday = number(8, 2);
        time.tm_hour = number(11, 2);
        time.tm_min = number(14, 2);
        time.tm_sec = number(17, 2);
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
