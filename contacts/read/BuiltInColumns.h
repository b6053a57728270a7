#ifndef CALLJOURNAL_BUILTINCOLUMNS_H
#define CALLJOURNAL_BUILTINCOLUMNS_H

#include <string_view>

namespace calljournal {

/// The text of columns.tsv, which the build puts into the program.
std::string_view builtInColumnsText();

}  // namespace calljournal

#endif
