#include "Findings.h"

#include <algorithm>

namespace calljournal {

Findings::Findings(const Outline& outline) : outline_(outline) {
    for (const SyntaxError& error : outline.syntaxErrors) {
        errorsOf_[error.element].push_back(&error);
    }
    for (auto& [element, errors] : errorsOf_) {
        std::stable_sort(errors.begin(), errors.end(),
                         [](const SyntaxError* a, const SyntaxError* b) { return a->at < b->at; });
    }
}

Finding& Findings::report(const Place& place, const SyntaxError& error) {
    Finding& finding = report(place.movedTo(error.at), error.kind);
    if (!error.what.empty()) {
        finding.values.emplace_back(error.what);
    }
    return finding;
}

bool Findings::reportLooseText(Place place, std::size_t element) {
    const bool isAll = element == noElement;
    place.at = isAll ? outline_.begin : outline_.elements[element].textBegin;
    const auto reportUpTo = [&](std::size_t end) {
        const std::string_view text = outline_.text.substr(place.at, end - place.at);
        const bool isBlank = text.find_first_not_of(" \t\r\n") == std::string_view::npos;
        if (text.empty() || (isAll && isBlank) || hasSyntaxError(element, place.at, end)) {
            return false;
        }
        report(place, FindingKind::looseText, text);
        return true;
    };
    for (const std::size_t child : outline_.childrenOf(element)) {
        if (reportUpTo(outline_.elements[child].begin)) {
            return true;
        }
        place.at = outline_.elements[child].end;
    }
    return reportUpTo(isAll ? outline_.text.size() : outline_.elements[element].textEnd);
}

bool Findings::hasSyntaxError(std::size_t element, std::size_t begin, std::size_t end) const {
    const auto found = errorsOf_.find(element);
    if (found == errorsOf_.end()) {
        return false;
    }
    const std::vector<const SyntaxError*>& errors = found->second;
    const auto error = std::lower_bound(errors.begin(), errors.end(), begin,
                                        [](const SyntaxError* one, std::size_t at) { return one->at < at; });
    return error != errors.end() && (*error)->at < end;
}

std::vector<const SyntaxError*> Findings::takeSyntaxErrors(std::size_t element) {
    const auto found = errorsOf_.extract(element);
    return found.empty() ? std::vector<const SyntaxError*>() : found.mapped();
}

std::vector<Finding> Findings::takeInOrder() {
    std::stable_sort(all_.begin(), all_.end(),
                     [](const Finding& a, const Finding& b) { return a.place.at < b.place.at; });
    return std::move(all_);
}

}  // namespace calljournal
