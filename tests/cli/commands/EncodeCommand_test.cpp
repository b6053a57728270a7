#include "EncodeCommand.h"

#include <gtest/gtest.h>
#include <sstream>

#include "ValueError.h"

using namespace calljournal;

namespace {

TEST(EncodeCommand, RefusesNestingThatWouldUseUpTheStack) {
    const std::string nested = std::string(300000, '[') + std::string(300000, ']');
    std::istringstream in(R"({"LogList":[{"Number":)" + nested + "}]}");
    std::ostringstream out;
    EXPECT_THROW(encodeEntry("missed", in, out), ValueError);
}

}  // namespace
