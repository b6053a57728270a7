#pragma once

#include <string>

#include "NumberWriter.h"

namespace calljournal {

/// A number as its country's numbering plan reads it.
struct PlannedNumber {
    bool isNumber = false;  ///< Whether anything on earth could be meant by it.
    bool isValid = false;   ///< Whether its country gives such numbers to anybody.
    std::string text;       ///< A valid number in the style that was asked for.
};

/// What is known of the numbers of each country. It is a module that is loaded when it is first asked: loading it and the
/// libraries that it is made from takes longer than most commands, and most commands need none of it.
struct NumberingPlans {
    /// Returns whether `region` is one with a numbering plan.
    bool (*hasRegion)(const std::string& region);

    /// Returns the E.164 form of a number that has its country code, or that is valid in `region`; an empty text of any
    /// other.
    std::string (*fromAbroad)(const std::string& number, const std::string& region);

    /// Reads `number` as one that is dialled in `region`, and writes it.
    PlannedNumber (*written)(const std::string& number, const std::string& region, NumberStyle style);
};

/// Returns what the module offers. Throws std::runtime_error if it cannot be loaded.
const NumberingPlans& numberingPlans();

}  // namespace calljournal
