#include "CallBacks.h"

#include <functional>

#include "CallListDatabaseAdapterHelper.h"
#include "CarriedText.h"
#include "ClientUtils.h"
#include "Words.h"

namespace calljournal {

using Helper = CallListDatabaseAdapterHelper;

namespace {

std::string written(const std::string& text) {
    return ClientUtils::escapeXMLString(carriedControls(text));
}

template <class Enumeration>
std::string written(Enumeration value) {
    return std::string(format::toWord(value));
}

void assign(CallBackItem& item, const CallBackText& access, const std::string& text) {
    std::invoke(access.set, item, restoredControls(text));
}

template <class Enumeration>
void assign(CallBackItem& item, const CallBackAccess<Enumeration>& access, const std::string& word) {
    std::invoke(access.set, item, format::fromWord<Enumeration>(word));
}

}  // namespace

std::string encodeCallBack(const CallBackItem& item) {
    std::string body;
    for (const CallBackField& field : callBackFields) {
        std::visit(
            [&](const auto& access) {
                Helper::createXMLField(std::string(field.tag).c_str(), written(std::invoke(access.get, item)), body);
            },
            field.access);
    }
    return body;
}

StoredCallBack decodeCallBack(const std::string& body) {
    StoredCallBack stored;
    const char* cursor = Helper::getXMLValue2(body.c_str(), Helper::UNIQUEID, stored.uniqueId);
    for (const CallBackField& field : callBackFields) {
        std::string text;
        cursor = Helper::getXMLValue2(cursor, std::string(field.tag).c_str(), text);
        std::visit([&](const auto& access) { assign(stored.item, access, text); }, field.access);
    }
    return stored;
}

}  // namespace calljournal
