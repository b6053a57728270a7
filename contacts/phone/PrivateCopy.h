#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Files.h"

namespace calljournal {

/// How a user's file is copied for an import, which deletes what it has read.
struct CopyOptions {
    bool fromLatin1 = false;              ///< Turn ISO 8859-1 into UTF-8 on the way.
    std::uint64_t mostBytes = mostInput;  ///< A file may have so many bytes.
    int timeout = 30000;                  ///< Milliseconds to wait for the next bytes of a pipe.
    std::function<void(std::uint64_t done, std::uint64_t total)>
        progress;  ///< Called with numbers of bytes; total 0: not known.
};

/// What became of the copy.
struct CopyResult {
    enum State {
        made,      ///< The copy is whole.
        unopened,  ///< There is nothing to read: missing, unreadable, a folder. No copy.
        stopped    ///< Too much, too slow or a failing disk. No copy.
    };
    State state = made;
    std::string problem;  ///< Why there is no copy: "No such file or directory", for a sentence after the file's name.
    bool hadByteOrderMark = false;  ///< The UTF-8 mark in front, which the copy goes without.
    bool isUtf16 = false;           ///< The file starts with the mark of UTF-16; the copy is as it came.
};

/// Copies what `source` holds, be it a file or a pipe, to the new file `target`, which only this user may read. Never
/// reads on after `mostBytes`, never waits longer than `timeout` for a byte.
CopyResult copyPrivately(const std::string& source, const std::string& target, const CopyOptions& options);

}  // namespace calljournal
