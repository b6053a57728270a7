#ifndef CALLJOURNAL_WORDING_H
#define CALLJOURNAL_WORDING_H

#include <cstddef>
#include <string>
#include <vector>

namespace calljournal {

/// "1 contact", "2 contacts".
std::string counted(std::size_t count, const std::string& noun);

/// The words with commas between.
std::string joined(const std::vector<std::string>& words);

}  // namespace calljournal

#endif
