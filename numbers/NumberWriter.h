#pragma once

#include <string>

namespace calljournal {

/// How numbers are written.
enum class NumberStyle {
    keep,           ///< As they came.
    international,  ///< "+49 30 1234567 ext. 12"
    dialable        ///< "+49301234567,12": nothing but what is dialled; an extension follows behind a pause.
};

/// What became of a number.
struct WrittenNumber {
    std::string text;
    std::string problem;  ///< Why it cannot be right, for a sentence: "is no number". Empty if it can.
};

/// Writes phone numbers in one style. A number that is not valid, or that only has a meaning inside a house (an
/// extension such as "4711", a service code), has no international form: it stays, in dialable style without its
/// punctuation.
class NumberWriter {
public:
    /// Reads national numbers as those of `region`; in "ZZ", which is none, only numbers with a country code are
    /// judged.
    NumberWriter(NumberStyle style, std::string region) : style_(style), region_(std::move(region)) {}

    WrittenNumber operator()(const std::string& number) const;

private:
    WrittenNumber judged(const std::string& number) const;

    NumberStyle style_;
    std::string region_;
};

}  // namespace calljournal
