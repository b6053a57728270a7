#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "Contact.h"

namespace calljournal {

/// Shows what people look at first: name, numbers with a "*" behind the one that is dialled by default, company, mail,
/// position. The table is at most `width` columns wide; 0 means no limit.
void printContactTable(const std::vector<Contact>& contacts, std::ostream& out, std::size_t width);

}  // namespace calljournal
