#ifndef CALLJOURNAL_ENTRYVALUES_H
#define CALLJOURNAL_ENTRYVALUES_H

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "CallKinds.h"
#include "Words.h"

namespace calljournal {

/// What a reader made of an entry: texts, "True" or "False", and the word of each value.
struct EntryValues {
    std::vector<std::string> fields;              ///< In the order of KindDescriptor::fields.
    std::vector<std::vector<std::string>> calls;  ///< Each in the order of KindDescriptor::callFields.
};

inline std::string valueText(const std::string& value) {
    return value;
}

template <class Value>
std::string valueText(Value value) {
    return std::string(std::string_view(format::wordOf(value)));
}

/// The values of an item of one kind of call.
template <class Item>
EntryValues valuesOf(const Item& item) {
    using Kind = format::CallKind<Item>;
    EntryValues values;
    const CallItemWithPicture& party = item;
    const auto add = [&](const auto& base, const auto& fields) {
        for (const auto& field : fields) {
            std::visit([&](const auto& access) { values.fields.push_back(valueText(std::invoke(access.get, base))); },
                       field.access);
        }
    };
    add(party, format::partyFields);
    add(item, Kind::itemFields);
    for (const auto& call : std::invoke(Kind::calls, item)) {
        values.calls.emplace_back();
        for (const auto& field : Kind::callFields) {
            std::visit([&](auto member) { values.calls.back().push_back(valueText(call.*member)); }, field.member);
        }
    }
    return values;
}

}  // namespace calljournal

#endif
