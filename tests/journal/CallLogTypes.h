#pragma once

#include <gtest/gtest.h>
#include <string>

#include "KindInterface.h"

namespace calljournal {

/// The kinds of logs, for tests of each, and their names in those of the tests.
using CallLogTypes = ::testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem>;

class CallLogTypeNames {
public:
    template <class Item>
    static std::string GetName(int) {
        return KindInterface<Item>::name;
    }
};

}  // namespace calljournal
