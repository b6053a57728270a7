#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "Finding.h"

namespace calljournal {

/// No element: the parent of an element at the top.
constexpr std::size_t noElement = static_cast<std::size_t>(-1);

/// One element of a text. Places are byte offsets; the views point into the text.
struct Element {
    std::string_view name;
    std::string_view attribute;  ///< The value of the first attribute; empty if there is none.
    std::size_t begin;           ///< Of the begin tag.
    std::size_t textBegin;
    std::size_t textEnd;
    std::size_t end;     ///< Behind the end tag.
    std::size_t parent;  ///< An index, or noElement.
    std::vector<std::size_t> children;
    bool isClosed;  ///< If not, it reaches to the end of the element around it.
};

/// Something in a text that is not well-formed, or that is well-formed and yet no plain tag.
struct SyntaxError {
    FindingKind kind;
    std::size_t at;
    std::size_t element;    ///< The innermost open one, or noElement.
    std::string_view what;  ///< The name of its tag, or the byte; empty if it has neither.
};

/// The elements of a text in the order of their begin tags, and the syntax errors in the order in which they turn up: an
/// element that is never closed, when the one around it ends.
struct Outline {
    std::string_view text;
    std::size_t begin = 0;  ///< Behind the XML declaration, if there is one.
    std::vector<Element> elements;
    std::vector<std::size_t> top;
    std::vector<SyntaxError> syntaxErrors;

    std::string_view rawText(const Element& element) const {
        return text.substr(element.textBegin, element.textEnd - element.textBegin);
    }

    /// The elements inside `element`, or those at the top for noElement.
    const std::vector<std::size_t>& childrenOf(std::size_t element) const {
        return element == noElement ? top : elements[element].children;
    }
};

/// Takes any text apart and never fails: an element that is not closed ends with the one around it, an end tag that
/// closes nothing and a `<` that starts no tag are text. `text` must outlive the result. Elements may nest as deep as
/// they like.
Outline outlineOf(std::string_view text);

/// Returns the first of `elements` that has that name, or noElement.
std::size_t firstNamed(const Outline& outline, const std::vector<std::size_t>& elements, std::string_view name);

}  // namespace calljournal
