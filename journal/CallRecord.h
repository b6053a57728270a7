#pragma once

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "Journal.h"
#include "JsonText.h"

namespace calljournal {

// Calls to be recorded, as people give them: a flat object of the party's and the call's elements and the word of the
// kind, {"Kind": "missed", "Surname": ..., "Number": ..., "TimeDate": ...}. "Withheld" in place of "Number" marks a
// call whose number was withheld.

/// Calls of all kinds, those of each kind in their order.
#define CALLJOURNAL_NEW_CALLS(Kind, word) std::vector<NewCall<Kind##CallItem>>,
using NewCalls = std::tuple<CALLJOURNAL_CALL_KINDS(CALLJOURNAL_NEW_CALLS) std::vector<NewCall<StoredCallBack>>>;
#undef CALLJOURNAL_NEW_CALLS

/// Returns the calls of one kind.
template <class Item>
const std::vector<NewCall<Item>>& callsOfKind(const NewCalls& calls) {
    return std::get<std::vector<NewCall<Item>>>(calls);
}

/// Adds the call that `json` is to those of its "Kind", `kind` where it names none. What is absent gets the value that a
/// phone would give: the time now, a presentation that fits. Throws ValueError that names the element at fault, and adds
/// nothing, if it is no call of a known kind or if its elements make no sense.
void addCall(const Json& json, const std::string& kind, NewCalls& calls);

/// Reads calls from JSON, as addCall() does: one array of objects, or one object a line. Throws ValueError that names
/// the line.
NewCalls readCalls(std::string_view text, const std::string& kind);

}  // namespace calljournal
