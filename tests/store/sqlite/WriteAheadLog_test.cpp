#include "WriteAheadLog.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace calljournal::log {

namespace {

constexpr std::size_t pageSize = 512;
constexpr std::size_t frameSize = static_cast<std::size_t>(frameHeaderSize) + pageSize;
constexpr auto framesAt = static_cast<std::size_t>(headerSize);

void put(std::string& bytes, std::size_t at, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<char>(number >> (24 - 8 * i));
    }
}

std::uint32_t numberAt(const std::string& bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8U | static_cast<unsigned char>(bytes[at + i]);
    }
    return number;
}

/// A log in memory, of big-endian sums.
class Log {
public:
    explicit Log(std::uint32_t size = pageSize) : bytes_(framesAt, '\0') {
        put(bytes_, 0, 0x377f0683);
        put(bytes_, 4, 3007000);
        put(bytes_, 8, size);
        put(bytes_, 16, 77);
        put(bytes_, 20, 78);
        std::uint32_t first = 0;
        std::uint32_t second = 0;
        for (std::size_t at = 0; at < 24; at += 8) {
            first += numberAt(bytes_, at) + second;
            second += numberAt(bytes_, at + 4) + first;
        }
        put(bytes_, 24, first);
        put(bytes_, 28, second);
    }

    Reader reader() const {
        return [this](void* buffer, std::int64_t size, std::int64_t offset) {
            const auto at = static_cast<std::size_t>(offset);
            const auto count = static_cast<std::size_t>(size);
            if (at + count > bytes_.size()) {
                return false;
            }
            std::memcpy(buffer, bytes_.data() + at, count);
            return true;
        };
    }

    /// Writes frames from frame `index` on; the last one commits if wanted.
    void write(std::size_t index, std::size_t count, bool isCommit, char letter) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t offset = framesAt + (index + i) * frameSize;
            std::string frame(frameSize, letter);
            put(frame, 0, static_cast<std::uint32_t>(i + 1));
            put(frame, 4, isCommit && i + 1 == count ? 9 : 0);
            put(frame, 8, 77);
            put(frame, 12, 78);
            EXPECT_TRUE(seal(reader(), frame.data(), static_cast<std::int64_t>(frame.size()),
                             static_cast<std::int64_t>(offset)));
            bytes_.resize(std::max(bytes_.size(), offset + frame.size()));
            bytes_.replace(offset, frame.size(), frame);
        }
    }

    bool hasLost() const { return hasLostTransactions(reader(), static_cast<std::int64_t>(bytes_.size())); }

    bool hasLostWith(std::size_t changed) {
        bytes_[changed] = static_cast<char>(bytes_[changed] ^ 1);
        const bool hasLost = this->hasLost();
        bytes_[changed] = static_cast<char>(bytes_[changed] ^ 1);
        return hasLost;
    }

    std::size_t pages() const { return committedPages(reader(), static_cast<std::int64_t>(bytes_.size())).size(); }
    std::size_t frameAt(std::size_t index) const { return framesAt + index * frameSize; }

private:
    std::string bytes_;
};

TEST(WriteAheadLog, IsWholeWithWhatEarlierTransactionsLeftInIt) {
    Log log;
    log.write(0, 9, false, 'a');  // written out and taken back
    log.write(0, 6, true, 'b');   // committed, but its process was killed before it knew
    log.write(0, 2, true, 'c');
    EXPECT_FALSE(log.hasLost());
    EXPECT_EQ(log.pages(), 2U);
}

TEST(WriteAheadLog, HasLostATransactionOfWhichAnyBitBeforeTheLastOneChanged) {
    Log log;
    for (std::size_t i = 0; i < 4; ++i) {
        log.write(2 * i, 2, true, static_cast<char>('a' + i));
    }
    log.write(8, 1, true, 'z');
    EXPECT_FALSE(log.hasLost());
    for (std::size_t byte = 0; byte < log.frameAt(8); ++byte) {
        EXPECT_TRUE(log.hasLostWith(byte)) << byte;
    }
    EXPECT_FALSE(log.hasLostWith(log.frameAt(8) + 100));
}

TEST(WriteAheadLog, OfAnImpossiblePageSizeIsDamaged) {
    for (const std::uint32_t size : {0U, 1U, 256U, 513U, 131072U, 0xfffffff0U}) {
        Log log(size);
        log.write(0, 4, true, 'a');
        EXPECT_TRUE(log.hasLost()) << size;
        EXPECT_EQ(log.pages(), 0U) << size;
    }
}

}  // namespace

}  // namespace calljournal::log
