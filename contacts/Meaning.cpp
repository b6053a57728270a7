#include "Meaning.h"

#include <algorithm>
#include <iterator>

namespace calljournal {

namespace {

constexpr std::string_view names[] = {
#define CALLJOURNAL_MEANING(name) #name,
#include "Meanings.inc"
#undef CALLJOURNAL_MEANING
};

}  // namespace

std::size_t meaningCount() {
    return std::size(names);
}

std::string_view nameOf(Meaning meaning) {
    return names[static_cast<std::size_t>(meaning)];
}

bool findMeaning(std::string_view name, Meaning& meaning) {
    const auto found = std::find(std::begin(names), std::end(names), name);
    if (found == std::end(names)) {
        return false;
    }
    meaning = static_cast<Meaning>(found - std::begin(names));
    return true;
}

}  // namespace calljournal
