#pragma once

#include <functional>
#include <mutex>
#include <string>

namespace calljournal {

// The files and folders of this process that nobody shall find once it is over. Whoever makes one removes it; the list
// is for the moment when a signal ends the process and nobody gets around to it. All may be called from any thread.

/// Returns the pattern by which mkstemp() or mkdtemp() makes a temporary file or folder; `purpose` becomes a part of
/// its name.
std::string temporaryPattern(const std::string& purpose);

/// Throws std::system_error where nothing can be made by such a pattern, with the reason in errno.
[[noreturn]] void throwNoTemporary(const std::string& pattern);

/// Makes a file or folder by `make`, which returns its path, and remembers it.
std::string makeTemporary(const std::function<std::string()>& make);

/// Says that the path is no longer there, or that it may stay.
void forgetTemporary(const std::string& path);

/// Nothing is removed, made or forgotten while this is held: what is done meanwhile is done wholly or not at all.
std::unique_lock<std::mutex> holdTemporaries();

/// Removes all of them, whatever other threads put into them meanwhile; `hold` shows that nobody is about to make
/// another.
void removeTemporaries(const std::unique_lock<std::mutex>& hold);

}  // namespace calljournal
