#ifndef CALLJOURNAL_FORMATSECTIONS_H
#define CALLJOURNAL_FORMATSECTIONS_H

#include <map>
#include <string>

namespace calljournal {

/// The generated parts of format.md by their names. Tables come from the tables of the code, examples from running it.
std::map<std::string, std::string> formatSections();

/// Returns `document` with what stands between the lines
///
///     <!-- generated: NAME -->
///     <!-- end -->
///
/// replaced by the section of that name. Throws std::runtime_error for a name that is unknown, for a missing end, and for a
/// section that the document does not show.
std::string withSections(const std::string& document, const std::map<std::string, std::string>& sections);

}  // namespace calljournal

#endif
