#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <variant>

#include "CallListDatabaseAdapterHelper.h"
#include "ClientUtils.h"
#include "XmlParser.h"
#include "detail/BoundedCallList.h"
#include "detail/Decoding.h"
#include "detail/Elements.h"
#include "detail/Log.h"
#include "detail/OwnMembers.h"
#include "detail/ParseTags.h"
#include "format/CallKinds.h"
#include "format/Texts.h"

namespace detail = calljournal::detail;
namespace text = calljournal::detail::text;

using Data = CallListDatabaseAdapterData;
using Parser = CallListDatabaseAdapterHelper::MissedCallParser;
using Call = MissedCallItem::MissedCallInfo;

namespace {

constexpr char module[] = "CallListDatabaseAdapterHelper";
constexpr char source[] = "CallListDatabaseAdapterHelper";

// Callbacks are called for each tag and text of a list. What most of them do not need stays out of their way.

/// Entries are read from the call log's schemas, and before any schema is named.
template <class... Arguments>
CALLJOURNAL_RARE void passOther(Parser& parser, void (*act)(Parser&, Arguments...), Arguments... arguments) {
    const std::string& schema = parser.schemaName;
    if (schema.empty() || schema == text::DAS_CALLLOG || schema == text::DAS_CALLLOG_PHONEBOOK ||
        schema == text::DAS_CONVERSATIONS) {
        act(parser, arguments...);
    }
}

/// Acts on the parser behind the untyped pointer, unless it passes over a foreign schema.
template <class... Arguments>
CALLJOURNAL_INLINE void pass(void* userData, void (*act)(Parser&, Arguments...), Arguments... arguments) {
    Parser& parser = *static_cast<Parser*>(userData);
    if (detail::isConstant(parser.schemaName, text::DAS_CALLLOGMISSEDCALLS)) {
        act(parser, arguments...);
    } else {
        passOther(parser, act, arguments...);
    }
}

constexpr const auto& callFields = detail::CallKind<MissedCallItem>::callFields;
constexpr std::size_t callFieldCount = std::size(callFields);

using TagIndices = std::array<std::size_t, detail::parseTagCount>;

constexpr std::size_t indexOf(Data::eParseTag tag) {
    return static_cast<std::size_t>(tag);
}

constexpr const detail::ParseTag& parseTagOf(std::string_view name) {
    std::size_t i = 0;
    while (detail::parseTags[i].name != name) {
        ++i;
    }
    return detail::parseTags[i];
}

/// For each parse tag the index of the call field of that name, or callFieldCount for other tags.
constexpr TagIndices makeFieldOfTag() {
    TagIndices fields{};
    for (std::size_t& field : fields) {
        field = callFieldCount;
    }
    for (std::size_t i = 0; i < callFieldCount; ++i) {
        fields[indexOf(parseTagOf(callFields[i].tag).tag)] = i;
    }
    return fields;
}

constexpr TagIndices fieldOfTag = makeFieldOfTag();

/// For each parse tag the one that follows it where everything is written.
constexpr auto makeNextTag() {
    std::array<const detail::ParseTag*, detail::parseTagCount> next{};
    for (const detail::ParseTag*& tag : next) {
        tag = &parseTagOf(text::ITEM);
    }
    Data::eParseTag last = Data::TAG_ENTRY;
    const auto follow = [&](std::string_view name) {
        next[indexOf(last)] = &parseTagOf(name);
        last = parseTagOf(name).tag;
    };
    for (const auto& field : detail::partyFields) {
        follow(field.readAs);
    }
    for (const auto& field : detail::CallKind<MissedCallItem>::itemFields) {
        follow(field.readAs);
    }
    last = Data::TAG_ITEM;
    for (const auto& field : callFields) {
        follow(field.tag);
    }
    return next;
}

constexpr auto nextTag = makeNextTag();

const detail::ParseTag& expectedAfter(Data::eParseTag tag) {
    return *nextTag[indexOf(tag) < nextTag.size() ? indexOf(tag) : indexOf(Data::TAG_UNKNOWN)];
}

/// Begins an element that was not expected.
CALLJOURNAL_APART void beginOther(Parser& parser, std::string_view name, const char** attributes) {
    parser.currentTag = detail::getParseTag(name);
    if (name == text::SCHEMA) {
        const bool isNamed = attributes != nullptr && attributes[0] != nullptr && attributes[1] != nullptr;
        parser.schemaName = isNamed ? attributes[1] : "";
        if (parser.schemaName == text::DAS_CALLLOGMISSEDCALLS) {
            parser.callLogType = text::CALL_LOG_TYPE_MISSED;
        }
    }
    detail::assignPlain(parser.currentTagName, name);
}

CALLJOURNAL_APART void begin(Parser& parser, const char* name, const char** attributes) {
    const std::string_view tagName = name;
    const detail::ParseTag& expected = expectedAfter(parser.currentTag);
    if (!detail::isNamed(expected, tagName) || !detail::parseTagsAreOpen) {
        beginOther(parser, tagName, attributes);
        return;
    }
    parser.currentTag = expected.tag;
    detail::assignPlain(parser.currentTagName, tagName);
}

CALLJOURNAL_APART void end(Parser& parser, const char* name) {
    const Data::eParseTag tag = Data::getTag(name);
    if (tag == Data::TAG_ENTRY) {
        if (parser.callLogType == text::CALL_LOG_TYPE_MISSED) {
            parser.output.push_back(std::move(parser.currentEntry));
        }
        parser.currentEntry.reset();
    } else if (tag == Data::TAG_ITEM) {
        detail::appendOlder(parser.currentEntry.*detail::OwnMembers<MissedCallItem>::calls,
                            std::move(parser.currentCall));
        parser.currentCall.reset();
    }
}

/// Takes a word that belongs to a call.
CALLJOURNAL_APART void takeCallWord(Call& call, std::size_t field, std::string_view value) {
    std::visit([&](auto member) { detail::assignPlain(call.*member, value); }, callFields[field].member);
}

/// Takes a text that belongs to an entry or to the reply as a whole.
CALLJOURNAL_APART void takeEntryText(Parser& parser, std::string_view value) {
    MissedCallItem& entry = parser.currentEntry;
    switch (parser.currentTag) {
        case Data::TAG_METHOD:
            if (value == text::GETMISSEDCALLLIST_XML) {
                parser.callLogType = text::CALL_LOG_TYPE_MISSED;
            }
            break;
        case Data::TAG_UNIQUEID:
            if (entry.getUniqueId().empty()) {
                entry.setUniqueId(std::string(value));
            }
            CALLJOURNAL_LOG(module, source, 6, "missed uniqueId[%s]", entry.getUniqueId().c_str());
            break;
        case Data::TAG_CATEGORY:
            parser.callLogType = value;
            break;
        case Data::TAG_ENTRYID:
            entry.setEntryId(std::string(value));
            break;
        case Data::TAG_SURNAME:
            if (entry.getSurname().empty()) {
                entry.*detail::OwnMembers<CallItem>::surname = ClientUtils::unescapeXMLString(std::string(value));
            }
            break;
        case Data::TAG_FIRSTNAME:
            if (entry.getFirstname().empty()) {
                entry.*detail::OwnMembers<CallItem>::firstname = ClientUtils::unescapeXMLString(std::string(value));
            }
            break;
        case Data::TAG_PICTURE_CLIP:
            detail::assignPlain(entry.*detail::OwnMembers<CallItemWithPicture>::pictureClip, value);
            break;
        case Data::TAG_VIEWED:
            entry.setViewed(value == text::TRUE);
            break;
        default:
            break;
    }
}

CALLJOURNAL_APART void takeText(Parser& parser, const char* text, int length) {
    if (length < 0) {
        throw std::length_error("MissedCallParser::parseRemoteXMLData");
    }
    const std::string_view value(text, static_cast<std::size_t>(length));
    const auto tag = static_cast<std::size_t>(parser.currentTag);
    const std::size_t field = tag < fieldOfTag.size() ? fieldOfTag[tag] : callFieldCount;
    if (field == callFieldCount) {
        takeEntryText(parser, value);
    } else if (const auto* member = std::get_if<std::string Call::*>(&callFields[field].member)) {
        // As it comes, without unescaping.
        detail::assignPlain(parser.currentCall.**member, value);
    } else {
        takeCallWord(parser.currentCall, field, value);
    }
}

}  // namespace

CallListDatabaseAdapterHelper::MissedCallParser::MissedCallParser(std::deque<MissedCallItem>& list)
    : output(list), currentTag(Data::TAG_UNKNOWN) {}

CallListDatabaseAdapterHelper::MissedCallParser::~MissedCallParser() = default;

void CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLTagBegin(void* userData, const char* name,
                                                                             const char** attributes) {
    pass(userData, &begin, name, attributes);
}

void CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLData(void* userData, const char* text, int length) {
    pass(userData, &takeText, text, length);
}

void CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLTagEnd(void* userData, const char* name) {
    // Most elements hold a text only, and their end means nothing.
    if (*name == text::ENTRY.front() || *name == text::ITEM.front()) {
        pass(userData, &end, name);
    }
}

void CallListDatabaseAdapterHelper::init() {
    detail::parseTagsAreOpen = true;
}

void CallListDatabaseAdapterHelper::finit() {
    detail::parseTagsAreOpen = false;
}

std::string CallListDatabaseAdapterHelper::readMissedCallList() {
    std::string request = createXMLField(REASONFORMESSAGE, READREQUEST);
    addXMLHeaderFooter(request, DAS_CALLLOGMISSEDCALLS);
    return request;
}

bool CallListDatabaseAdapterHelper::parseXMLMissedCallList(const std::string& reply, std::deque<MissedCallItem>& list) {
    list.clear();
    CALLJOURNAL_LOG(module, source, 6, "parseXMLMissedCallList IN\n");
    CALLJOURNAL_LOG(module, source, 5, "parseXMLMissedCallList '%s'\n", reply.c_str());

    MissedCallParser parser(list);
    XmlParser xml(&parser, &MissedCallParser::parseRemoteXMLTagBegin, &MissedCallParser::parseRemoteXMLTagEnd,
                  &MissedCallParser::parseRemoteXMLData);
    // Fixing may change the length on some platforms; what is parsed is never longer than what was received.
    const std::string fixed = ClientUtils::fixSpecialXMLCharactersToQuote(reply);
    xml.parseMessage(fixed.c_str(), static_cast<int>(std::min(fixed.size(), reply.size())));

    CALLJOURNAL_LOG(module, source, 6, "parseXMLMissedCallList OUT\n");
    return true;
}
