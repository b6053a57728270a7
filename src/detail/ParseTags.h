#ifndef CALLJOURNAL_DETAIL_PARSETAGS_H
#define CALLJOURNAL_DETAIL_PARSETAGS_H

#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "../format/Bytes.h"
#include "../format/Texts.h"
#include "CallListDatabaseAdapterData.h"

namespace calljournal {
namespace detail {

using namespace format;

/// An element name and its number.
struct ParseTag {
    std::string_view name;
    CallListDatabaseAdapterData::eParseTag tag;
};

inline constexpr ParseTag parseTags[] = {
    {text::ENTRY, CallListDatabaseAdapterData::TAG_ENTRY},
    {text::ITEM, CallListDatabaseAdapterData::TAG_ITEM},
    {text::METHOD, CallListDatabaseAdapterData::TAG_METHOD},
    {text::UNIQUEID, CallListDatabaseAdapterData::TAG_UNIQUEID},
    {text::CATEGORY, CallListDatabaseAdapterData::TAG_CATEGORY},
    {text::ENTRYID, CallListDatabaseAdapterData::TAG_ENTRYID},
    {text::SURNAME, CallListDatabaseAdapterData::TAG_SURNAME},
    {text::FIRSTNAME, CallListDatabaseAdapterData::TAG_FIRSTNAME},
    {text::PICTURE_CLIP, CallListDatabaseAdapterData::TAG_PICTURE_CLIP},
    {text::JSGROUPBY, CallListDatabaseAdapterData::TAG_JSGROUPBY},
    {text::VIEWED, CallListDatabaseAdapterData::TAG_VIEWED},
    {text::CALLBACKNUMBER, CallListDatabaseAdapterData::TAG_CALLBACKNUMBER},
    {text::CALLBACKTYPE, CallListDatabaseAdapterData::TAG_CALLBACKTYPE},
    {text::CALLBACKSTATE, CallListDatabaseAdapterData::TAG_CALLBACKSTATE},
    {text::CALLBACKDEVICEID, CallListDatabaseAdapterData::TAG_CALLBACKDEVICEID},
    {text::NUMBER, CallListDatabaseAdapterData::TAG_NUMBER},
    {text::NUMBERTYPE, CallListDatabaseAdapterData::TAG_NUMBERTYPE},
    {text::RESOLVEDNUMBER, CallListDatabaseAdapterData::TAG_RESOLVEDNUMBER},
    {text::CONNECTEDNUMBERPRIORITY, CallListDatabaseAdapterData::TAG_CONNECTEDNUMBERPRIORITY},
    {text::CONNECTEDNUMBER, CallListDatabaseAdapterData::TAG_CONNECTEDNUMBER},
    {text::CONNECTEDNUMBERTYPE, CallListDatabaseAdapterData::TAG_CONNECTEDNUMBERTYPE},
    {text::CONNECTEDSURNAME, CallListDatabaseAdapterData::TAG_CONNECTEDSURNAME},
    {text::CONNECTEDFIRSTNAME, CallListDatabaseAdapterData::TAG_CONNECTEDFIRSTNAME},
    {text::ISBLUETOOTHCALL, CallListDatabaseAdapterData::TAG_ISBLUETOOTHCALL},
    {text::TIMEDATE, CallListDatabaseAdapterData::TAG_TIMEDATE},
    {text::DURATION, CallListDatabaseAdapterData::TAG_DURATION},
    {text::COMPLETED_ELSEWHERE, CallListDatabaseAdapterData::TAG_COMPLETED_ELSEWHERE},
    {text::TARGETLOG, CallListDatabaseAdapterData::TAG_TARGETLOG},
    {text::NUMBERPRESENTATION, CallListDatabaseAdapterData::TAG_NUMBERPRESENTATION},
    {text::NAMEPRESENTATION, CallListDatabaseAdapterData::TAG_NAMEPRESENTATION},
    {text::TIMEFORMAT, CallListDatabaseAdapterData::TAG_TIMEFORMAT},
    {text::DEFLECTNUMBERPRESENTATION, CallListDatabaseAdapterData::TAG_DEFLECTNUMBERPRESENTATION},
    {text::DEFLECTNUMBER, CallListDatabaseAdapterData::TAG_DEFLECTNUMBER},
    {text::DEFLECTNUMBERTYPE, CallListDatabaseAdapterData::TAG_DEFLECTNUMBERTYPE},
    {text::DEFLECTNAMEPRESENTATION, CallListDatabaseAdapterData::TAG_DEFLECTNAMEPRESENTATION},
    {text::DEFLECTNAME, CallListDatabaseAdapterData::TAG_DEFLECTNAME},
    {text::GROUPNAME, CallListDatabaseAdapterData::TAG_GROUPNAME},
    {text::GROUPNUMBER, CallListDatabaseAdapterData::TAG_GROUPNUMBER},
    {text::TRANSFERTYPE, CallListDatabaseAdapterData::TAG_TRANSFERTYPE},
    {text::PHONEBOOK_UNIQUEID, CallListDatabaseAdapterData::TAG_PHONEBOOK_UNIQUEID},
    {text::OFFICE, CallListDatabaseAdapterData::TAG_OFFICE},
    {text::MOBILE_PHONEBOOK, CallListDatabaseAdapterData::TAG_MOBILE_PHONEBOOK},
    {text::PRIVATE_PHONEBOOK, CallListDatabaseAdapterData::TAG_PRIVATE_PHONEBOOK},
    {text::EMAIL, CallListDatabaseAdapterData::TAG_EMAIL},
    {text::CALLGROUP, CallListDatabaseAdapterData::TAG_CALLGROUP},
    {text::DEFAULTNUMBER, CallListDatabaseAdapterData::TAG_DEFAULTNUMBER},
    {text::COMPANY, CallListDatabaseAdapterData::TAG_COMPANY},
    {text::OFFICE2, CallListDatabaseAdapterData::TAG_OFFICE2},
    {text::ADDRESS, CallListDatabaseAdapterData::TAG_ADDRESS},
    {text::ADDRESS2, CallListDatabaseAdapterData::TAG_ADDRESS2},
    {text::JOBFUNCTION, CallListDatabaseAdapterData::TAG_JOBFUNCTION},
    {text::VOICEDIAL, CallListDatabaseAdapterData::TAG_VOICEDIAL},
    {text::PICTURE, CallListDatabaseAdapterData::TAG_PICTURE},
    {text::EXTERNALID, CallListDatabaseAdapterData::TAG_EXTERNALID},
    {text::CONTACTSOURCE, CallListDatabaseAdapterData::TAG_CONTACTSOURCE},
};
static_assert(std::size(parseTags) == 55, "every number from 0 to 55 but 36 has its element");

constexpr std::size_t parseTagSlotCount = 128;  // a power of two, more than twice the number of names
constexpr unsigned char freeParseTagSlot = 255;

/// Three letters and the length tell the names apart but for two pairs; looking at all of them would cost more.
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

}  // namespace detail
}  // namespace calljournal

#endif
