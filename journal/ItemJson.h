#pragma once

#include <list>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "Entry.h"
#include "FieldValue.h"
#include "JsonText.h"
#include "Time.h"

namespace calljournal {

/// Reads the JSON that people give to the command. Throws ValueError, with line and column, if it is none, or nested deeper than any input
/// that makes sense: copying and writing such a value would use up the stack.
Json parseJson(std::string_view text);

/// Returns the text that `json` is. Throws ValueError if it is none; names `key`.
const std::string& jsonString(const Json& json, const std::string& key);
/// Throws ValueError unless `json` is true or false.
bool jsonFlag(const Json& json, const std::string& key);

/// What JSON holds for one member of an entry or a call: texts unless they are empty, flags, and enumerations as their
/// words.
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

/// The reverse of putValue. Throws ValueError that names `key` if a member of this type does not take `json`.
template <class Value>
Value valueFromJson(const Json& json, const std::string& key) {
    if constexpr (std::is_same_v<Value, bool>) {
        return jsonFlag(json, key);
    } else {
        const std::string& text = jsonString(json, key);
        try {
            if (key == format::text::TIMEDATE) {
                checkTime(text);
            }
            Value value{};
            parseValue(text, value);
            return value;
        } catch (const ValueError& error) {
            throw ValueError(key + ": " + error.what());
        }
    }
}

/// The whole entry: its own fields and, of a log, "LogList", an array of calls. Keys are the names of the format's
/// elements as the readers know them.
template <class Item>
Json toJson(const Item& item) {
    Json json = Json::object();
    forEachFieldTable(item, [&](const auto& base, const auto& fields) {
        for (const auto& field : fields) {
            std::visit([&](const auto& access) { putValue(json, field.readAs, (base.*access.get)()); }, field.access);
        }
    });
    if constexpr (KindInterface<Item>::isCallLog) {
        Json calls = Json::array();
        for (const auto& call : callsOf(item)) {
            Json entry = Json::object();
            for (const auto& field : format::CallKind<Item>::callFields) {
                std::visit([&](auto member) { putValue(entry, field.tag, call.*member); }, field.member);
            }
            calls.push_back(std::move(entry));
        }
        json[std::string(format::text::LOGLIST)] = std::move(calls);
    }
    return json;
}

/// The same, and the word for its kind as "Kind".
template <class Item>
Json toJsonWithKind(const Item& item) {
    Json json = toJson(item);
    json["Kind"] = KindInterface<Item>::name;
    return json;
}

/// Stores `json` in the call field named `key`. Returns false if the call has no such field; throws ValueError if the
/// field does not take the value.
template <class Item>
bool takeCallValue(const std::string& key, const Json& json, typename format::CallKind<Item>::Call& call) {
    for (const auto& field : format::CallKind<Item>::callFields) {
        if (field.tag == key) {
            std::visit(
                [&](auto member) {
                    using Value = std::decay_t<decltype(call.*member)>;
                    call.*member = valueFromJson<Value>(json, key);
                },
                field.member);
            return true;
        }
    }
    return false;
}

/// Whether `key` means the field that readers know as `name`: a picture goes by either of its names, and the number of
/// a call-back by that of any other call.
inline bool isKeyOf(std::string_view name, std::string_view key) {
    return key == name || (name == format::text::PICTURE_CLIP && key == format::text::PICTURE) ||
           (name == format::text::CALLBACKNUMBER && key == format::text::NUMBER);
}

/// Stores `json` in the item's own field that `key` means. Returns false if it has no such field.
template <class Item>
bool takeItemValue(const std::string& key, const Json& json, Item& item) {
    bool isTaken = false;
    forEachFieldTable(item, [&](auto& base, const auto& fields) {
        for (const auto& field : fields) {
            if (!isTaken && isKeyOf(field.readAs, key)) {
                std::visit(
                    [&](const auto& access) {
                        using Value = std::decay_t<decltype((base.*access.get)())>;
                        (base.*access.set)(valueFromJson<Value>(json, key));
                    },
                    field.access);
                isTaken = true;
            }
        }
    });
    return isTaken;
}

/// The reverse of toJson for an entry of a log. Throws ValueError that names the key at fault.
template <class Item>
Item itemFromJson(const Json& json) {
    using Kind = format::CallKind<Item>;
    if (!json.is_object()) {
        throw ValueError("an entry is a JSON object");
    }
    Item item;
    for (const auto& [key, value] : json.items()) {
        if (takeItemValue(key, value, item)) {
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
