#include "EntryDiff.h"

#include <algorithm>

#include "EntryBody.h"

namespace calljournal {

namespace {

using Values = std::vector<std::string>;

/// The values are null for a call that is not there.
void compare(std::size_t call, const std::vector<FieldDescriptor>& fields, const Values* a, const Values* b,
             std::vector<Difference>& differences) {
    const auto valueOf = [](const Values* values, std::size_t row) {
        return values == nullptr ? std::nullopt : std::make_optional((*values)[row]);
    };
    for (std::size_t row = 0; row < fields.size(); ++row) {
        Difference difference{call, fields[row].readAs, valueOf(a, row), valueOf(b, row)};
        if (difference.a.value_or("") != difference.b.value_or("")) {
            differences.push_back(std::move(difference));
        }
    }
}

}  // namespace

std::optional<EntryValues> readOnlyEntry(const Message& message) {
    if (message.kind == nullptr || message.entries.size() != 1) {
        return std::nullopt;
    }
    // A missed entry's picture goes by one name when it is written and by another when it is read.
    std::string body;
    appendWithPictureClip(message.bodyOf(message.entries.front()), body);
    return message.kind->decode(body.c_str());
}

std::vector<Difference> compareEntries(const KindDescriptor& kind, const EntryValues& a, const EntryValues& b) {
    std::vector<Difference> differences;
    compare(0, kind.fields, &a.fields, &b.fields, differences);
    for (std::size_t i = 0; i < std::max(a.calls.size(), b.calls.size()); ++i) {
        compare(i + 1, kind.callFields, i < a.calls.size() ? &a.calls[i] : nullptr,
                i < b.calls.size() ? &b.calls[i] : nullptr, differences);
    }
    return differences;
}

}  // namespace calljournal
