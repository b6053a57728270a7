#include "WellFormed.h"

#include "Outline.h"

namespace calljournal {

namespace {

/// A `<` that begins no whole tag, with the name that follows it.
FindingKind kindOfBrokenTag(const Outline& outline, std::string_view name) {
    const bool isCutInName = name.data() + name.size() == outline.text.data() + outline.text.size();
    return name.empty() ? FindingKind::noTag : isCutInName ? FindingKind::unendedTag : FindingKind::noPlainTag;
}

/// The element around `error` whose end tag left it open; noElement if the end of the text did.
std::size_t closedAround(const Outline& outline, const SyntaxError& error) {
    std::size_t around = error.element;
    while (around != noElement && !outline.elements[around].isClosed) {
        around = outline.elements[around].parent;
    }
    return around;
}

}  // namespace

std::optional<Finding> findDefect(std::string_view body) {
    const Outline outline = outlineOf(body);
    if (outline.begin > 0) {
        return Finding{FindingKind::noTag, {0}, {}};  // An XML declaration is no element.
    }
    if (outline.syntaxErrors.empty()) {
        return std::nullopt;
    }
    const SyntaxError& first = outline.syntaxErrors.front();
    Finding defect{first.kind, {first.at}, {std::string(first.what)}};
    if (first.kind == FindingKind::rawAmpersand) {
        defect.kind = FindingKind::noEntity;
    } else if (first.kind == FindingKind::forbiddenByte) {
        defect.kind = FindingKind::disallowedByte;
    } else if (first.kind == FindingKind::attributes) {
        defect.kind = FindingKind::noPlainTag;
    } else if (first.kind == FindingKind::rawLessThan || first.kind == FindingKind::cutTag) {
        defect.kind = kindOfBrokenTag(outline, first.what);
    } else if (first.kind == FindingKind::strayEndTag && first.element != noElement) {
        defect.kind = FindingKind::wrongEndTag;
        defect.values.emplace_back(outline.elements[first.element].name);
    } else if (first.kind == FindingKind::unclosedElement && closedAround(outline, first) != noElement) {
        const Element& closed = outline.elements[closedAround(outline, first)];
        defect = {FindingKind::wrongEndTag, {closed.textEnd}, {std::string(closed.name), std::string(first.what)}};
    }
    return defect;
}

}  // namespace calljournal
