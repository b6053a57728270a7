#include "StandardOutput.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>

using namespace calljournal;

namespace {

TEST(DescriptorBuffer, WaitsForAPipeThatHasNoRoomAtOnce) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_NONBLOCK), 0);
    const std::string text(300000, 'x');
    std::string read;
    std::thread reader([&] {
        char piece[4096];
        for (ssize_t count = -1; count != 0; count = ::read(ends[0], piece, sizeof piece)) {
            read.append(piece, count < 0 ? 0 : static_cast<std::size_t>(count));
            std::this_thread::yield();
        }
    });
    DescriptorBuffer buffer(ends[1]);
    std::ostream out(&buffer);
    out << text << 'y' << std::flush;
    EXPECT_TRUE(out.good());
    ::close(ends[1]);
    reader.join();
    ::close(ends[0]);
    EXPECT_TRUE(read == text + 'y');
}

TEST(DescriptorBuffer, FailsEachTimeOnceItHasFailed) {
    const int full = ::open("/dev/full", O_WRONLY);
    DescriptorBuffer buffer(full);
    std::ostream out(&buffer);
    out << "a";
    EXPECT_TRUE(out.good());
    for (int i = 0; i < 2; ++i) {
        try {
            buffer.pubsync();
            ADD_FAILURE();
        } catch (const OutputError& error) {
            EXPECT_STREQ(error.what(),
                         "standard output cannot be written (No space left on device); send it elsewhere, and "
                         "look at what is done before you repeat it");
            EXPECT_FALSE(error.isUnread());
        }
    }
    ::close(full);
    EXPECT_TRUE(OutputError(EPIPE).isUnread());
}

}  // namespace
