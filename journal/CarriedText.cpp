#include "CarriedText.h"

#include "ClientUtils.h"

namespace calljournal {

std::string restoredText(const std::string& carried, int times) {
    std::string text = carried;
    while (times-- > 0 && text.find('&') != std::string::npos) {
        text = ClientUtils::unescapeXMLString(text);
    }
    return text;
}

std::string carriedText(const std::string& text, int times) {
    if (text.find('<') == std::string::npos && restoredText(text, times) == text) {
        return text;
    }
    std::string carried = text;
    while (times-- > 0) {
        carried = ClientUtils::escapeXMLString(carried);
    }
    return carried;
}

}  // namespace calljournal
