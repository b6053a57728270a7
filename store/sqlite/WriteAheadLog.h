#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string_view>

namespace calljournal {

/// What SQLite's write-ahead log says of its pages: a header of 32 bytes, then frames, each a header of 24 bytes and a
/// page. A frame's checksum goes on from that of the frame before, so one is checked with no more than both headers.
/// The format: https://sqlite.org/fileformat2.html#walformat
namespace log {

constexpr std::int64_t headerSize = 32;
constexpr std::int64_t frameHeaderSize = 24;

/// Puts `size` bytes at `offset` of the log into `buffer`; false if they cannot be read.
using Reader = std::function<bool(void* buffer, std::int64_t size, std::int64_t offset)>;

/// Returns the number of the page that belongs to a frame's header.
std::uint32_t pageNumber(const char* frameHeader);

/// Returns whether the `size` bytes at `offset` are the page of a frame.
bool isPage(std::int64_t size, std::int64_t offset);

/// Returns the number of the page that is at `offset` of the log; 0 if the page is not as it was written.
std::uint32_t checkedPageNumber(const Reader& read, std::string_view page, std::int64_t offset);

/// Gives the frame of `size` bytes, which is to be written at `offset`, the checksum that goes on from what is before it
/// in the log; false if that cannot be read.
bool seal(const Reader& read, char* frame, std::int64_t size, std::int64_t offset);

/// Returns whether a log of `size` bytes has lost a transaction that was complete: a frame is not as it was written, and
/// one behind it shows that more was written later. A last transaction that is not right may be one that a power cut
/// interrupted.
bool hasLostTransactions(const Reader& read, std::int64_t size);

/// Returns the pages of the complete transactions of a log of `size` bytes, by their numbers: where in the log the last
/// version of each begins. Of a log that has lost some, these are all frames that go on from another, up to the last
/// commit among them.
std::map<std::uint32_t, std::int64_t> committedPages(const Reader& read, std::int64_t size);

}  // namespace log
}  // namespace calljournal
