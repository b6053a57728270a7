#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "CommandContext.h"
#include "Journal.h"

namespace calljournal {

/// Returns why `region` is none, for people; nothing if it is one.
std::string regionProblem(const std::string& region);

/// Returns the region of the user: that of --region, of the variable CALLJOURNAL_REGION or of the locale; noRegion if
/// none of them names one. Throws ValueError if what the variable names is none.
std::string usersRegion(const GlobalOptions& globals);

/// Throws ValueError if --region is not the region of the journal's store; one without a region takes any.
void refuseOtherRegion(Journal& journal, const GlobalOptions& globals);

/// Sets the region of a store that has none to that of the user, if there is one, and says so on `err`.
void takeRegionOver(Journal& journal, const GlobalOptions& globals, std::ostream& err);

/// Says for each party, on a line that begins with `mark`, which entry is its only one now.
void printJoined(const std::vector<JoinedParty>& parties, const std::string& mark, std::ostream& out);

}  // namespace calljournal
