#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "../format/Texts.h"
#include "Bytes.h"
#include "CallListDatabaseAdapterData.h"

namespace calljournal::detail {

using namespace format;

/// An element name and its number.
struct ParseTag {
    std::string_view name;
    CallListDatabaseAdapterData::eParseTag tag;
};

inline constexpr ParseTag parseTags[] = {
#define ELEMENT(name, literal, number) {text::name, static_cast<CallListDatabaseAdapterData::eParseTag>(number)},
#include "../format/Texts.inc"
};

/// One more than the highest number that a tag has.
constexpr std::size_t countParseTagNumbers() {
    std::size_t highest = CallListDatabaseAdapterData::TAG_UNKNOWN;
    for (const ParseTag& element : parseTags) {
        highest = std::max(highest, static_cast<std::size_t>(element.tag));
    }
    return highest + 1;
}

constexpr std::size_t parseTagCount = countParseTagNumbers();

constexpr std::size_t parseTagSlotCount = 128;  // a power of two, more than twice the number of names
constexpr unsigned char freeParseTagSlot = 255;

/// Three letters and the length distinguish the names but for two pairs; looking at all of them would cost more.
constexpr std::size_t parseTagSlot(std::string_view name) {
    if (name.empty()) {
        return 0;
    }
    const auto letter = [&](std::size_t at) { return static_cast<std::size_t>(static_cast<unsigned char>(name[at])); };
    const std::size_t sum = name.size() * 33 + letter(0) * 32 + letter(name.size() / 2) * 3 + letter(name.size() - 1);
    return sum % parseTagSlotCount;
}

/// Indices of parseTags by the hash of the name; a collision moves on to the next free slot.
constexpr std::array<unsigned char, parseTagSlotCount> makeParseTagSlots() {
    std::array<unsigned char, parseTagSlotCount> slots{};
    for (unsigned char& slot : slots) {
        slot = freeParseTagSlot;
    }
    for (std::size_t i = 0; i < std::size(parseTags); ++i) {
        std::size_t slot = parseTagSlot(parseTags[i].name);
        while (slots[slot] != freeParseTagSlot) {
            slot = (slot + 1) % parseTagSlotCount;
        }
        slots[slot] = static_cast<unsigned char>(i);
    }
    return slots;
}

/// Made by the compiler, so that neither start-up nor a look-up builds anything.
inline constexpr std::array<unsigned char, parseTagSlotCount> parseTagSlots = makeParseTagSlots();

inline bool isNamed(const ParseTag& element, std::string_view name) {
    return element.name.size() == name.size() && sameBytes(element.name.data(), name.data(), name.size());
}

/// Returns the number of the element `name`, or TAG_UNKNOWN.
CALLJOURNAL_APART inline CallListDatabaseAdapterData::eParseTag findParseTag(std::string_view name) {
    for (std::size_t slot = parseTagSlot(name); parseTagSlots[slot] != freeParseTagSlot;
         slot = (slot + 1) % parseTagSlotCount) {
        const ParseTag& candidate = parseTags[parseTagSlots[slot]];
        if (isNamed(candidate, name)) {
            return candidate.tag;
        }
    }
    return CallListDatabaseAdapterData::TAG_UNKNOWN;
}

/// Whether names are found; the table itself is constant.
extern bool parseTagsAreOpen;

/// Does the work of CallListDatabaseAdapterData::getTag.
inline CallListDatabaseAdapterData::eParseTag getParseTag(std::string_view name) {
    return parseTagsAreOpen ? findParseTag(name) : CallListDatabaseAdapterData::TAG_UNKNOWN;
}

}  // namespace calljournal::detail
