#include "NumberMatcher.h"

#include <cstdlib>
#include <phonenumbers/phonenumberutil.h>
#include <set>

namespace calljournal {

namespace {

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

/// Numbers have at most 15 digits (ITU-T E.164); with all punctuation anybody writes they stay far below this. Anything
/// longer is some other text, which would keep the parser busy for minutes.
constexpr std::size_t longestNumber = 250;

/// What may be dialled: digits, the plus sign in front, and the star and hash of service codes.
std::string withoutPunctuation(const std::string& number) {
    std::string dialled;
    for (const char c : number) {
        if ((c >= '0' && c <= '9') || c == '*' || c == '#' || (c == '+' && dialled.empty())) {
            dialled += c;
        }
    }
    // A number without digits, such as a name sent in its place, is itself.
    return dialled.empty() ? number : dialled;
}

bool isInternational(const PhoneNumber& number) {
    const auto source = number.country_code_source();
    return source == PhoneNumber::FROM_NUMBER_WITH_PLUS_SIGN || source == PhoneNumber::FROM_NUMBER_WITH_IDD;
}

}  // namespace

std::string localeRegion() {
    for (const char* variable : {"LC_ALL", "LC_TELEPHONE", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            const std::string locale = value;
            const std::size_t mark = locale.find('_');
            const std::string region = mark == std::string::npos ? "" : locale.substr(mark + 1, 2);
            return region.size() == 2 && isKnownRegion(region) ? region : "ZZ";
        }
    }
    return "ZZ";
}

bool isKnownRegion(const std::string& region) {
    std::set<std::string> regions;
    PhoneNumberUtil::GetInstance()->GetSupportedRegions(&regions);
    return region == "ZZ" || regions.count(region) != 0;
}

std::string NumberMatcher::operator()(const std::string& number) const {
    if (number.size() > longestNumber) {
        return number;
    }
    const PhoneNumberUtil& util = *PhoneNumberUtil::GetInstance();
    PhoneNumber parsed;
    if (util.ParseAndKeepRawInput(number, region_, &parsed) != PhoneNumberUtil::NO_PARSING_ERROR ||
        !(isInternational(parsed) || util.IsValidNumber(parsed))) {
        return withoutPunctuation(number);
    }
    std::string key;
    util.Format(parsed, PhoneNumberUtil::E164, &key);
    return key;
}

}  // namespace calljournal
