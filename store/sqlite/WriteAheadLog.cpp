#include "WriteAheadLog.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace calljournal::log {

namespace {

constexpr std::int64_t smallestPage = 512;
constexpr std::int64_t largestPage = 65536;

std::uint32_t numberAt(const unsigned char* bytes) {
    return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U | std::uint32_t{bytes[2]} << 8U | bytes[3];
}

void putNumber(std::uint32_t number, unsigned char* bytes) {
    for (unsigned i = 0; i < 4; ++i) {
        bytes[i] = static_cast<unsigned char>(number >> (24U - 8U * i));
    }
}

/// A checksum in the middle of a log. It adds numbers of the byte order that the log has chosen.
struct Sum {
    bool isBigEndian = false;
    std::uint32_t first = 0;
    std::uint32_t second = 0;

    bool operator==(const Sum& other) const { return first == other.first && second == other.second; }

    /// Goes on with bytes, a multiple of eight.
    void add(const unsigned char* bytes, std::size_t size) {
        // Each order has a loop of its own: most of what a page costs is here.
        if (isBigEndian) {
            addNumbers(bytes, size, numberAt);
        } else {
            addNumbers(bytes, size, [](const unsigned char* at) {
                return std::uint32_t{at[3]} << 24U | std::uint32_t{at[2]} << 16U | std::uint32_t{at[1]} << 8U | at[0];
            });
        }
    }

private:
    template <typename Number>
    void addNumbers(const unsigned char* bytes, std::size_t size, const Number& number) {
        for (const unsigned char* end = bytes + size; bytes < end; bytes += 8) {
            first += number(bytes) + second;
            second += number(bytes + 4) + first;
        }
    }
};

struct Header {
    std::array<unsigned char, headerSize> bytes = {};

    bool isBigEndian() const { return (bytes[3] & 1U) != 0; }
    std::int64_t pageSize() const { return numberAt(&bytes[8]); }
    Sum sum() const { return {isBigEndian(), numberAt(&bytes[24]), numberAt(&bytes[28])}; }

    bool isRight() const {
        Sum sum = {isBigEndian()};
        sum.add(bytes.data(), 24);
        const std::int64_t size = pageSize();
        return sum == this->sum() && size >= smallestPage && size <= largestPage && (size & (size - 1)) == 0;
    }

    bool isEmpty() const {
        return std::all_of(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte == 0; });
    }
};

/// The first bytes of a frame are in its checksum; that is at the end of its header.
constexpr std::size_t sumBegin = 8;
constexpr std::size_t sumAt = 16;

struct FrameHeader {
    std::array<unsigned char, frameHeaderSize> bytes = {};

    std::uint32_t pageNumber() const { return numberAt(bytes.data()); }
    bool isCommit() const { return numberAt(&bytes[4]) != 0; }
    Sum sum(bool isBigEndian) const { return {isBigEndian, numberAt(&bytes[sumAt]), numberAt(&bytes[sumAt + 4])}; }

    /// Returns whether the frame is of the log as it is now, not of one that was written over.
    bool isOf(const Header& header) const { return std::equal(&bytes[8], &bytes[16], &header.bytes[16]); }

    /// Returns what the frame's sum is to be behind one with the sum `before`.
    Sum sumBehind(Sum before, const unsigned char* page, std::size_t size) const {
        before.add(bytes.data(), sumBegin);
        before.add(page, size);
        return before;
    }

    /// Returns whether the frame is as it was written behind one with the sum `before`.
    bool isRight(const Sum& before, const unsigned char* page, std::size_t size) const {
        return sumBehind(before, page, size) == sum(before.isBigEndian);
    }
};

/// Returns the checksum that a frame of `size` bytes at `offset` goes on from; nothing if it cannot be read.
std::optional<Sum> readBefore(const Reader& read, std::int64_t size, std::int64_t offset) {
    Header header;
    FrameHeader frame;
    const bool isFirst = offset == headerSize;
    if (!read(header.bytes.data(), headerSize, 0) ||
        (!isFirst && !read(frame.bytes.data(), frameHeaderSize, offset - size))) {
        return std::nullopt;
    }
    return isFirst ? header.sum() : frame.sum(header.isBigEndian());
}

/// Returns the header of a log of `size` bytes; nothing if there is nothing behind it, or nothing was written yet.
std::optional<Header> readHeader(const Reader& read, std::int64_t size) {
    Header header;
    const bool isThere = size >= headerSize + frameHeaderSize + smallestPage &&
                         read(header.bytes.data(), headerSize, 0) && !header.isEmpty();
    return isThere ? std::make_optional(header) : std::nullopt;
}

/// Calls `use` with each frame, whether its checksum goes on from the frame before, and its place, until that returns
/// false. Where the frame before is not right, that may be its page, or the checksum that it has.
template <typename Use>
void forEachFrame(const Reader& read, std::int64_t size, const Header& header, const Use& use) {
    std::vector<unsigned char> page(static_cast<std::size_t>(header.pageSize()));
    FrameHeader frame;
    Sum before = header.sum();    // that the frame has
    Sum computed = header.sum();  // that it is to have
    const std::int64_t step = frameHeaderSize + header.pageSize();
    for (std::int64_t offset = headerSize; offset + step <= size; offset += step) {
        if (!read(frame.bytes.data(), frameHeaderSize, offset) ||
            !read(page.data(), header.pageSize(), offset + frameHeaderSize)) {
            return;
        }
        const Sum sum = frame.sum(header.isBigEndian());
        const Sum next = frame.sumBehind(before, page.data(), page.size());
        const bool goesOn = next == sum || frame.isRight(computed, page.data(), page.size());
        if (!use(frame, goesOn, offset)) {
            return;
        }
        before = sum;
        computed = goesOn ? sum : next;
    }
}

}  // namespace

std::uint32_t pageNumber(const char* frameHeader) {
    return numberAt(reinterpret_cast<const unsigned char*>(frameHeader));
}

bool isPage(std::int64_t size, std::int64_t offset) {
    return size >= smallestPage && (size & (size - 1)) == 0 &&
           (offset - headerSize - frameHeaderSize) % (size + frameHeaderSize) == 0;
}

std::uint32_t checkedPageNumber(const Reader& read, std::string_view page, std::int64_t offset) {
    const auto size = static_cast<std::int64_t>(page.size());
    FrameHeader frame;
    const std::int64_t begin = offset - frameHeaderSize;
    const auto before = readBefore(read, size + frameHeaderSize, begin);
    const bool isRight = before && read(frame.bytes.data(), frameHeaderSize, begin) &&
                         frame.isRight(*before, reinterpret_cast<const unsigned char*>(page.data()), page.size());
    return isRight ? frame.pageNumber() : 0;
}

bool seal(const Reader& read, char* frame, std::int64_t size, std::int64_t offset) {
    auto before = readBefore(read, size, offset);
    if (before) {
        auto* bytes = reinterpret_cast<unsigned char*>(frame);
        before->add(bytes, sumBegin);
        before->add(bytes + frameHeaderSize, static_cast<std::size_t>(size - frameHeaderSize));
        putNumber(before->first, bytes + sumAt);
        putNumber(before->second, bytes + sumAt + 4);
    }
    return before.has_value();
}

bool hasLostTransactions(const Reader& read, std::int64_t size) {
    const std::optional<Header> header = readHeader(read, size);
    if (!header) {
        return false;
    }
    if (!header->isRight()) {
        return true;  // it was on the disk before the first frame was written
    }
    bool isWhole = true;
    bool hasLostCommit = false;
    bool isBehindLostCommit = false;
    forEachFrame(read, size, *header, [&](const FrameHeader& frame, bool goesOn, std::int64_t) {
        const bool isOfThisLog = frame.isOf(*header);
        isBehindLostCommit = goesOn && isOfThisLog && hasLostCommit;
        // Of the first frame that is not right, what tells which log it is of may be what is not right.
        const bool mayCommit = frame.isCommit() && (isOfThisLog || (isWhole && goesOn));
        isWhole = isWhole && goesOn && isOfThisLog;
        // Nothing is written behind a commit before that is on the disk. What does not go on from a commit is what an
        // earlier transaction left, which was taken back.
        hasLostCommit = (hasLostCommit && goesOn) || (!isWhole && mayCommit);
        return !isBehindLostCommit;
    });
    return isBehindLostCommit;
}

std::map<std::uint32_t, std::int64_t> committedPages(const Reader& read, std::int64_t size) {
    std::map<std::uint32_t, std::int64_t> committed;
    const std::optional<Header> header = readHeader(read, size);
    if (!header || !header->isRight()) {
        return committed;
    }
    const bool isWhole = !hasLostTransactions(read, size);
    std::map<std::uint32_t, std::int64_t> written;
    forEachFrame(read, size, *header, [&](const FrameHeader& frame, bool goesOn, std::int64_t offset) {
        const bool isRight = goesOn && frame.isOf(*header);
        if (isRight) {
            written[frame.pageNumber()] = offset + frameHeaderSize;
        }
        if (isRight && frame.isCommit()) {
            committed = written;
        }
        return isRight || !isWhole;
    });
    return committed;
}

}  // namespace calljournal::log
