// Runs a fuzz target on files and on the files of folders: its corpus, or what a fuzzer has found.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "Fuzz.h"

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    std::size_t count = 0;
    const auto replay = [&](const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
        ++count;
    };
    for (int i = 1; i < argc; ++i) {
        if (fs::is_directory(argv[i])) {
            for (const auto& entry : fs::directory_iterator(argv[i])) {
                replay(entry.path());
            }
        } else {
            replay(argv[i]);
        }
    }
    std::cout << count << " inputs\n";
    return count == 0 ? 1 : 0;
}
