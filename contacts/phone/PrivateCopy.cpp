#include "PrivateCopy.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "Files.h"
#include "TextStream.h"

namespace calljournal {

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::size_t chunkSize = 65536;

std::string errorText(int number) {
    return std::generic_category().message(number);
}

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }

    int number() const { return number_; }

private:
    int number_;
};

/// Copies from one open file to another; `problem` says why it could not.
class Copying {
public:
    Copying(int source, int target, const CopyOptions& options, CopyResult& result)
        : source_(source), target_(target), options_(options), result_(result) {}

    bool copy(std::uint64_t total) {
        std::uint64_t done = 0;
        std::string head;  // A pipe may hand its first bytes over one at a time.
        bool isHead = true;
        for (;;) {
            std::string_view bytes;
            if (!read(bytes)) {
                return false;
            }
            done += bytes.size();
            if (done > options_.mostBytes) {
                result_.problem = tooMuchInput(options_.mostBytes);
                return false;
            }
            if (isHead) {
                head += bytes;
                isHead = head.size() < byteOrderMark.size() && !bytes.empty();
                if (!isHead && !write(withoutMark(head))) {
                    return false;
                }
            } else if (!write(bytes)) {
                return false;
            }
            if (bytes.empty()) {
                return true;
            }
            if (options_.progress) {
                options_.progress(done, total);
            }
        }
    }

private:
    /// Fetches the next bytes; none at the end of the file.
    bool read(std::string_view& bytes) {
        for (;;) {
            pollfd wait = {source_, POLLIN, 0};
            const int ready = ::poll(&wait, 1, options_.timeout);
            if (ready == 0) {
                result_.problem = fmt::format("nothing came for {:g} seconds", options_.timeout / 1000.0);
                return false;
            }
            const ssize_t count = ready < 0 ? -1 : ::read(source_, buffer_.data(), buffer_.size());
            if (count >= 0) {
                bytes = std::string_view(buffer_.data(), static_cast<std::size_t>(count));
                return true;
            }
            if (errno != EINTR && errno != EAGAIN) {
                result_.problem = errorText(errno);
                return false;
            }
        }
    }

    std::string_view withoutMark(std::string_view head) {
        result_.isUtf16 = head.substr(0, 2) == "\xff\xfe" || head.substr(0, 2) == "\xfe\xff";
        result_.hadByteOrderMark = head.substr(0, byteOrderMark.size()) == byteOrderMark;
        return result_.hadByteOrderMark ? head.substr(byteOrderMark.size()) : head;
    }

    bool write(std::string_view bytes) {
        const bool isWritten = writeAll(target_, options_.fromLatin1 ? decoded(bytes, "ISO-8859-1") : bytes);
        if (!isWritten) {
            result_.problem = "cannot be copied to a temporary folder: " + errorText(errno);
        }
        return isWritten;
    }

    int source_;
    int target_;
    const CopyOptions& options_;
    CopyResult& result_;
    std::array<char, chunkSize> buffer_;
};

}  // namespace

CopyResult copyPrivately(const std::string& source, const std::string& target, const CopyOptions& options) {
    // A pipe that nobody writes to must not hold the opening up: what waits is the poll, which has an end.
    const Descriptor from(::open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (from.number() < 0 || ::fstat(from.number(), &status) != 0) {
        return {CopyResult::unopened, errorText(errno)};
    }
    if (S_ISDIR(status.st_mode)) {
        return {CopyResult::unopened, errorText(EISDIR)};
    }
    const std::uint64_t total = S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
    if (total > options.mostBytes) {
        return {CopyResult::stopped,
                "has " + sizeText(total) + "; more than " + sizeText(options.mostBytes) + " are not read"};
    }
    const Descriptor to(::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (to.number() < 0) {
        return {CopyResult::stopped, "cannot be copied to a temporary folder: " + errorText(errno)};
    }
    CopyResult result;
    if (!Copying(from.number(), to.number(), options, result).copy(total)) {
        result.state = CopyResult::stopped;
        ::unlink(target.c_str());
    }
    return result;
}

}  // namespace calljournal
