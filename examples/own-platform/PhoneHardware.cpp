#include "HardwareVersion.h"

// A phone of the common kind: a phonebook of 100 contacts, any number may be the one dialled by default.

bool HardwareVersion::is_NQ() {
    return false;
}

int HardwareVersion::getHWSubPlatformVariant() {
    return 0;
}
