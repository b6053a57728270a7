#include "NumberWriter.h"

#include <algorithm>

#include "NumberMatcher.h"
#include "NumberingPlans.h"
#include "PlainNumber.h"

namespace calljournal {

namespace {

/// Up to so many digits are an extension, an emergency call or a service, which no numbering plan lists as a number.
constexpr std::size_t longestShortNumber = 6;

/// The digits that the longest number has, with what is dialled in front of it to leave the country.
constexpr std::size_t mostDigits = 20;

std::size_t digitsIn(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }));
}

/// What can be said without the numbering plans: whether there is anything to dial.
std::string plainProblem(const std::string& number, std::size_t digits) {
    if (number.size() > longestNumber) {
        return "is too long for a number";
    }
    const bool isAscii =
        std::all_of(number.begin(), number.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
    // Digits of other scripts are digits, too; the numbering plans know them.
    return digits == 0 && isAscii ? "is no number" : "";
}

bool isShort(const std::string& number, std::size_t digits) {
    return number.find('+') == std::string::npos &&
           (digits <= longestShortNumber || number.find_first_of("*#") != std::string::npos);
}

}  // namespace

WrittenNumber NumberWriter::operator()(const std::string& number) const {
    const std::size_t digits = digitsIn(number);
    std::string problem = plainProblem(number, digits);
    if (!problem.empty()) {
        return {number, std::move(problem)};
    }
    if (style_ == NumberStyle::keep && region_ == noRegion) {
        return {number, digits > mostDigits ? "has too many digits for a number" : ""};
    }
    return judged(number);
}

WrittenNumber NumberWriter::judged(const std::string& number) const {
    const bool isDialable = style_ == NumberStyle::dialable;
    if (isShort(number, digitsIn(number))) {
        return {isDialable ? withoutPunctuation(number) : number, {}};
    }
    const PlannedNumber planned = numberingPlans().written(number, region_, style_);
    if (planned.isValid) {
        return {planned.text, {}};
    }
    const bool isNational = !planned.isNumber && region_ == noRegion && number.find('+') == std::string::npos;
    return {isDialable ? withoutPunctuation(number) : number,
            isNational ? "has no country code, and no --region says where it is dialled" : "is no valid number"};
}

}  // namespace calljournal
