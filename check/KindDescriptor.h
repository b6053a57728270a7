#ifndef CALLJOURNAL_KINDDESCRIPTOR_H
#define CALLJOURNAL_KINDDESCRIPTOR_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Words.h"

namespace calljournal {

enum class ValueType { text, flag, word };

/// One element of an entry or of a call, the same for every kind.
struct FieldDescriptor {
    std::string_view writtenAs;
    std::string_view readAs;
    ValueType type;
    format::Words words;     ///< Of a word.
    std::string_view idiom;  ///< How a text is written: "as it is", "escaped", "without colons".
    int unescapes;           ///< How often the decoder unescapes what stands between the tags.

    bool isAlwaysWritten() const { return type != ValueType::text; }
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
    std::vector<std::size_t> readRanks;       ///< The place of each call field in the order of reading.
    EntryValues (*decode)(const char* body);

    bool hasCalls() const { return !callFields.empty(); }
};

/// The four kinds of calls in the order in which people list them, and behind them the host's call-backs.
const std::vector<KindDescriptor>& kindDescriptors();

/// The kind of that name, schema or notification; null if there is none.
const KindDescriptor* kindNamed(std::string_view name);
const KindDescriptor* kindOfSchema(std::string_view schema);
const KindDescriptor* kindOfMethod(std::string_view method);

/// One entry as the reader of the missed call list left it.
struct ListEntry {
    std::optional<EntryValues> values;  ///< Nothing if it was dropped.
    std::string callLogType;            ///< That it was kept or dropped for.
};

/// Has the reader of the missed call list read `reply` and returns what it did at the end of each "Entry". Values that
/// the list hands over raw are unescaped as often as the decoder would.
std::vector<ListEntry> readMissedList(const std::string& reply);

}  // namespace calljournal

#endif
