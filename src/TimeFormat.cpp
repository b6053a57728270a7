#include "TimeFormat.h"

TimeFormat::TimeFormat() : timeFormat() {}

bool TimeFormat::operator==(const TimeFormat& other) const {
    return timeFormat == other.timeFormat;
}

void TimeFormat::reset() {
    *this = TimeFormat();
}
