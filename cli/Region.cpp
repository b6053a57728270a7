#include "Region.h"

#include <cstdlib>
#include <ostream>

#include "EntryView.h"
#include "ErrorMessage.h"
#include "NumberMatcher.h"
#include "PrintableText.h"
#include "ValueError.h"

namespace calljournal {

namespace {

constexpr char regionVariable[] = "CALLJOURNAL_REGION";

}  // namespace

std::string regionProblem(const std::string& region) {
    return isKnownRegion(region) ? std::string() : "\"" + printable(region) + "\" is no region such as DE or GB";
}

std::string usersRegion(const GlobalOptions& globals) {
    if (!globals.region.empty()) {
        return globals.region;
    }
    const char* variable = std::getenv(regionVariable);
    if (variable == nullptr || *variable == '\0') {
        return localeRegion();
    }
    if (const std::string problem = regionProblem(variable); !problem.empty()) {
        throw ValueError(std::string(regionVariable) + ": " + problem);
    }
    return variable;
}

void refuseOtherRegion(Journal& journal, const GlobalOptions& globals) {
    const auto region = globals.region.empty() ? std::nullopt : journal.store().setting(regionSetting);
    if (region && *region != globals.region) {
        throw ValueError(
            "--region " + globals.region + ": numbers in this store are read as those of " + printable(*region) +
            "; leave the option out, or change the store by 'calljournal settings region " + globals.region + "'");
    }
}

void takeRegionOver(Journal& journal, const GlobalOptions& globals, std::ostream& err) {
    if (journal.store().setting(regionSetting)) {
        return;
    }
    const std::string region = usersRegion(globals);
    if (region == noRegion) {
        return;
    }
    if (const auto joined = journal.takeRegion(region)) {
        printError(err, "numbers in this store are read as those of " + region +
                            "; 'calljournal settings region CODE' changes that");
        printJoined(*joined, "calljournal: ", err);
    }
}

void printJoined(const std::vector<JoinedParty>& parties, const std::string& mark, std::ostream& out) {
    for (const JoinedParty& party : parties) {
        const EntryView view = std::visit([](const auto& entry) { return viewOf(entry); }, party.entry);
        out << mark << "joined: " << printable(describe(view)) << ", of " << party.joinedIds.size() + 1 << " entries\n";
    }
}

}  // namespace calljournal
