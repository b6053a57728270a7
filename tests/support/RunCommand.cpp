#include "RunCommand.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

std::filesystem::path makeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "calljournal-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot make " + pattern);
    }
    return pattern;
}

}  // namespace

TemporaryFolder::TemporaryFolder() : path_(makeFolder().string()) {}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(file(name), std::ios::binary) << content;
    return file(name);
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

Finished runProgram(const std::vector<std::string>& arguments, const std::string& input) {
    // Files rather than pipes: whatever the sizes, nobody waits for anybody.
    const TemporaryFolder folder;
    const std::string in = folder.write("in", input);
    const std::string out = folder.file("out");
    const std::string err = folder.file("err");
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);

    const pid_t child = ::fork();
    if (child == 0) {
        if (std::freopen(in.c_str(), "r", stdin) != nullptr && std::freopen(out.c_str(), "w", stdout) != nullptr &&
            std::freopen(err.c_str(), "w", stderr) != nullptr) {
            ::execvp(argv[0], argv.data());
        }
        ::_exit(127);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child) {
        throw std::runtime_error("cannot run " + arguments[0]);
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readFile(out), readFile(err)};
}
