#ifndef CALLJOURNAL_CONTACTVIEWS_H
#define CALLJOURNAL_CONTACTVIEWS_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "Contact.h"

namespace calljournal {

/// Shows what people look at first: name, numbers with a "*" behind the one that is dialled by default, company, mail,
/// position. The table is at most `width` columns wide; 0 means no limit.
void printContactTable(const std::vector<Contact>& contacts, std::ostream& out, std::size_t width);

/// A contact as one line of JSON. Keys are the names of its members; empty texts are left out.
std::string contactJson(const Contact& contact);

}  // namespace calljournal

#endif
