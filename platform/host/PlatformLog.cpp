#include "PlatformLog.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "HostPlatform.h"

namespace {

std::atomic<int> highestLevel{0};
std::atomic<calljournal::LogSink> logSink{nullptr};

/// Returns the printf text; the bare format where it cannot be formatted (beyond INT_MAX bytes, or no character).
std::string formatted(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text;
    if (length < 0) {
        text = format;
    } else {
        text.resize(static_cast<std::size_t>(length));
        // The terminator goes where the string has its own.
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}

/// Appends `text` as part of one line: a control character that a caller's name may hold neither ends the record nor
/// reaches the terminal.
void appendOnOneLine(std::string& record, std::string_view text) {
    constexpr std::string_view hexDigits = "0123456789abcdef";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            record += "\\n";
        } else if (c == '\r') {
            record += "\\r";
        } else if ((byte < 0x20 && c != '\t') || byte == 0x7f) {
            record += "\\x";
            record += hexDigits[byte >> 4];
            record += hexDigits[byte & 0xf];
        } else {
            record += c;
        }
    }
}

/// Writes the record at once, so that lines of several threads or processes do not mix. A log that cannot be written is
/// no reason to disturb the caller.
void writeToStandardError(std::string_view record) {
    while (!record.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, record.data(), record.size());
        if (written > 0) {
            record.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return;
        }
    }
}

void writeRecord(const char* module, const char* sourceFile, int level, int line, std::string_view text) {
    // Some lines bring their own line feed.
    if (!text.empty() && text.back() == '\n') {
        text.remove_suffix(1);
    }
    std::string record =
        "[" + std::to_string(level) + "] " + module + " " + sourceFile + ":" + std::to_string(line) + " ";
    appendOnOneLine(record, text);
    record += '\n';
    if (const calljournal::LogSink sink = logSink) {
        sink(record);
    } else {
        writeToStandardError(record);
    }
}

}  // namespace

void calljournal::setLogLevel(int level) {
    highestLevel = level;
}

void calljournal::setLogSink(LogSink sink) {
    logSink = sink;
}

bool calljournal::setLogLevelFromText(const std::string& text) {
    if (text == "off") {
        setLogLevel(0);
        return true;
    }
    int level = 0;
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, level);
    if (error != std::errc() || behind != end) {
        return false;
    }
    setLogLevel(level);
    return true;
}

bool loggingOnAppZel(const char*, int level) {
    const int highest = highestLevel;
    return highest > 0 && level <= highest;
}

void logAppZel(const char* module, const char* sourceFile, int level, int line, const char* format, ...) {
    if (!loggingOnAppZel(module, level)) {
        return;
    }
    const int errorOfCaller = errno;
    std::va_list arguments;
    va_start(arguments, format);
    try {
        writeRecord(module, sourceFile, level, line, formatted(format, arguments));
    } catch (const std::exception&) {
        // Memory ran out over a huge text; its format says at least which line it was.
        writeToStandardError(format);
        writeToStandardError("\n");
    }
    va_end(arguments);
    errno = errorOfCaller;
}
