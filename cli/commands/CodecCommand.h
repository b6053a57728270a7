#ifndef CALLJOURNAL_CODECCOMMAND_H
#define CALLJOURNAL_CODECCOMMAND_H

#include <iosfwd>
#include <string>

#include "ExitCode.h"

namespace calljournal {

/// Turns the JSON of one entry of that kind, read from `in`, into its XML item body. Throws ValueError.
void encodeEntry(const std::string& kind, std::istream& in, std::ostream& out);

/// Turns an XML item body, read from `in`, into JSON: what the decoder finds, even in damaged text. The first place
/// that is not well-formed is named on `err`, and exitRefused returned.
ExitCode decodeEntry(const std::string& kind, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace calljournal

#endif
