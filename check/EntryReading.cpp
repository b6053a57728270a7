#include "EntryReading.h"

#include <algorithm>
#include <deque>

#include "CallListDatabaseAdapterHelper.h"
#include "CarriedText.h"
#include "ClientUtils.h"
#include "EntryBody.h"
#include "StoreReply.h"
#include "Texts.h"
#include "XmlParser.h"

namespace calljournal {

namespace {

using Helper = CallListDatabaseAdapterHelper;
using Parser = Helper::MissedCallParser;

/// Hands the events on to the list's own reader and looks at what it has after each entry.
struct ListWatcher {
    explicit ListWatcher(const KindDescriptor& missed) : kind(missed), parser(items) {}

    const KindDescriptor& kind;
    std::deque<MissedCallItem> items;
    Parser parser;
    std::vector<ReadEntry> entries;
};

void watchBegin(void* watcher, const char* name, const char** attributes) {
    Parser::parseRemoteXMLTagBegin(&static_cast<ListWatcher*>(watcher)->parser, name, attributes);
}

void watchData(void* watcher, const char* text, int length) {
    Parser::parseRemoteXMLData(&static_cast<ListWatcher*>(watcher)->parser, text, length);
}

void restore(const std::vector<FieldDescriptor>& fields, std::vector<std::string>& values) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].form == format::Form::asItIs) {
            values[i] = restoredText(values[i], fields[i].unescapes);
        }
    }
}

void watchEnd(void* userData, const char* name) {
    ListWatcher& watcher = *static_cast<ListWatcher*>(userData);
    Parser::parseRemoteXMLTagEnd(&watcher.parser, name);
    if (format::text::ENTRY != name) {
        return;
    }
    watcher.entries.push_back({std::nullopt, watcher.parser.callLogType});
    if (!watcher.items.empty()) {
        EntryValues values = valuesOf(watcher.items.back());
        restore(watcher.kind.fields, values.fields);
        for (std::vector<std::string>& call : values.calls) {
            restore(watcher.kind.callFields, call);
        }
        watcher.entries.back().values = std::move(values);
        watcher.items.clear();
    }
}

std::vector<ReadEntry> readMissedList(const std::string& reply, const KindDescriptor& missed) {
    Helper::init();
    ListWatcher watcher(missed);
    XmlParser xml(&watcher, &watchBegin, &watchEnd, &watchData);
    const std::string fixed = ClientUtils::fixSpecialXMLCharactersToQuote(reply);
    xml.parseMessage(fixed.c_str(), static_cast<int>(std::min(fixed.size(), reply.size())));
    return std::move(watcher.entries);
}

/// What the store makes of a request to write.
std::string servedReply(const Message& message) {
    std::string reply;
    for (const MessageEntry& entry : message.entries) {
        if (message.isClosed(entry)) {
            std::string body;
            appendWithPictureClip(message.bodyOf(entry), body);
            reply += Helper::createXMLField(Helper::ENTRY, body);
        }
    }
    Helper::addXMLHeaderFooter(reply, std::string(message.schemaName));
    return reply;
}

}  // namespace

std::vector<ReadEntry> readEntries(const Message& message) {
    const std::string text(message.outline.text);
    if (message.reader == Reader::missedList) {
        return readMissedList(message.type == MessageType::request ? servedReply(message) : text, *message.kind);
    }
    const bool isBody = !message.entries.empty() && message.entries.front().element == noElement;
    std::vector<ReadEntry> read;
    for (const std::string& body :
         isBody ? std::vector<std::string>{message.bodyOf(message.entries.front())} : readEntryBodies(text)) {
        read.push_back({message.kind->decode(body.c_str()), {}});
    }
    return read;
}

}  // namespace calljournal
