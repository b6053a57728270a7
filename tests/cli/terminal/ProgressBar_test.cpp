#include "ProgressBar.h"

#include <fstream>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

#include "RunCommand.h"

namespace {

using calljournal::ProgressBar;
using namespace std::chrono_literals;

TEST(ProgressBar, ShowsTheShareThatIsDone) {
    EXPECT_EQ(ProgressBar::text("importing a.csv", {0, 200}), "importing a.csv  [                              ]  0 %");
    EXPECT_EQ(ProgressBar::text("importing a.csv", {100, 200}),
              "importing a.csv  [===============               ]  50 %");
    EXPECT_EQ(ProgressBar::text("importing a.csv", {300, 200}),
              "importing a.csv  [==============================]  100 %");
}

TEST(ProgressBar, ShowsTheBytesWhereTheEndIsNotKnown) {
    EXPECT_EQ(ProgressBar::text("copying a\x1b", {10240, 0}), "copying a\\x1b  10 KiB");
}

TEST(ProgressBar, DrawsAfterTheDelayAndClearsTheLine) {
    std::vector<std::string> drawn;
    {
        ProgressBar bar([&](const std::string& text) { drawn.push_back(text); }, 10ms);
        bar.start("work", [] { return ProgressBar::Position{1, 2}; });
        std::this_thread::sleep_for(300ms);
    }
    ASSERT_GE(drawn.size(), 2u);
    EXPECT_EQ(drawn.front(), "\r\x1b[Kwork  [===============               ]  50 %");
    EXPECT_EQ(drawn.back(), "\r\x1b[K");
}

TEST(ProgressBar, DrawsNothingForShortWork) {
    std::vector<std::string> drawn;
    {
        ProgressBar bar([&](const std::string& text) { drawn.push_back(text); });
        bar.start("work", [] { return ProgressBar::Position{1, 2}; });
    }
    EXPECT_TRUE(drawn.empty());
}

TEST(ProgressBar, KnowsHowFarAFileIsRead) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", std::string(100000, 'x'));
    EXPECT_EQ(calljournal::readPosition(path), 0u);
    std::ifstream file(path);
    file.get();
    EXPECT_GT(calljournal::readPosition(path), 0u);
    file.close();
    EXPECT_EQ(calljournal::readPosition(path), 0u);
}

}  // namespace
