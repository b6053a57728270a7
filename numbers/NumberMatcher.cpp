#include "NumberMatcher.h"

#include <cstdlib>
#include <set>

#include "PhoneNumbers.h"

namespace calljournal {

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

bool parseNumber(const std::string& number, const std::string& region, PhoneNumber& parsed) {
    return PhoneNumberUtil::GetInstance()->ParseAndKeepRawInput(number, region, &parsed) ==
           PhoneNumberUtil::NO_PARSING_ERROR;
}

bool isInternational(const PhoneNumber& number) {
    const auto source = number.country_code_source();
    return source == PhoneNumber::FROM_NUMBER_WITH_PLUS_SIGN || source == PhoneNumber::FROM_NUMBER_WITH_IDD;
}

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
    if (!parseNumber(number, region_, parsed) || !(isInternational(parsed) || util.IsValidNumber(parsed))) {
        return withoutPunctuation(number);
    }
    std::string key;
    util.Format(parsed, PhoneNumberUtil::E164, &key);
    return key;
}

}  // namespace calljournal
