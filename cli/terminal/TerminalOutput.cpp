#include "TerminalOutput.h"

#include <algorithm>
#include <string_view>
#include <unistd.h>

#include "PrintableText.h"

namespace calljournal {

bool PrintableLines::passOn(std::size_t end) {
    const std::string_view text(pending_.data(), end);
    std::string shown;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t lineEnd = std::min(text.find('\n', from), text.size());
        shown += printable(text.substr(from, lineEnd - from));
        if (lineEnd < text.size()) {
            shown += '\n';
        }
        from = lineEnd + 1;
    }
    pending_.erase(0, end);
    const auto length = static_cast<std::streamsize>(shown.size());
    return target_.sputn(shown.data(), length) == length;
}

PrintableLines::int_type PrintableLines::overflow(int_type c) {
    const char letter = traits_type::to_char_type(c);
    const bool isDone = traits_type::eq_int_type(c, traits_type::eof()) || xsputn(&letter, 1) == 1;
    return isDone ? traits_type::not_eof(c) : traits_type::eof();
}

std::streamsize PrintableLines::xsputn(const char* text, std::streamsize length) {
    pending_.append(text, static_cast<std::size_t>(length));
    const std::size_t lastEnd = pending_.rfind('\n');
    return lastEnd == std::string::npos || passOn(lastEnd + 1) ? length : 0;
}

int PrintableLines::sync() {
    return passOn(pending_.size()) ? target_.pubsync() : -1;
}

PrintableOutput::PrintableOutput(std::ostream& stream) : stream_(stream), before_(stream.rdbuf()), lines_(*before_) {
    stream_.rdbuf(&lines_);
}

PrintableOutput::~PrintableOutput() {
    stream_.flush();
    stream_.rdbuf(before_);
}

TerminalOutput::TerminalOutput(std::ostream& stream, int descriptor) {
    if (::isatty(descriptor) != 0) {
        printable_.emplace(stream);
    }
}

}  // namespace calljournal
