#include "FieldKind.h"

#include <algorithm>
#include <iterator>

#include "Text.h"

namespace calljournal {

namespace {

struct Word {
    std::string_view word;
    FieldKind kind;
};

constexpr std::string_view names[] = {
#define KIND(name) #name,
#include "FieldKinds.inc"
#undef KIND
};
static_assert(std::size(names) == fieldKindCount);

/// What the phone's own file calls them.
constexpr Word phoneWords[] = {
    {"LastName", FieldKind::family},      {"FirstName", FieldKind::given},       {"Business1", FieldKind::workPhone},
    {"Business2", FieldKind::workPhone2}, {"Mobile1", FieldKind::mobile},        {"Private1", FieldKind::homePhone},
    {"Company1", FieldKind::company},     {"Address1", FieldKind::addressLine1}, {"Address2", FieldKind::addressLine2},
    {"Position", FieldKind::jobTitle},
};

bool isSameWord(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

}  // namespace

std::string_view fieldKindName(FieldKind kind) {
    return names[static_cast<std::size_t>(kind)];
}

std::optional<FieldKind> fieldKindOf(std::string_view word) {
    for (std::size_t kind = 0; kind < fieldKindCount; ++kind) {
        if (isSameWord(names[kind], word)) {
            return static_cast<FieldKind>(kind);
        }
    }
    const auto* const own = std::find_if(std::begin(phoneWords), std::end(phoneWords),
                                         [&](const Word& candidate) { return isSameWord(candidate.word, word); });
    return own == std::end(phoneWords) ? std::nullopt : std::optional<FieldKind>(own->kind);
}

}  // namespace calljournal
