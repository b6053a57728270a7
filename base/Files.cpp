#include "Files.h"

#include <algorithm>
#include <cerrno>
#include <istream>
#include <poll.h>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace calljournal {

namespace {

constexpr std::size_t pieceSize = 65536;

/// Returns how many bytes there are from the stream's present place to its end; 0 where that is not known, as of a pipe.
std::uint64_t sizeAhead(std::istream& in) {
    const std::istream::pos_type here = in ? in.tellg() : std::istream::pos_type(-1);
    if (here < 0) {
        return 0;
    }
    in.seekg(0, std::ios::end);
    const std::istream::pos_type end = in.tellg();
    in.clear();
    in.seekg(here);
    return end < here ? 0 : static_cast<std::uint64_t>(end - here);
}

}  // namespace

std::string sizeText(std::uint64_t bytes) {
    constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;
    return bytes % mebibyte == 0 ? std::to_string(bytes / mebibyte) + " MiB" : std::to_string(bytes) + " bytes";
}

std::string tooMuchInput(std::uint64_t most) {
    return "has more than " + sizeText(most) + ", which is as much as is read";
}

void readPieces(std::istream& in, const std::function<void(std::string_view)>& use) {
    std::string piece(pieceSize, '\0');
    while (in.read(piece.data(), static_cast<std::streamsize>(piece.size())) || in.gcount() != 0) {
        use(std::string_view(piece).substr(0, static_cast<std::size_t>(in.gcount())));
    }
    if (!in.eof()) {
        throw std::runtime_error("cannot be read (" + std::generic_category().message(errno) + ')');
    }
}

std::string readAll(std::istream& in) {
    std::string text;
    const std::uint64_t most = std::max(mostInput, sizeAhead(in));
    readPieces(in, [&](std::string_view piece) {
        if (text.size() + piece.size() > most) {
            throw std::runtime_error(tooMuchInput());
        }
        text += piece;
    });
    return text;
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {
            pollfd wait = {descriptor, POLLOUT, 0};
            ::poll(&wait, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace calljournal
