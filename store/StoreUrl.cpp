#include "StoreUrl.h"

#include <algorithm>
#include <cstdlib>

#include "StoreError.h"

namespace calljournal {

namespace {

/// Returns the value of an environment variable that holds an absolute path, or an empty text.
std::string absolutePathFrom(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && value[0] == '/' ? value : std::string();
}

bool isSchemeCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' || c == '-' ||
           c == '.';
}

}  // namespace

std::string defaultStoreUrl() {
    std::string folder = absolutePathFrom("XDG_DATA_HOME");
    if (folder.empty()) {
        const std::string home = absolutePathFrom("HOME");
        if (home.empty()) {
            throw StoreError("no default store: neither XDG_DATA_HOME nor HOME holds an absolute path; name a store");
        }
        folder = home + "/.local/share";
    }
    return "sqlite3://" + folder + "/calljournal/journal.db";
}

std::string_view schemeOf(std::string_view url) {
    const std::string_view scheme = url.substr(0, std::min(url.find(schemeEnd), url.size()));
    const bool isScheme = scheme.size() < url.size() && std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter);
    return isScheme ? scheme : std::string_view();
}

}  // namespace calljournal
