#ifndef CALLJOURNAL_PLATFORMLOG_H
#define CALLJOURNAL_PLATFORMLOG_H

#if defined(__GNUC__)
#define PLATFORMLOG_PRINTF(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define PLATFORMLOG_PRINTF(formatIndex, firstArgument)
#endif

/// Returns whether lines of `module` at `level` are wanted: asked before each line, so that an unwanted one costs
/// nothing.
bool loggingOnAppZel(const char* module, int level);

/// Writes one line of the log, in printf form. `sourceFile` is the file's name without folder and extension, `line` the
/// line in it.
void logAppZel(const char* module, const char* sourceFile, int level, int line, const char* format, ...)
    PLATFORMLOG_PRINTF(5, 6);

#endif
