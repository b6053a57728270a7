#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "EntryCheck.h"

namespace calljournal {

/// An entry's own elements, or those of one call.
struct FieldGroup {
    const std::vector<FieldDescriptor>& fields;
    const std::vector<std::size_t>& elements;
    const std::vector<std::string>* values;  ///< Null if nobody read the group, or it is not known what was read.
    Place place;
};

/// Compares each element of the group with what its reader made of it. Returns whether all was read as it is.
bool checkFields(const Outline& outline, const EntryUnderCheck& entry, const FieldGroup& group, Findings& findings);

}  // namespace calljournal
