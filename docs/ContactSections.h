#ifndef CALLJOURNAL_CONTACTSECTIONS_H
#define CALLJOURNAL_CONTACTSECTIONS_H

#include <map>
#include <string>

namespace calljournal {

/// The generated parts of contacts.md by their names: what the converter takes from which program. They come from the
/// columns file and from trying each column.
std::map<std::string, std::string> contactSections();

}  // namespace calljournal

#endif
