#include "KindDescriptor.h"

#include <deque>
#include <type_traits>

#include "CallBackJson.h"
#include "CallListDatabaseAdapterHelper.h"
#include "CarriedText.h"
#include "ClientUtils.h"
#include "Kinds.h"
#include "XmlParser.h"

namespace calljournal {

namespace {

// Descriptors of the fields, by the type of the value.

constexpr format::Words noWords = {nullptr, nullptr, {}};

FieldDescriptor callField(std::string_view tag, const std::string&, bool) {
    return {tag, tag, ValueType::text, noWords, "as it is", callTextUnescapes};
}

FieldDescriptor callField(std::string_view tag, bool, bool unescapesFlags) {
    return {tag, tag, ValueType::flag, noWords, "", unescapesFlags ? callTextUnescapes : 1};
}

template <class Enumeration>
FieldDescriptor callField(std::string_view tag, Enumeration value, bool) {
    return {tag, tag, ValueType::word, format::wordsFor(value), "", callTextUnescapes};
}

std::string_view idiomOf(format::Form form) {
    return form == format::Form::asItIs ? "as it is" : form == format::Form::escaped ? "escaped" : "without colons";
}

template <class Base>
FieldDescriptor itemField(const format::ItemField<Base>& field) {
    if (const auto* access = std::get_if<format::TextAccess<Base>>(&field.access)) {
        return {field.writtenAs, field.readAs, ValueType::text, noWords, idiomOf(access->form), itemTextUnescapes};
    }
    return {field.writtenAs, field.readAs, ValueType::flag, noWords, "", 0};
}

// Values as texts.

std::string shown(const std::string& value) {
    return value;
}

std::string shown(bool value) {
    return std::string(value ? format::text::TRUE : format::text::FALSE);
}

template <class Enumeration>
std::string shown(Enumeration value) {
    return std::string(format::toWord(value));
}

template <class Item>
EntryValues valuesOf(const Item& item) {
    using Kind = format::CallKind<Item>;
    EntryValues values;
    const CallItemWithPicture& party = item;
    const auto add = [&](const auto& base, const auto& fields) {
        for (const auto& field : fields) {
            std::visit([&](const auto& access) { values.fields.push_back(shown((base.*access.get)())); }, field.access);
        }
    };
    add(party, format::partyFields);
    add(item, Kind::itemFields);
    for (const auto& call : (item.*Kind::calls)()) {
        values.calls.emplace_back();
        for (const auto& field : Kind::callFields) {
            std::visit([&](auto member) { values.calls.back().push_back(shown(call.*member)); }, field.member);
        }
    }
    return values;
}

template <class Item>
EntryValues decodeItem(const char* body) {
    Item item;
    KindInterface<Item>::decode(body, item);
    return valuesOf(item);
}

template <class Item>
KindDescriptor descriptorOf() {
    using Kind = format::CallKind<Item>;
    KindDescriptor descriptor{KindInterface<Item>::name, Kind::schema, Kind::updateMethod, {}, {}, {},
                              &decodeItem<Item>};
    for (const auto& field : format::partyFields) {
        descriptor.fields.push_back(itemField(field));
    }
    for (const auto& field : Kind::itemFields) {
        descriptor.fields.push_back(itemField(field));
    }
    const typename Kind::Call call;
    for (const auto& field : Kind::callFields) {
        std::visit(
            [&](auto member) {
                descriptor.callFields.push_back(callField(field.tag, call.*member, Kind::unescapesFlags));
            },
            field.member);
        // Two neighbours change places, so the place of a field is found as the field of a place is.
        descriptor.readRanks.push_back(format::readAt(Kind::callFields, descriptor.readRanks.size()));
    }
    return descriptor;
}

// Call-backs.

EntryValues decodeCallBackBody(const char* body) {
    const StoredCallBack stored = decodeCallBack(body);
    EntryValues values;
    values.fields.push_back(stored.uniqueId);
    for (const CallBackField& field : callBackFields) {
        std::visit([&](const auto& access) { values.fields.push_back(shown((stored.item.*access.get)())); },
                   field.access);
    }
    return values;
}

FieldDescriptor callBackField(const CallBackField& field) {
    const CallBackItem item;
    return std::visit(
        [&](const auto& access) -> FieldDescriptor {
            const auto value = (item.*access.get)();
            if constexpr (std::is_enum_v<std::decay_t<decltype(value)>>) {
                return {field.tag, field.tag, ValueType::word, format::wordsFor(value), "", 1};
            } else {
                return {field.tag, field.tag, ValueType::text, noWords, "escaped", 1};
            }
        },
        field.access);
}

KindDescriptor callBackDescriptor() {
    KindDescriptor descriptor{callBackKind, callBackSchema,     "", {itemField(format::partyFields[0])}, {},
                              {},           &decodeCallBackBody};
    for (const CallBackField& field : callBackFields) {
        descriptor.fields.push_back(callBackField(field));
    }
    return descriptor;
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

// Reading of the missed call list.

using Parser = CallListDatabaseAdapterHelper::MissedCallParser;

/// Hands the events on to the list's own reader and looks at what it has after each entry.
struct ListWatcher {
    ListWatcher() : parser(items) {}

    std::deque<MissedCallItem> items;
    Parser parser;
    std::vector<ListEntry> entries;
};

void watchBegin(void* watcher, const char* name, const char** attributes) {
    Parser::parseRemoteXMLTagBegin(&static_cast<ListWatcher*>(watcher)->parser, name, attributes);
}

void watchData(void* watcher, const char* text, int length) {
    Parser::parseRemoteXMLData(&static_cast<ListWatcher*>(watcher)->parser, text, length);
}

/// Undoes the escaping of what the list hands over raw, in the places where the decoder does.
EntryValues restored(EntryValues values) {
    const KindDescriptor& kind = kindDescriptors().front();
    for (std::size_t i = 0; i < values.fields.size(); ++i) {
        const bool isRaw = kind.fields[i].idiom == "as it is" && kind.fields[i].type == ValueType::text;
        values.fields[i] = isRaw ? restoredText(values.fields[i], kind.fields[i].unescapes) : values.fields[i];
    }
    for (std::vector<std::string>& call : values.calls) {
        for (std::size_t i = 0; i < call.size(); ++i) {
            call[i] = restoredText(call[i], kind.callFields[i].unescapes);
        }
    }
    return values;
}

void watchEnd(void* userData, const char* name) {
    ListWatcher& watcher = *static_cast<ListWatcher*>(userData);
    Parser::parseRemoteXMLTagEnd(&watcher.parser, name);
    if (format::text::ENTRY != name) {
        return;
    }
    watcher.entries.push_back({std::nullopt, watcher.parser.callLogType});
    if (!watcher.items.empty()) {
        watcher.entries.back().values = restored(valuesOf(watcher.items.back()));
        watcher.items.clear();
    }
}

}  // namespace

const std::vector<KindDescriptor>& kindDescriptors() {
    static const std::vector<KindDescriptor> descriptors = makeDescriptors();
    return descriptors;
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

std::vector<ListEntry> readMissedList(const std::string& reply) {
    CallListDatabaseAdapterHelper::init();
    ListWatcher watcher;
    XmlParser xml(&watcher, &watchBegin, &watchEnd, &watchData);
    const std::string fixed = ClientUtils::fixSpecialXMLCharactersToQuote(reply);
    xml.parseMessage(fixed.c_str(), static_cast<int>(std::min(fixed.size(), reply.size())));
    return std::move(watcher.entries);
}

}  // namespace calljournal
