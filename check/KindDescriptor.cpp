#include "KindDescriptor.h"

#include <algorithm>

#include "CarriedText.h"
#include "Entry.h"
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

/// Describes a field by how its value is reached.
template <class Party>
FieldDescriptor describe(std::string_view writtenAs, std::string_view readAs, const format::TextAccess<Party>& access) {
    return {writtenAs, readAs, ValueType::text, {}, access.form, itemTextUnescapes, 0};
}

template <class Party>
FieldDescriptor describe(std::string_view writtenAs, std::string_view readAs, const format::FlagAccess<Party>&) {
    return {writtenAs, readAs, ValueType::flag, {}, {}, 0, 0};
}

template <class Enumeration>
FieldDescriptor describe(std::string_view writtenAs, std::string_view readAs, const WordAccess<Enumeration>&) {
    return {writtenAs, readAs, ValueType::word, format::wordsFor(Enumeration()), {}, itemTextUnescapes, 0};
}

std::string valueText(const std::string& value) {
    return value;
}

template <class Value>
std::string valueText(Value value) {
    return std::string(std::string_view(format::wordOf(value)));
}

/// The values of an entry of one kind.
template <class Item>
EntryValues valuesOfItem(const Item& item) {
    EntryValues values;
    forEachFieldTable(item, [&](const auto& base, const auto& fields) {
        for (const auto& field : fields) {
            std::visit([&](const auto& access) { values.fields.push_back(valueText(std::invoke(access.get, base))); },
                       field.access);
        }
    });
    if constexpr (KindInterface<Item>::isCallLog) {
        for (const auto& call : callsOf(item)) {
            values.calls.emplace_back();
            for (const auto& field : format::CallKind<Item>::callFields) {
                std::visit([&](auto member) { values.calls.back().push_back(valueText(call.*member)); }, field.member);
            }
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
    const Item item;
    forEachFieldTable(item, [&](const auto&, const auto& fields) {
        for (const auto& field : fields) {
            kind.fields.push_back(std::visit(
                [&](const auto& access) { return describe(field.writtenAs, field.readAs, access); }, field.access));
            kind.fields.back().readRank = kind.fields.size();
        }
    });
    if constexpr (KindInterface<Item>::isCallLog) {
        const typename Kind::Call call;
        for (const auto& field : Kind::callFields) {
            FieldDescriptor described =
                std::visit([&](auto member) { return describe(field.tag, call.*member); }, field.member);
            described.unescapes = described.type == ValueType::flag && !Kind::unescapesFlags ? 1 : described.unescapes;
            // Two neighbours change places, so the place of a field is found as the field of a place is.
            described.readRank = format::readAt(Kind::callFields, kind.callFields.size());
            kind.callFields.push_back(described);
        }
    }
    return kind;
}

const KindDescriptor* findKind(std::string_view KindDescriptor::*property, std::string_view value) {
    const std::vector<KindDescriptor>& kinds = kindDescriptors();
    const auto found =
        std::find_if(kinds.begin(), kinds.end(), [&](const KindDescriptor& kind) { return kind.*property == value; });
    return found == kinds.end() ? nullptr : &*found;
}

}  // namespace

const std::vector<KindDescriptor>& kindDescriptors() {
    static const std::vector<KindDescriptor> descriptors = [] {
        std::vector<KindDescriptor> all;
        forEachKind([&](auto type) { all.push_back(descriptorOf<typename decltype(type)::Item>()); });
        return all;
    }();
    return descriptors;
}

EntryValues valuesOf(const MissedCallItem& item) {
    return valuesOfItem(item);
}

const KindDescriptor* kindNamed(std::string_view name) {
    return findKind(&KindDescriptor::name, name);
}

const KindDescriptor* kindOfSchema(std::string_view schema) {
    return findKind(&KindDescriptor::schema, schema);
}

const KindDescriptor* kindOfMethod(std::string_view method) {
    return method.empty() ? nullptr : findKind(&KindDescriptor::updateMethod, method);
}

}  // namespace calljournal
