#include "StandardOutput.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "Files.h"

namespace calljournal {

namespace {

constexpr std::size_t mostPending = 65536;

}  // namespace

OutputError::OutputError(int reason)
    : reason_(reason),
      sentence_("standard output cannot be written (" + std::generic_category().message(reason) +
                "); send it elsewhere, and look at what is done before you repeat it") {}

bool OutputError::isUnread() const {
    return reason_ == EPIPE;
}

void DescriptorBuffer::write() {
    if (reason_ == 0 && !writeAll(descriptor_, pending_)) {
        reason_ = errno;
    }
    pending_.clear();
    if (reason_ != 0) {
        throw OutputError(reason_);
    }
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type c) {
    const char letter = traits_type::to_char_type(c);
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        xsputn(&letter, 1);
    }
    return traits_type::not_eof(c);
}

std::streamsize DescriptorBuffer::xsputn(const char* text, std::streamsize length) {
    pending_.append(text, static_cast<std::size_t>(length));
    if (pending_.size() >= mostPending) {
        write();
    }
    return length;
}

int DescriptorBuffer::sync() {
    write();
    return 0;
}

StandardOutput::StandardOutput(std::ostream& err)
    : buffer_(STDOUT_FILENO),
      stream_(&buffer_),
      terminal_(stream_, STDOUT_FILENO),
      silent_(stream_.rdbuf()),
      err_(err),
      tiedBefore_(err.tie(&silent_)) {
    // A stream that copies another one reports a failure of either as failbit.
    stream_.exceptions(std::ios::badbit | std::ios::failbit);
}

StandardOutput::~StandardOutput() {
    err_.tie(tiedBefore_);
    stream_.exceptions(std::ios::goodbit);
}

void StandardOutput::close() {
    stream_.flush();
    if (::close(STDOUT_FILENO) != 0) {
        throw OutputError(errno);
    }
}

void refuseClosedDescriptors() {
    // The lowest free descriptor is the one that is taken.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

}  // namespace calljournal
