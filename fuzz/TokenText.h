#pragma once

#include <string>
#include <vector>

#include "Fuzz.h"
#include "LiteralRules.h"

/// Turns bytes into text that gets deep into the readers: each of the lower bytes means a tag, a piece of one, an
/// entity or a word of the format, each of the upper ones for an ordinary character.
class TokenText {
public:
    explicit TokenText(const rules::Format& format) {
        tokens_ = {"<Item>", "</Item>", "<LogList>", "</LogList>", "<Item>",   "</Item>", "<Item", "Item>",
                   "<",      ">",       "/",         "</",         "<It",      "em>",     "&amp;", "&lt;",
                   "&gt;",   "&",       "&quot;",    "&apos;",     "&amp;lt;", "True",    "False", "MOBILE",
                   ":",      "ALLOWED", "IN_BUSY",   "FORM_AM",    "x",        " ",       "\n",    ""};
        for (const auto* elements : {&format.itemRead, &format.itemWritten, &format.callWritten}) {
            for (const rules::Element& element : *elements) {
                tokens_.push_back("<" + element.tag + ">");
                tokens_.push_back("</" + element.tag + ">");
                tokens_.push_back("<" + element.tag + ">1</" + element.tag + ">");
            }
        }
    }

    std::string operator()(Input& input) const {
        std::string text;
        while (!input.isEmpty()) {
            const unsigned byte = input.byte();
            text += byte < tokens_.size() ? tokens_[byte] : std::string(1, static_cast<char>(byte));
        }
        return text;
    }

private:
    std::vector<std::string> tokens_;
};
