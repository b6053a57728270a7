#include "HardwareVersion.h"

#include "HostPlatform.h"

namespace {

bool playsNq = false;
int playedVariant = 0;

}  // namespace

void calljournal::setHardware(bool isNq, int subPlatformVariant) {
    playsNq = isNq;
    playedVariant = subPlatformVariant;
}

bool HardwareVersion::is_NQ() {
    return playsNq;
}

int HardwareVersion::getHWSubPlatformVariant() {
    return playedVariant;
}
