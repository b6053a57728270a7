#pragma once

#include "PlatformLog.h"

/// Writes one line to the platform log if the module wants it at that level; the arguments are not evaluated otherwise.
/// `source` is the name of the source file without folder and extension.
#define CALLJOURNAL_LOG(module, source, level, ...)                  \
    do {                                                             \
        if (loggingOnAppZel(module, level)) {                        \
            logAppZel(module, source, level, __LINE__, __VA_ARGS__); \
        }                                                            \
    } while (false)
