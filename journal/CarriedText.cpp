#include "CarriedText.h"

#include <algorithm>
#include <string_view>

#include "ClientUtils.h"
#include "Text.h"

namespace calljournal {

namespace {

constexpr std::string_view referenceBegin = "&#x";
constexpr std::size_t referenceLength = 6;  // &#x1b;

void appendReference(char c, std::string& text) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    text.append(referenceBegin).append({digits[byte / 16U], digits[byte % 16U], ';'});
}

/// Returns the value of a digit as appendReference writes it; 16 for any other character.
unsigned digitValue(char c) {
    return c >= '0' && c <= '9'   ? static_cast<unsigned>(c - '0')
           : c >= 'a' && c <= 'f' ? static_cast<unsigned>(c - 'a') + 10U
                                  : 16U;
}

/// Returns whether `text` begins with a reference that appendReference wrote, and through `c` to which character.
bool takeReference(std::string_view text, char& c) {
    if (text.size() < referenceLength || text.substr(0, referenceBegin.size()) != referenceBegin || text[5] != ';') {
        return false;
    }
    const unsigned high = digitValue(text[3]);
    const unsigned low = digitValue(text[4]);
    c = static_cast<char>(high * 16U + low);
    return high < 8U && low < 16U && (c == '&' || isForbiddenInXml(c));
}

}  // namespace

bool mayBeChanged(const std::string& text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return c == '<' || c == '&' || isForbiddenInXml(c); });
}

std::string carriedControls(const std::string& text) {
    if (std::none_of(text.begin(), text.end(), isForbiddenInXml) && text.find(referenceBegin) == std::string::npos) {
        return text;
    }
    std::string carried;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isForbiddenInXml(text[i]) || text.compare(i, referenceBegin.size(), referenceBegin) == 0) {
            appendReference(text[i], carried);
        } else {
            carried += text[i];
        }
    }
    return carried;
}

std::string restoredControls(const std::string& carried) {
    std::size_t at = carried.find(referenceBegin);
    if (at == std::string::npos) {
        return carried;
    }
    std::string text;
    std::size_t copied = 0;
    while (at != std::string::npos) {
        char c = '\0';
        std::size_t next = at + 1;
        if (takeReference(std::string_view(carried).substr(at), c)) {
            text.append(carried, copied, at - copied);
            text += c;
            next = copied = at + referenceLength;
        }
        at = carried.find(referenceBegin, next);
    }
    return text.append(carried, copied);
}

std::string restoredText(const std::string& carried, int times) {
    std::string text = carried;
    while (times-- > 0 && text.find('&') != std::string::npos) {
        text = ClientUtils::unescapeXMLString(text);
    }
    return text;
}

std::string carriedText(const std::string& text, int times) {
    // A reference is escaped in any case: a strict parser refuses a whole reply for &#x1b;.
    const bool isPlain = text.find('<') == std::string::npos && text.find(referenceBegin) == std::string::npos;
    if (isPlain && restoredText(text, times) == text) {
        return text;
    }
    std::string carried = text;
    while (times-- > 0) {
        carried = ClientUtils::escapeXMLString(carried);
    }
    return carried;
}

}  // namespace calljournal
