#include "KindDescriptor.h"

#include <algorithm>
#include <type_traits>

#include "CallBackJson.h"
#include "CarriedText.h"
#include "Kinds.h"

namespace calljournal {

namespace {

/// Describes a field by the type of its value.
FieldDescriptor describe(std::string_view tag, const std::string&) {
    return {tag, tag, ValueType::text, {}, format::Form::asItIs, callTextUnescapes, 0};
}

FieldDescriptor describe(std::string_view tag, bool) {
    return {tag, tag, ValueType::flag, {}, {}, callTextUnescapes, 0};
}

template <class Enumeration>
FieldDescriptor describe(std::string_view tag, Enumeration value) {
    return {tag, tag, ValueType::word, format::wordsFor(value), {}, callTextUnescapes, 0};
}

template <class Party>
FieldDescriptor describe(const format::ItemField<Party>& field) {
    const auto* text = std::get_if<format::TextAccess<Party>>(&field.access);
    return text == nullptr
               ? FieldDescriptor{field.writtenAs, field.readAs, ValueType::flag, {}, {}, 0, 0}
               : FieldDescriptor{field.writtenAs, field.readAs, ValueType::text, {}, text->form, itemTextUnescapes, 0};
}

std::string valueText(const std::string& value) {
    return value;
}

template <class Value>
std::string valueText(Value value) {
    return std::string(std::string_view(format::wordOf(value)));
}

/// The values of an item of one kind of call.
template <class Item>
EntryValues valuesOfItem(const Item& item) {
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

template <class Item>
EntryValues decodeItem(const char* body) {
    Item item;
    KindInterface<Item>::decode(body, item);
    return valuesOfItem(item);
}

template <class Item>
KindDescriptor descriptorOf() {
    using Kind = format::CallKind<Item>;
    KindDescriptor kind{KindInterface<Item>::name, Kind::schema, Kind::updateMethod, {}, {}, &decodeItem<Item>};
    const auto add = [&](const auto& fields) {
        for (const auto& field : fields) {
            kind.fields.push_back(describe(field));
            kind.fields.back().readRank = kind.fields.size();
        }
    };
    add(format::partyFields);
    add(Kind::itemFields);
    const typename Kind::Call call;
    for (const auto& field : Kind::callFields) {
        FieldDescriptor described =
            std::visit([&](auto member) { return describe(field.tag, call.*member); }, field.member);
        described.unescapes = described.type == ValueType::flag && !Kind::unescapesFlags ? 1 : described.unescapes;
        // Two neighbours change places, so the place of a field is found as the field of a place is.
        described.readRank = format::readAt(Kind::callFields, kind.callFields.size());
        kind.callFields.push_back(described);
    }
    return kind;
}

// Call-backs.

EntryValues decodeCallBackBody(const char* body) {
    const StoredCallBack stored = decodeCallBack(body);
    EntryValues values;
    values.fields.push_back(stored.uniqueId);
    for (const CallBackField& field : callBackFields) {
        std::visit([&](const auto& access) { values.fields.push_back(valueText((stored.item.*access.get)())); },
                   field.access);
    }
    return values;
}

KindDescriptor callBackDescriptor() {
    KindDescriptor kind{callBackKind, callBackSchema, "", {describe(format::partyFields[0])}, {}, &decodeCallBackBody};
    const CallBackItem item;
    for (const CallBackField& field : callBackFields) {
        kind.fields.push_back(std::visit(
            [&](const auto& access) { return describe(field.tag, std::invoke(access.get, item)); }, field.access));
        FieldDescriptor& described = kind.fields.back();
        described.form = format::Form::escaped;
        described.unescapes = 1;
        described.readRank = kind.fields.size();
    }
    return kind;
}

std::vector<KindDescriptor> makeDescriptors() {
    std::vector<KindDescriptor> descriptors;
    forEachKind([&](auto type) { descriptors.push_back(descriptorOf<typename decltype(type)::Item>()); });
    descriptors.push_back(callBackDescriptor());
    return descriptors;
}

template <class Is>
const KindDescriptor* findKind(Is is) {
    for (const KindDescriptor& kind : kindDescriptors()) {
        if (is(kind)) {
            return &kind;
        }
    }
    return nullptr;
}

}  // namespace

const std::vector<KindDescriptor>& kindDescriptors() {
    static const std::vector<KindDescriptor> descriptors = makeDescriptors();
    return descriptors;
}

EntryValues valuesOf(const MissedCallItem& item) {
    return valuesOfItem(item);
}

const KindDescriptor* kindNamed(std::string_view name) {
    return findKind([&](const KindDescriptor& kind) { return kind.name == name; });
}

const KindDescriptor* kindOfSchema(std::string_view schema) {
    return findKind([&](const KindDescriptor& kind) { return kind.schema == schema; });
}

const KindDescriptor* kindOfMethod(std::string_view method) {
    return findKind([&](const KindDescriptor& kind) { return !method.empty() && kind.updateMethod == method; });
}

}  // namespace calljournal
