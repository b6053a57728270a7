#include "HardwareVersion.h"

#include <gtest/gtest.h>

#include "HostPlatform.h"

TEST(HostHardware, IsAnOrdinaryPhoneUntilItIsSet) {
    EXPECT_FALSE(HardwareVersion::is_NQ());
    EXPECT_EQ(HardwareVersion::getHWSubPlatformVariant(), 0);
}

TEST(HostHardware, IsWhatItWasSetTo) {
    calljournal::setHardware(true, 1);
    EXPECT_TRUE(HardwareVersion::is_NQ());
    EXPECT_EQ(HardwareVersion::getHWSubPlatformVariant(), 1);

    calljournal::setHardware(false, 7);
    EXPECT_FALSE(HardwareVersion::is_NQ());
    EXPECT_EQ(HardwareVersion::getHWSubPlatformVariant(), 7);

    calljournal::setHardware(false, 0);
    EXPECT_EQ(HardwareVersion::getHWSubPlatformVariant(), 0);
}
