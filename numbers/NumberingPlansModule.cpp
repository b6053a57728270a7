// The module of numbering plans: the only source that knows libphonenumber.

#include <phonenumbers/phonenumberutil.h>
#include <set>

#include "NumberingPlans.h"

namespace calljournal {

namespace {

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

bool parse(const std::string& number, const std::string& region, PhoneNumber& parsed) {
    return PhoneNumberUtil::GetInstance()->ParseAndKeepRawInput(number, region, &parsed) ==
           PhoneNumberUtil::NO_PARSING_ERROR;
}

std::string formatted(const PhoneNumber& parsed, PhoneNumberUtil::PhoneNumberFormat format) {
    std::string text;
    PhoneNumberUtil::GetInstance()->Format(parsed, format, &text);
    return text;
}

/// An extension follows behind a pause.
std::string dialable(const PhoneNumber& parsed) {
    const std::string text = formatted(parsed, PhoneNumberUtil::E164);
    return parsed.has_extension() && !parsed.extension().empty() ? text + ',' + parsed.extension() : text;
}

/// Returns whether the number was written with its country code.
bool isInternational(const PhoneNumber& parsed) {
    const auto source = parsed.country_code_source();
    return source == PhoneNumber::FROM_NUMBER_WITH_PLUS_SIGN || source == PhoneNumber::FROM_NUMBER_WITH_IDD;
}

bool hasRegion(const std::string& region) {
    std::set<std::string> regions;
    PhoneNumberUtil::GetInstance()->GetSupportedRegions(&regions);
    return regions.count(region) != 0;
}

std::string fromAbroad(const std::string& number, const std::string& region) {
    PhoneNumber parsed;
    const bool isDialled = parse(number, region, parsed) &&
                           (isInternational(parsed) || PhoneNumberUtil::GetInstance()->IsValidNumber(parsed));
    return isDialled ? formatted(parsed, PhoneNumberUtil::E164) : "";
}

PlannedNumber written(const std::string& number, const std::string& region, NumberStyle style) {
    PhoneNumber parsed;
    if (!parse(number, region, parsed)) {
        return {};
    }
    if (!PhoneNumberUtil::GetInstance()->IsValidNumber(parsed)) {
        return {true, false, {}};
    }
    switch (style) {
        case NumberStyle::keep:
            return {true, true, number};
        case NumberStyle::international:
            return {true, true, formatted(parsed, PhoneNumberUtil::INTERNATIONAL)};
        case NumberStyle::dialable:
            break;
    }
    return {true, true, dialable(parsed)};
}

}  // namespace

}  // namespace calljournal

extern "C" __attribute__((visibility("default"))) const calljournal::NumberingPlans calljournalNumberingPlans = {
    calljournal::hasRegion, calljournal::fromAbroad, calljournal::written};
