#pragma once

#include <fstream>
#include <istream>
#include <stdexcept>
#include <string>

#include "ValueError.h"

namespace calljournal {

/// What people call the input `path`: "-" is standard input.
inline std::string inputName(const std::string& path) {
    return path == "-" ? "standard input" : path;
}

/// Returns what `read` makes of the file `path`, or of `in` if that is "-". A ValueError or std::runtime_error of
/// `read` gets the input's name in front.
template <class Read>
auto readInput(const std::string& path, std::istream& in, Read read) {
    try {
        if (path == "-") {
            return read(in);
        }
        std::ifstream file(path, std::ios::binary);
        return read(file);
    } catch (const ValueError& error) {
        throw ValueError(inputName(path) + ": " + error.what());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(inputName(path) + ": " + error.what());
    }
}

}  // namespace calljournal
