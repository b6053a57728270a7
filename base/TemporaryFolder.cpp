#include "TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "TemporaryPaths.h"

namespace calljournal {

TemporaryFolder::TemporaryFolder(const std::string& purpose)
    : path_(makeTemporary([&purpose] {
          const std::filesystem::path folder = std::filesystem::temp_directory_path();
          std::string pattern = (folder / ("calljournal-" + purpose + "-XXXXXX")).string();
          if (::mkdtemp(pattern.data()) == nullptr) {
              throw std::system_error(errno, std::generic_category(), pattern);
          }
          // Without links, so that it is the name the system knows its files by.
          return std::filesystem::canonical(pattern).string();
      })) {}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
    forgetTemporary(path_.string());
}

}  // namespace calljournal
