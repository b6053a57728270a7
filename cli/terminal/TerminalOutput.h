#pragma once

#include <optional>
#include <ostream>
#include <streambuf>
#include <string>

namespace calljournal {

/// Passes lines on as printable() shows them, so that no text in them drives the terminal. Line feeds stay; a line goes
/// on when it is whole or when the stream is flushed.
class PrintableLines : public std::streambuf {
public:
    /// Writes to `target`, which must outlive the object.
    explicit PrintableLines(std::streambuf& target) : target_(target) {}

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize length) override;
    int sync() override;

private:
    /// Passes on what is in front of `end` in the pending text.
    bool passOn(std::size_t end);

    std::streambuf& target_;
    std::string pending_;
};

/// Has a stream show printable lines for as long as the object lives.
class PrintableOutput {
public:
    explicit PrintableOutput(std::ostream& stream);
    ~PrintableOutput();
    PrintableOutput(const PrintableOutput&) = delete;
    PrintableOutput& operator=(const PrintableOutput&) = delete;

private:
    std::ostream& stream_;
    std::streambuf* before_;
    PrintableLines lines_;
};

/// Does the same if `descriptor`, where the stream ends, is a terminal. Files and pipes get the bytes as they are.
class TerminalOutput {
public:
    TerminalOutput(std::ostream& stream, int descriptor);

private:
    std::optional<PrintableOutput> printable_;
};

}  // namespace calljournal
