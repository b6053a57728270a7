#ifndef CALLJOURNAL_ENTRYDIFF_H
#define CALLJOURNAL_ENTRYDIFF_H

#include <string>
#include <vector>

#include "KindDescriptor.h"

namespace calljournal {

/// Returns a line for each value that differs, such as "call 2, Number: 0301 | 0302". A call that only one entry has
/// differs in each value that says something.
std::vector<std::string> diffEntries(const KindDescriptor& kind, const EntryValues& a, const EntryValues& b);

}  // namespace calljournal

#endif
