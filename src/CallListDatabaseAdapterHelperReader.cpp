#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>
#include <variant>

#include "CallListDatabaseAdapterHelper.h"
#include "ClientUtils.h"
#include "XmlParser.h"
#include "detail/CallKinds.h"
#include "detail/Elements.h"
#include "detail/Log.h"
#include "detail/ParseTags.h"
#include "detail/Texts.h"
#include "detail/Words.h"

namespace detail = calljournal::detail;
namespace text = calljournal::detail::text;

using Data = CallListDatabaseAdapterData;
using Parser = CallListDatabaseAdapterHelper::MissedCallParser;
using Call = MissedCallItem::MissedCallInfo;

namespace {

constexpr char module[] = "CallListDatabaseAdapterHelper";
constexpr char source[] = "CallListDatabaseAdapterHelper";

/// Entries are read from the call log's schemas, and before any schema is named.
bool isReadSchema(std::string_view schema) {
    return schema.empty() || schema == text::DAS_CALLLOGMISSEDCALLS || schema == text::DAS_CALLLOG ||
           schema == text::DAS_CALLLOG_PHONEBOOK || schema == "Conversations";
}

/// The parser behind the untyped pointer, or null while it passes over a foreign schema.
Parser* readingParser(void* userData) {
    Parser* parser = static_cast<Parser*>(userData);
    return isReadSchema(parser->schemaName) ? parser : nullptr;
}

constexpr const auto& callFields = detail::CallKind<MissedCallItem>::callFields;

/// For each parse tag the index of the call field of that name, or callFields.size() for other tags.
constexpr auto makeFieldOfTag() {
    std::array<std::size_t, Data::TAG_UNKNOWN + 1> fields{};
    for (std::size_t& field : fields) {
        field = callFields.size();
    }
    for (std::size_t i = 0; i < callFields.size(); ++i) {
        fields[static_cast<std::size_t>(detail::findParseTag(callFields[i].tag))] = i;
    }
    return fields;
}

constexpr auto fieldOfTag = makeFieldOfTag();

/// Takes a text that belongs to an entry or to the reply as a whole.
void takeEntryText(Parser& parser, std::string_view value) {
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
                entry.setSurname(detail::unescaped(value));
            }
            break;
        case Data::TAG_FIRSTNAME:
            if (entry.getFirstname().empty()) {
                entry.setFirstname(detail::unescaped(value));
            }
            break;
        case Data::TAG_PICTURE_CLIP:
            entry.setPictureClip(std::string(value));
            break;
        case Data::TAG_VIEWED:
            entry.setViewed(value == text::TRUE);
            break;
        default:
            break;
    }
}

}  // namespace

CallListDatabaseAdapterHelper::MissedCallParser::MissedCallParser(std::deque<MissedCallItem>& list)
    : output(list), currentTag(Data::TAG_UNKNOWN) {}

CallListDatabaseAdapterHelper::MissedCallParser::~MissedCallParser() = default;

void CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLTagBegin(void* userData, const char* name,
                                                                             const char** attributes) {
    Parser* parser = readingParser(userData);
    if (parser == nullptr) {
        return;
    }
    parser->currentTagName = name;
    parser->currentTag = Data::getTag(name);
    if (parser->currentTagName == "Schema") {
        const bool isNamed = attributes != nullptr && attributes[0] != nullptr && attributes[1] != nullptr;
        parser->schemaName = isNamed ? attributes[1] : "";
        if (parser->schemaName == text::DAS_CALLLOGMISSEDCALLS) {
            parser->callLogType = text::CALL_LOG_TYPE_MISSED;
        }
    }
}

void CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLData(void* userData, const char* text, int length) {
    Parser* parser = readingParser(userData);
    if (parser == nullptr) {
        return;
    }
    const std::string_view value(text, static_cast<std::size_t>(length));
    const auto tag = static_cast<std::size_t>(parser->currentTag);
    const std::size_t field = tag < fieldOfTag.size() ? fieldOfTag[tag] : callFields.size();
    if (field == callFields.size()) {
        takeEntryText(*parser, value);
    } else {
        // The reply's texts are taken as they come, without unescaping.
        std::visit([&](auto member) { detail::assignPlain(parser->currentCall.*member, value); },
                   callFields[field].member);
    }
}

void CallListDatabaseAdapterHelper::MissedCallParser::parseRemoteXMLTagEnd(void* userData, const char* name) {
    Parser* parser = readingParser(userData);
    if (parser == nullptr) {
        return;
    }
    switch (Data::getTag(name)) {
        case Data::TAG_ENTRY:
            if (parser->callLogType == text::CALL_LOG_TYPE_MISSED) {
                parser->output.push_back(std::move(parser->currentEntry));
            }
            parser->currentEntry.reset();
            break;
        case Data::TAG_ITEM:
            parser->currentEntry.appendCallInfoToList(parser->currentCall);
            parser->currentCall.reset();
            break;
        default:
            break;
    }
}

void CallListDatabaseAdapterHelper::init() {
    detail::openParseTags(true);
}

void CallListDatabaseAdapterHelper::finit() {
    detail::openParseTags(false);
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
