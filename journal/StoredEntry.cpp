#include "StoredEntry.h"

#include "CallListDatabaseAdapterHelper.h"
#include "CarriedText.h"

namespace calljournal {

using Helper = CallListDatabaseAdapterHelper;

namespace {

/// Returns whether a text in `xml` may hold what carriedControls writes.
bool mayHoldReferences(const std::string& xml) {
    return xml.find("#x") != std::string::npos;
}

template <class Item>
void restoreControls(Item& item) {
    convertTexts(item, [](const std::string& text, int) { return restoredControls(text); });
}

/// Returns whether a text of the item may have been escaped by carriedText.
bool mayBeCarried(const MissedCallItem& item) {
    return anyText(item, [](const std::string& text) { return text.find('&') != std::string::npos; });
}

/// Restores the texts of entries that the list reader, which hands them over raw, read from `reply`.
void restoreTexts(std::deque<MissedCallItem>& list, const std::string& reply) {
    const bool restoresControls = mayHoldReferences(reply);
    for (MissedCallItem& item : list) {
        if (mayBeCarried(item)) {
            convertTexts(item, restoredText);
        }
        if (restoresControls) {
            restoreControls(item);
        }
    }
}

void makeReply(std::string& entries) {
    Helper::addXMLHeaderFooter(entries, std::string(format::CallKind<MissedCallItem>::schema));
}

}  // namespace

std::deque<MissedCallItem> readMissedEntries(CallListDatabaseAdapter& adapter, std::string entries) {
    makeReply(entries);
    std::deque<MissedCallItem> list;
    adapter.processMissedCallDbXml(entries, list);
    restoreTexts(list, entries);
    return list;
}

template <class Item>
std::optional<Item> storedEntry(const std::string& text) {
    std::optional<Item> item(std::in_place);
    KindInterface<Item>::decode(text.c_str(), *item);
    if constexpr (KindInterface<Item>::isCallLog) {
        if (mayHoldReferences(text)) {
            restoreControls(*item);
        }
    }
    return item;
}

template <>
std::optional<MissedCallItem> storedEntry(const std::string& text) {
    std::string reply = Helper::createXMLField(Helper::ENTRY, text);
    makeReply(reply);
    std::deque<MissedCallItem> list;
    Helper::parseXMLMissedCallList(reply, list);
    restoreTexts(list, reply);
    return list.empty() || callsOf(list.front()).empty() ? std::nullopt : std::optional(std::move(list.front()));
}

template std::optional<DialledCallItem> storedEntry(const std::string& text);
template std::optional<ReceivedCallItem> storedEntry(const std::string& text);
template std::optional<ForwardedCallItem> storedEntry(const std::string& text);
template std::optional<StoredCallBack> storedEntry(const std::string& text);

}  // namespace calljournal
