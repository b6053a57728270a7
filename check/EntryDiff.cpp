#include "EntryDiff.h"

#include <algorithm>

#include "PrintableText.h"

namespace calljournal {

namespace {

using Values = std::vector<std::string>;

constexpr char noCall[] = "(no such call)";

void diffValues(const std::vector<FieldDescriptor>& rows, const std::string& place, const Values& a, const Values& b,
                std::vector<std::string>& lines) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (a[i] != b[i]) {
            lines.push_back(place + std::string(rows[i].readAs) + ": " + printable(a[i]) + " | " + printable(b[i]));
        }
    }
}

/// The values of a call that is not there, beside one that is.
Values absentBeside(const Values& call) {
    Values values(call.size(), noCall);
    std::replace_if(
        values.begin(), values.end(),
        [&](const std::string& value) { return call[static_cast<std::size_t>(&value - values.data())].empty(); },
        std::string());
    return values;
}

}  // namespace

std::vector<std::string> diffEntries(const KindDescriptor& kind, const EntryValues& a, const EntryValues& b) {
    std::vector<std::string> lines;
    diffValues(kind.fields, std::string(), a.fields, b.fields, lines);
    for (std::size_t i = 0; i < std::max(a.calls.size(), b.calls.size()); ++i) {
        const std::string place = "call " + std::to_string(i + 1) + ", ";
        const Values first = i < a.calls.size() ? a.calls[i] : absentBeside(b.calls[i]);
        const Values second = i < b.calls.size() ? b.calls[i] : absentBeside(a.calls[i]);
        diffValues(kind.callFields, place, first, second, lines);
    }
    return lines;
}

}  // namespace calljournal
