#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "Finding.h"
#include "Outline.h"

namespace calljournal {

/// Collects what is found in a text.
class Findings {
public:
    /// `outline` must outlive this.
    explicit Findings(const Outline& outline);

    template <class... Values>
    Finding& report(const Place& place, FindingKind kind, const Values&... values) {
        all_.push_back({kind, place, {std::string(values)...}});
        return all_.back();
    }
    Finding& report(const Place& place, const SyntaxError& error);

    /// Reports text in `element` (or in the whole text, for noElement) that belongs to no element inside it: the first.
    /// A syntax error in such a text reports it already. Returns whether anything was reported.
    bool reportLooseText(Place place, std::size_t element);

    /// The syntax errors that nobody took, by the element that they are in; each list in the order of the text.
    const std::map<std::size_t, std::vector<const SyntaxError*>>& syntaxErrors() const { return errorsOf_; }

    std::vector<const SyntaxError*> takeSyntaxErrors(std::size_t element);

    /// Returns all, in the order of the text, and keeps none.
    std::vector<Finding> takeInOrder();

private:
    bool hasSyntaxError(std::size_t element, std::size_t begin, std::size_t end) const;

    const Outline& outline_;
    std::vector<Finding> all_;
    std::map<std::size_t, std::vector<const SyntaxError*>> errorsOf_;
};

}  // namespace calljournal
