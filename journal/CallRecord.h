#pragma once

#include <string>
#include <vector>

#include "Journal.h"
#include "JsonText.h"

namespace calljournal {

// Calls to be recorded, as people give them: a flat object of the party's and the call's elements and the word of the
// kind, {"Kind": "missed", "Surname": ..., "Number": ..., "TimeDate": ...}. "Withheld" in place of "Number" marks a
// call whose number was withheld.

/// Returns `json` with its "Kind" written down, `kind` where it names none. Throws ValueError unless it is a call of a
/// known kind whose elements make sense.
Json checkedCall(Json json, const std::string& kind);

/// Reads calls from JSON: one array of objects, or one object a line. Each names its "Kind"; `kind` is that of those
/// that do not. Returns them checked, as checkedCall does. Throws ValueError that names the line.
std::vector<Json> readCalls(const std::string& text, const std::string& kind);

/// Makes the calls of one kind out of `calls`, which are checked. What is absent gets the value that a phone would
/// give: the time now, a presentation that fits. Throws ValueError that names the element at fault.
template <class Item>
std::vector<NewCall<Item>> callsOfKind(const std::vector<Json>& calls);

}  // namespace calljournal
