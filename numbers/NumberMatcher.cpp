#include "NumberMatcher.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <unicode/uchar.h>
#include <unordered_map>

#include "NumberingPlans.h"
#include "PlainNumber.h"
#include "Text.h"
#include "Utf8.h"

namespace calljournal {

std::string withoutPunctuation(const std::string& number) {
    std::string dialled;
    for (const char c : number) {
        if ((c >= '0' && c <= '9') || c == '*' || c == '#' || (c == '+' && dialled.empty())) {
            dialled += c;
        }
    }
    return dialled.empty() ? number : dialled;
}

std::string localeRegion() {
    for (const char* variable : {"LC_ALL", "LC_TELEPHONE", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            const std::string locale = value;
            const std::size_t mark = locale.find('_');
            const std::string region = mark == std::string::npos ? "" : locale.substr(mark + 1, 2);
            return region.size() == 2 && isKnownRegion(region) ? region : noRegion;
        }
    }
    return noRegion;
}

bool isKnownRegion(const std::string& region) {
    return region == noRegion || numberingPlans().hasRegion(region);
}

namespace {

/// Modifier letters are none: the Japanese write their long vowel for a dash.
bool isLetter(char32_t c) {
    return (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_L_MASK & ~U_GC_LM_MASK) != 0;
}

/// Returns whether `text` has letters or an "@", which no number has.
bool isAddress(std::string_view text) {
    while (!text.empty()) {
        const Utf8Character next = characterAt(text);
        if (next.isValid && (next.codePoint == U'@' || isLetter(next.codePoint))) {
            return true;
        }
        text.remove_prefix(next.length);
    }
    return false;
}

std::string addressKey(const std::string& text) {
    const std::size_t at = std::min(text.find('@'), text.size());
    const std::size_t colon = text.find(':');
    const std::size_t userBegin = colon < at ? colon : 0;
    const std::size_t hostEnd = std::min(text.find_first_of(";?", at), text.size());
    const std::string_view whole = text;
    return lowerCase(whole.substr(0, userBegin))
        .append(whole.substr(userBegin, at - userBegin))
        .append(lowerCase(whole.substr(at, hostEnd - at)))
        .append(whole.substr(hostEnd));
}

/// Returns whether no country is known for `number`: written in ASCII without a plus sign, and dialled nowhere.
bool isNowhere(const std::string& number, const std::string& region) {
    return region == noRegion && number.find('+') == std::string::npos && isAscii(number);
}

std::string keyOf(const std::string& number, const std::string& region) {
    if (isAddress(number)) {
        return addressKey(number);
    }
    const std::string key = isNowhere(number, region) ? "" : numberingPlans().fromAbroad(number, region);
    return key.empty() ? withoutPunctuation(number) : key;
}

/// The keys of one region's numbers: as many as a large file of calls has, in some 30 megabytes; in 170 if all
/// numbers are as long as can be.
struct KnownKeys {
    static constexpr std::size_t most = 262144;

    std::string region;
    std::unordered_map<std::string, std::string> keys;
};

}  // namespace

std::string NumberMatcher::operator()(const std::string& number) const {
    if (number.empty() || number.size() > longestNumber) {
        return number;
    }
    thread_local KnownKeys known;
    if (known.region != region_ || known.keys.size() == KnownKeys::most) {
        known = {region_, {}};
    }
    std::string& key = known.keys[number];
    if (key.empty()) {
        key = keyOf(number, region_);
    }
    return key;
}

}  // namespace calljournal
