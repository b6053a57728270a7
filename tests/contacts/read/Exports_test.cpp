#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include "AddressBooks.h"

namespace calljournal {
namespace {

namespace fs = std::filesystem;

// Files as programs export them, with their names, orders, character sets and quoting, and beside each the contacts
// that it holds: outlook-2013-de.csv and outlook-2013-de.txt.

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<fs::path> exports() {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(EXPORTS_FOLDER)) {
        if (entry.path().extension() != ".txt") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST(Exports, HoldTheContactsBesideThem) {
    for (const fs::path& file : exports()) {
        EXPECT_EQ(read(textOf(file)), textOf(fs::path(file).replace_extension(".txt"))) << file;
    }
}

TEST(Exports, AreThoseOfEveryProgram) {
    EXPECT_GE(exports().size(), 129u);
}

}  // namespace
}  // namespace calljournal
