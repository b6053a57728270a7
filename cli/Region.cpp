#include "Region.h"

#include <cstdlib>

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

}  // namespace calljournal
