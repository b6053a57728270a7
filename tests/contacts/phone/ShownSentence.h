#pragma once

#include <string>

#include "PrintableText.h"
#include "Sentence.h"

/// A sentence as the command shows it.
inline std::string shown(const calljournal::Sentence& sentence) {
    return sentence.text([](const std::string& text) { return calljournal::fitted(calljournal::printable(text), 40); });
}
