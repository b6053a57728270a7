#pragma once

#include <functional>
#include <string>
#include <vector>

/// How a program ended and what it printed.
struct Finished {
    int status;  ///< Its exit status, or 128 and the signal that ended it.
    std::string out;
    std::string err;
};

/// Runs `arguments` (program first, looked for in PATH if it is a plain name) with `input` on standard input, until it
/// ends. Its environment names no region.
Finished runProgram(const std::vector<std::string>& arguments, const std::string& input = std::string());

/// The same, but sends the program a signal as soon as `isTime` says so, which is asked again and again.
Finished interruptProgram(const std::vector<std::string>& arguments, int signal, const std::function<bool()>& isTime);

/// A folder of its own that goes with the object.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    std::string file(const std::string& name) const { return path_ + '/' + name; }

    /// Writes a file of that name and returns its path.
    std::string write(const std::string& name, const std::string& content) const;

private:
    std::string path_;
};

/// The whole content of a file.
std::string readFile(const std::string& path);
