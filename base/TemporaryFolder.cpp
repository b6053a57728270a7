#include "TemporaryFolder.h"

#include <cstdlib>
#include <system_error>

#include "TemporaryPaths.h"

namespace calljournal {

TemporaryFolder::TemporaryFolder(const std::string& purpose)
    : path_(makeTemporary([&purpose] {
          std::string pattern = temporaryPattern(purpose);
          if (::mkdtemp(pattern.data()) == nullptr) {
              throwNoTemporary(pattern);
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
