#include "CallBackJson.h"

#include "Time.h"

namespace calljournal {

namespace {

void take(const Json& json, const std::string& key, const CallBackText& access, CallBackItem& item) {
    (item.*access.set)(jsonString(json, key));
}

template <class Enumeration>
void take(const Json& json, const std::string& key, const CallBackAccess<Enumeration>& access, CallBackItem& item) {
    Enumeration value = Enumeration();
    parseValue(jsonString(json, key), value);
    (item.*access.set)(value);
}

void takeElement(const std::string& key, const Json& value, CallBackItem& item) {
    const std::string element = key == format::text::NUMBER ? std::string(format::text::CALLBACKNUMBER) : key;
    for (const CallBackField& field : callBackFields) {
        if (field.tag == element) {
            if (field.tag == format::text::TIMEDATE) {
                checkTime(jsonString(value, key));
            }
            std::visit([&](const auto& access) { take(value, key, access, item); }, field.access);
            return;
        }
    }
    throw ValueError("a call-back has no such element");
}

}  // namespace

Json toJson(const StoredCallBack& stored) {
    Json json = Json::object();
    putValue(json, format::text::UNIQUEID, stored.uniqueId);
    for (const CallBackField& field : callBackFields) {
        std::visit([&](const auto& access) { putValue(json, field.tag, (stored.item.*access.get)()); }, field.access);
    }
    return json;
}

CallBackItem callBackFromJson(const Json& json) {
    CallBackItem item;
    item.setTimeDate(currentTime());
    for (const auto& [key, value] : json.items()) {
        try {
            takeElement(key, value, item);
        } catch (const ValueError& error) {
            throw ValueError(key + ": " + error.what());
        }
    }
    if (item.getNumber().empty()) {
        throw ValueError("a call-back needs a number");
    }
    return item;
}

}  // namespace calljournal
