#ifndef CALLJOURNAL_ITEMJSON_H
#define CALLJOURNAL_ITEMJSON_H

#include <string>
#include <variant>

#include "CallKinds.h"
#include "FieldValue.h"
#include "JsonText.h"

namespace calljournal {

/// Reads the JSON that people give to the command. Throws ValueError if it is none, or nested deeper than any input
/// that makes sense: copying and writing such a value would use up the stack.
Json parseJson(const std::string& text);

/// Throws ValueError unless `json` is a text; names `key`.
std::string jsonString(const Json& json, const std::string& key);
/// Throws ValueError unless `json` is true or false.
bool jsonFlag(const Json& json, const std::string& key);

/// What JSON holds for one member of a call: texts unless they are empty, flags, and enumerations as their words.
inline void putValue(Json& json, std::string_view key, const std::string& value) {
    if (!value.empty()) {
        json[std::string(key)] = value;
    }
}
inline void putValue(Json& json, std::string_view key, bool value) {
    json[std::string(key)] = value;
}
template <class Enumeration>
void putValue(Json& json, std::string_view key, Enumeration value) {
    json[std::string(key)] = format::toWord(value);
}

template <class Call, class Fields>
void putCall(Json& json, const Call& call, const Fields& fields) {
    for (const auto& field : fields) {
        std::visit([&](auto member) { putValue(json, field.tag, call.*member); }, field.member);
    }
}

template <class Item, class Base, class Fields>
void putItemFields(Json& json, const Item& item, const Fields& fields, const Base*) {
    const Base& base = item;
    for (const auto& field : fields) {
        std::visit([&](const auto& access) { putValue(json, field.readAs, (base.*access.get)()); }, field.access);
    }
}

/// The whole item: its own fields and "LogList", an array of calls. Keys are the names of the format's elements as the
/// readers know them.
template <class Item>
Json toJson(const Item& item) {
    using Kind = format::CallKind<Item>;
    Json json = Json::object();
    putItemFields(json, item, format::partyFields, static_cast<const CallItemWithPicture*>(nullptr));
    putItemFields(json, item, Kind::itemFields, static_cast<const Item*>(nullptr));
    Json calls = Json::array();
    for (const auto& call : (item.*Kind::calls)()) {
        Json entry = Json::object();
        putCall(entry, call, Kind::callFields);
        calls.push_back(std::move(entry));
    }
    json[std::string(format::text::LOGLIST)] = std::move(calls);
    return json;
}

/// Stores `json` in the call field named `key`. Returns false if the call has no such field; throws ValueError if the
/// field does not take the value.
template <class Item>
bool takeCallValue(const std::string& key, const Json& json, typename format::CallKind<Item>::Call& call) {
    for (const auto& field : format::CallKind<Item>::callFields) {
        if (field.tag != key) {
            continue;
        }
        if (auto* flag = std::get_if<1>(&field.member)) {
            call.*(*flag) = jsonFlag(json, key);
        } else {
            try {
                parseField(jsonString(json, key), field, call);
            } catch (const ValueError& error) {
                throw ValueError(key + ": " + error.what());
            }
        }
        return true;
    }
    return false;
}

template <class Base, class Fields>
bool takeItemValue(const std::string& key, const Json& json, Base& item, const Fields& fields) {
    for (const auto& field : fields) {
        const bool isPicture = field.readAs == format::text::PICTURE_CLIP && key == format::text::PICTURE;
        if (field.readAs != key && !isPicture) {
            continue;
        }
        if (const auto* flag = std::get_if<format::FlagAccess<Base>>(&field.access)) {
            (item.*flag->set)(jsonFlag(json, key));
        } else {
            (item.*std::get<format::TextAccess<Base>>(field.access).set)(jsonString(json, key));
        }
        return true;
    }
    return false;
}

/// Stores `json` in the item's own field named `key`, as its reader names it; a picture goes by either of
/// its names. Returns false if it has no such field.
template <class Item>
bool takePartyValue(const std::string& key, const Json& json, Item& item) {
    CallItemWithPicture& party = item;
    return takeItemValue(key, json, party, format::partyFields) ||
           takeItemValue(key, json, item, format::CallKind<Item>::itemFields);
}

/// The reverse of toJson. Throws ValueError that names the key at fault.
template <class Item>
Item itemFromJson(const Json& json) {
    using Kind = format::CallKind<Item>;
    if (!json.is_object()) {
        throw ValueError("an entry is a JSON object");
    }
    Item item;
    for (const auto& [key, value] : json.items()) {
        if (takePartyValue(key, value, item)) {
            continue;
        }
        if (key != format::text::LOGLIST || !value.is_array()) {
            throw ValueError(key +
                             (key == format::text::LOGLIST ? ": is not an array" : ": an entry has no such element"));
        }
        std::list<typename Kind::Call> calls;
        for (const Json& call : value) {
            if (!call.is_object()) {
                throw ValueError(key + ": a call is a JSON object");
            }
            calls.emplace_back();
            for (const auto& [callKey, callValue] : call.items()) {
                if (!takeCallValue<Item>(callKey, callValue, calls.back())) {
                    throw ValueError(callKey + ": a call has no such element");
                }
            }
        }
        (item.*Kind::setCalls)(calls);
    }
    return item;
}

}  // namespace calljournal

#endif
