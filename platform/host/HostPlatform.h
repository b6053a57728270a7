#ifndef CALLJOURNAL_HOSTPLATFORM_H
#define CALLJOURNAL_HOSTPLATFORM_H

#include <string>

namespace calljournal {

// What a phone knows about itself and a PC does not. Everything may be set at any time and holds for the whole
// process from then on; the log level may be set while other threads write to the log.

/// Lets log lines up to `level` (the library uses 2 to 6) through to standard error. 0, the level at the start, and
/// anything below it switch the log off.
void setLogLevel(int level);

/// Sets the log level from a text, such as an environment variable's: a decimal number, or "off". Returns false and
/// leaves the level as it is for any other text.
bool setLogLevelFromText(const std::string& text);

/// Takes a line of the log, with its line feed. Other control characters but tabs are written out, as "\n" or "\x1b".
typedef void (*LogSink)(const std::string& line);

/// Hands the lines of the log to `sink`, on the thread that logs, instead of writing them to standard error. Null, as at
/// the start: to standard error.
void setLogSink(LogSink sink);

/// Sets which phone this machine plays: whether it is the NQ platform, and the variant of its sub-platform (1 is TQ2).
/// At the start it is neither.
void setHardware(bool isNq, int subPlatformVariant);

/// Sets the folder that takes the place of the phone's "/data/", and its subfolders for those below it, where disk space
/// is asked for. Empty, as at the start: "/data/" itself.
void setDataDirectory(const std::string& directory);

}  // namespace calljournal

#endif
