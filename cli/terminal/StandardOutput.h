#pragma once

#include <cstddef>
#include <exception>
#include <ostream>
#include <streambuf>
#include <string>

#include "TerminalOutput.h"

namespace calljournal {

/// Standard output cannot be written; `what()` is a sentence for people. It is no std::runtime_error, which is the
/// trouble of one file.
class OutputError : public std::exception {
public:
    /// `reason` is what errno says.
    explicit OutputError(int reason);

    const char* what() const noexcept override { return sentence_.c_str(); }

    /// Whether it goes to a pipe that nobody reads any more, which is no failure: `head` has seen what it wanted.
    bool isUnread() const;

private:
    int reason_;
    std::string sentence_;
};

/// Collects bytes and writes them to a descriptor, at the latest when the stream is flushed.
class DescriptorBuffer : public std::streambuf {
public:
    explicit DescriptorBuffer(int descriptor) : descriptor_(descriptor) {}

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize length) override;
    int sync() override;

private:
    /// Throws OutputError if the descriptor takes not all of it; from then on each time, and nothing more is written.
    void write();

    int descriptor_;
    int reason_ = 0;
    std::string pending_;
};

/// The program's standard output, printable where it is a terminal. What cannot be written is thrown by the operation
/// on the stream that finds out, at the latest by close(), as OutputError.
class StandardOutput {
public:
    /// Until the object goes, what `err` gets comes behind what the stream got before.
    explicit StandardOutput(std::ostream& err);
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    /// Fails without a word; close() does not.
    ~StandardOutput();

    std::ostream& stream() { return stream_; }

    /// Writes what is pending and ends the output; some systems say only then that there was no room. Throws
    /// OutputError.
    void close();

private:
    DescriptorBuffer buffer_;
    std::ostream stream_;
    TerminalOutput terminal_;
    std::ostream silent_;  ///< The same bytes; it fails without a word.
    std::ostream& err_;
    std::ostream* tiedBefore_;
};

/// Has standard input, output and error refuse work if they are closed, rather than be the first files that are opened.
void refuseClosedDescriptors();

}  // namespace calljournal
