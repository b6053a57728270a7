#ifndef CALLJOURNAL_STORAGESPACE_H
#define CALLJOURNAL_STORAGESPACE_H

#include <string>

#include "CallJournalExport.h"

/// Returns whether the user storage has room for importing the file `path`: more than 9999999 bytes beyond twice its
/// size. The sum is done in unsigned 32-bit numbers and wraps: a file whose double exceeds the free space is let
/// through.
extern "C" CALLJOURNAL_EXPORT bool hasPhoneAvailableMemorySpace(const std::string& path);

#endif
