#include "ProgressBar.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "PrintableText.h"

namespace calljournal {

namespace {

constexpr std::chrono::milliseconds interval(100);
constexpr std::size_t barWidth = 30;
constexpr std::size_t longestWork = 40;
constexpr char clearLine[] = "\r\x1b[K";

}  // namespace

ProgressBar::ProgressBar(Draw draw, std::chrono::milliseconds delay) : draw_(std::move(draw)) {
    if (draw_) {
        thread_ = std::thread([this, delay] { run(delay); });
    }
}

ProgressBar::~ProgressBar() {
    if (thread_.joinable()) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            isOver_ = true;
        }
        ended_.notify_one();
        thread_.join();
    }
}

void ProgressBar::start(const std::string& work, std::function<Position()> position) {
    const std::lock_guard<std::mutex> lock(mutex_);
    work_ = work;
    position_ = std::move(position);
}

void ProgressBar::run(std::chrono::milliseconds delay) {
    std::unique_lock<std::mutex> lock(mutex_);
    const auto isOver = [this] { return isOver_; };
    if (ended_.wait_for(lock, delay, isOver)) {
        return;
    }
    do {
        if (position_) {
            draw_(clearLine + text(work_, position_()));
        }
    } while (!ended_.wait_for(lock, interval, isOver));
    draw_(clearLine);
}

std::string ProgressBar::text(const std::string& work, Position position) {
    const std::string name = fitted(printable(work), longestWork);
    if (position.total == 0) {
        return name + "  " + std::to_string(position.done / 1024) + " KiB";
    }
    const std::uint64_t done = std::min(position.done, position.total);
    const auto filled = static_cast<std::size_t>(done * barWidth / position.total);
    return name + "  [" + std::string(filled, '=') + std::string(barWidth - filled, ' ') + "]  " +
           std::to_string(done * 100 / position.total) + " %";
}

ProgressBar::Draw terminalDrawing() {
    if (::isatty(STDERR_FILENO) == 0) {
        return {};
    }
    // Past the stream, which lets nothing drive a terminal.
    return [](const std::string& text) {
        if (::write(STDERR_FILENO, text.data(), text.size()) < 0) {
            return;  // a bar that cannot be seen is no failure
        }
    };
}

std::uint64_t readPosition(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    for (fs::directory_iterator entry("/proc/self/fd", error), end; !error && entry != end; entry.increment(error)) {
        std::error_code gone;
        if (fs::read_symlink(entry->path(), gone) == path) {
            std::ifstream info("/proc/self/fdinfo/" + entry->path().filename().string());
            std::string key;
            std::uint64_t position = 0;
            return info >> key >> position ? position : 0;
        }
    }
    return 0;
}

}  // namespace calljournal
