#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "CallKinds.h"
#include "Words.h"

namespace calljournal {

enum class ValueType { text, flag, word };

/// One element of an entry or of a call, the same for every kind.
struct FieldDescriptor {
    std::string_view writtenAs;
    std::string_view readAs;
    ValueType type;
    format::Words words;   ///< Of a word.
    format::Form form;     ///< Of a text.
    int unescapes;         ///< How often the decoder unescapes what is between the tags.
    std::size_t readRank;  ///< Its place in the order of reading.

    bool isAlwaysWritten() const { return type != ValueType::text; }
    bool isNamed(std::string_view name) const { return writtenAs == name || readAs == name; }
};

/// What a reader made of an entry: texts, "True" or "False", and the word of each value.
struct EntryValues {
    std::vector<std::string> fields;              ///< In the order of KindDescriptor::fields.
    std::vector<std::vector<std::string>> calls;  ///< Each in the order of KindDescriptor::callFields.
};

/// One kind of entry: its table in the data access service, its elements and its decoder.
struct KindDescriptor {
    std::string_view name;
    std::string_view schema;
    std::string_view updateMethod;            ///< Empty for a kind without notification.
    std::vector<FieldDescriptor> fields;      ///< In the order written; LogList follows them.
    std::vector<FieldDescriptor> callFields;  ///< In the order written.
    EntryValues (*decode)(const char* body);

    bool hasCalls() const { return !callFields.empty(); }
};

/// The four kinds of calls in the order in which people list them, and behind them the host's call-backs.
const std::vector<KindDescriptor>& kindDescriptors();

/// The kind of that name, schema or notification; null if there is none.
const KindDescriptor* kindNamed(std::string_view name);
const KindDescriptor* kindOfSchema(std::string_view schema);
const KindDescriptor* kindOfMethod(std::string_view method);

EntryValues valuesOf(const MissedCallItem& item);

}  // namespace calljournal
