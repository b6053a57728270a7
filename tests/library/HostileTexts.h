#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "LiteralRules.h"

/// Makes texts that a decoder of the call log format may stumble over, the same ones for the same seed.
class HostileTexts {
public:
    HostileTexts(unsigned seed, const rules::Format& format);

    /// A number below `limit`.
    std::size_t below(std::size_t limit) { return random_() % limit; }

    /// A value for a member: often plain, else with tags, halves of tags and entities in it.
    std::string value();

    /// Members for a call or an entry: `fresh` with some of its values changed.
    rules::Members members(const rules::Members& fresh);

    /// A whole body of an entry, written by the literal rules and then spoilt in a few places.
    std::string body(const rules::Members& freshItem, const rules::Members& freshCall);

    /// Tags, halves of tags, words and entities in any order.
    std::string soup();

    /// The text with something deleted, doubled, moved, put in or cut off.
    std::string spoil(std::string text);

private:
    std::string token();
    std::string tag();
    std::string brokenTag();
    std::string entityTag();
    std::string word();

    const rules::Format& format_;
    std::mt19937 random_;
    std::vector<std::string> tags_;
};
