#pragma once

#include <cstddef>
#include <vector>

#include "Findings.h"
#include "KindDescriptor.h"
#include "Message.h"

namespace calljournal {

/// An entry and what its reader made of it.
struct EntryUnderCheck {
    const KindDescriptor& kind;
    Reader reader;
    const std::vector<std::size_t>& elements;  ///< Its elements at the top level.
    Place place;
    const EntryValues* values;  ///< Null if it was not read at all.
    bool isServedByStore;       ///< The store serves pictures by the name that is read, whatever name is here.
};

/// Compares what the text of an entry says with what its reader made of it, and reports each reason for which the two
/// differ or could differ.
void checkEntry(const Outline& outline, const EntryUnderCheck& entry, Findings& findings);

}  // namespace calljournal
