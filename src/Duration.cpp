#include "Duration.h"

bool Duration::operator==(const Duration& other) const {
    return duration == other.duration;
}

void Duration::reset() {
    duration.clear();
}
