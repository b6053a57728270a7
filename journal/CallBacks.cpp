#include "CallBacks.h"

#include <functional>

#include "CarriedText.h"
#include "ClientUtils.h"
#include "KindInterface.h"
#include "Words.h"

namespace calljournal {

using Helper = CallListDatabaseAdapterHelper;

namespace {

using Fields = format::CallKind<StoredCallBack>;
using TextAccess = format::TextAccess<StoredCallBack>;

std::string written(const StoredCallBack& stored, const TextAccess& access) {
    const std::string& text = std::invoke(access.get, stored);
    return access.form == format::Form::escaped ? ClientUtils::escapeXMLString(carriedControls(text)) : text;
}

template <class Enumeration>
std::string written(const StoredCallBack& stored, const WordAccess<Enumeration>& access) {
    return std::string(format::toWord(std::invoke(access.get, stored)));
}

void assign(StoredCallBack& stored, const TextAccess& access, const std::string& text) {
    std::invoke(access.set, stored, access.form == format::Form::escaped ? restoredControls(text) : text);
}

template <class Enumeration>
void assign(StoredCallBack& stored, const WordAccess<Enumeration>& access, const std::string& word) {
    std::invoke(access.set, stored, format::fromWord<Enumeration>(word));
}

}  // namespace

std::string KindInterface<StoredCallBack>::encode(const StoredCallBack& item) {
    std::string body;
    for (const CallBackField& field : Fields::itemFields) {
        const std::string tag(field.writtenAs);
        std::visit([&](const auto& access) { Helper::createXMLField(tag.c_str(), written(item, access), body); },
                   field.access);
    }
    return body;
}

void KindInterface<StoredCallBack>::decode(const char* xml, StoredCallBack& item) {
    for (const CallBackField& field : Fields::itemFields) {
        std::string text;
        xml = Helper::getXMLValue2(xml, std::string(field.readAs).c_str(), text);
        std::visit([&](const auto& access) { assign(item, access, text); }, field.access);
    }
}

void KindInterface<StoredCallBack>::send(CallListDatabaseAdapter& adapter, const StoredCallBack& item,
                                         const std::string& reason) {
    const std::string id = Helper::createXMLField(Helper::UNIQUEID, item.getUniqueId());
    adapter.updateEntries(Helper::createXMLField(Helper::ENTRY, id), reason, std::string(Fields::schema));
}

}  // namespace calljournal
