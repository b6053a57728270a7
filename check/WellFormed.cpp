#include "WellFormed.h"

#include "Outline.h"

namespace calljournal {

namespace {

Finding findingAt(std::size_t at, FindingKind kind, std::vector<std::string> values = {}) {
    return {kind, {at}, std::move(values)};
}

/// A `<` that begins no whole tag, with the name that follows it.
Finding brokenTag(const Outline& outline, const SyntaxError& error) {
    if (error.what.empty()) {
        return findingAt(error.at, FindingKind::noTag);
    }
    const bool isCutInName = error.what.data() + error.what.size() == outline.text.data() + outline.text.size();
    return isCutInName ? findingAt(error.at, FindingKind::unendedTag)
                       : findingAt(error.at, FindingKind::noPlainTag, {std::string(error.what)});
}

/// An element that the end of the text leaves open, or the end tag of one around it.
Finding unclosed(const Outline& outline, const SyntaxError& error) {
    std::size_t around = error.element;
    while (around != noElement && !outline.elements[around].isClosed) {
        around = outline.elements[around].parent;
    }
    if (around == noElement) {
        return findingAt(error.at, error.kind, {std::string(error.what)});
    }
    const Element& closed = outline.elements[around];
    return findingAt(closed.textEnd, FindingKind::wrongEndTag, {std::string(closed.name), std::string(error.what)});
}

}  // namespace

std::optional<Finding> findDefect(std::string_view body) {
    const Outline outline = outlineOf(body);
    if (outline.begin > 0) {
        return findingAt(0, FindingKind::noTag);  // An XML declaration is none of the elements.
    }
    if (outline.syntaxErrors.empty()) {
        return std::nullopt;
    }
    const SyntaxError& first = outline.syntaxErrors.front();
    const std::string what(first.what);
    switch (first.kind) {
        case FindingKind::rawAmpersand:
            return findingAt(first.at, FindingKind::noEntity);
        case FindingKind::forbiddenByte:
            return findingAt(first.at, FindingKind::disallowedByte, {what});
        case FindingKind::attributes:
            return findingAt(first.at, FindingKind::noPlainTag, {what});
        case FindingKind::strayEndTag:
            return first.element == noElement ? findingAt(first.at, first.kind, {what})
                                              : findingAt(first.at, FindingKind::wrongEndTag,
                                                          {what, std::string(outline.elements[first.element].name)});
        case FindingKind::unclosedElement:
            return unclosed(outline, first);
        case FindingKind::rawLessThan:
        case FindingKind::cutTag:
            return brokenTag(outline, first);
        default:
            return findingAt(first.at, first.kind, {what});
    }
}

}  // namespace calljournal
