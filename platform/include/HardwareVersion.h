#ifndef CALLJOURNAL_HARDWAREVERSION_H
#define CALLJOURNAL_HARDWAREVERSION_H

/// Which phone this is.
namespace HardwareVersion {

/// Returns whether this is the NQ platform, whose phonebook holds 1000 contacts (100 elsewhere).
bool is_NQ();

/// Returns the variant of the hardware's sub-platform; 1 is TQ2.
int getHWSubPlatformVariant();

}  // namespace HardwareVersion

#endif
