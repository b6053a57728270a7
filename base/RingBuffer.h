#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <vector>

namespace calljournal {

/// Items that go round between two threads: one fills them, the other empties them in the same order. There is a fixed
/// number of them, so that nobody gets far ahead, and whatever memory an item has it keeps.
///
///     while (Item* item = items.toFill()) {           while (Item* item = items.toEmpty()) {
///         ...                                             ...
///         items.filled();                                 items.emptied();
///     }                                               }
///
/// Either thread may end this by close().
template <class Item>
class RingBuffer {
public:
    explicit RingBuffer(std::size_t count) : items_(count) {}

    /// Waits for an item to fill. Returns null after close().
    Item* toFill() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return count_ < items_.size() || isClosed_; });
        return isClosed_ ? nullptr : &items_[(first_ + count_) % items_.size()];
    }

    /// Hands over the item that toFill() gave.
    void filled() {
        change([this] { ++count_; });
    }

    /// Waits for an item to empty. After close() those that were filled still come, and then null.
    Item* toEmpty() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return count_ != 0 || isClosed_; });
        return count_ == 0 ? nullptr : &items_[first_];
    }

    /// Gives back the item that toEmpty() gave.
    void emptied() {
        change([this] {
            first_ = (first_ + 1) % items_.size();
            --count_;
        });
    }

    void close() {
        change([this] { isClosed_ = true; });
    }

private:
    /// Wakes the other thread when it can go on at once.
    template <class Change>
    void change(const Change& change) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            change();
        }
        changed_.notify_one();
    }

    std::vector<Item> items_;
    std::mutex mutex_;
    std::condition_variable changed_;  ///< Only one of the two can be waiting.
    std::size_t first_ = 0;            ///< Of those that are filled.
    std::size_t count_ = 0;
    bool isClosed_ = false;
};

}  // namespace calljournal
