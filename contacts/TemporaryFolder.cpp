#include "TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace calljournal {

TemporaryFolder::TemporaryFolder(const std::string& purpose) {
    std::string pattern = (std::filesystem::temp_directory_path() / ("calljournal-" + purpose + "-XXXXXX")).string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), pattern);
    }
    // Without links, so that it is the name the system knows its files by.
    path_ = std::filesystem::canonical(pattern);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace calljournal
