#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace calljournal {

/// A line that shows how far a long work is, drawn anew ten times a second, and gone when the object goes. Work that is
/// done within half a second shows nothing.
///
/// It draws from a thread of its own, since the work may be one call that does not come back for long.
class ProgressBar {
public:
    typedef std::function<void(const std::string&)> Draw;

    /// Bytes that are done, and all of them; total 0 if that is not known.
    struct Position {
        std::uint64_t done;
        std::uint64_t total;
    };

    /// Draws through `draw`, on the drawing thread; an empty function draws nothing at all.
    explicit ProgressBar(Draw draw, std::chrono::milliseconds delay = std::chrono::milliseconds(500));
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

    /// Starts a piece of work, such as "reading contacts.csv". From then on `position`, which the drawing thread calls,
    /// reports where it is.
    void start(const std::string& work, std::function<Position()> position);

    /// The line for a piece of work: "reading contacts.csv  [=====>    ]  50 %".
    static std::string text(const std::string& work, Position position);

private:
    void run(std::chrono::milliseconds delay);

    Draw draw_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool isOver_ = false;
    std::string work_;
    std::function<Position()> position_;
    std::thread thread_;
};

/// Where a piece of work is, set on one thread and read on another.
class SharedPosition {
public:
    void set(std::uint64_t done, std::uint64_t total) {
        done_ = done;
        total_ = total;
    }
    ProgressBar::Position get() const { return {done_, total_}; }

private:
    std::atomic<std::uint64_t> done_{0};
    std::atomic<std::uint64_t> total_{0};
};

/// Draws on standard error if that is a terminal; empty otherwise.
ProgressBar::Draw terminalDrawing();

/// How far this process has read the file `path`, which it has open; 0 if it has not.
std::uint64_t readPosition(const std::string& path);

}  // namespace calljournal
