#include "ValueKinds.h"

#include <algorithm>
#include <utility>

#include "Text.h"

namespace calljournal {

namespace {

constexpr std::string_view blanks = " \t\n\r\v\f";

/// Does what valueText does, and keeps the memory of `value`.
void assignValueText(std::string& value, std::string_view text) {
    const std::string_view inner = trimmed(text, blanks);
    if (std::none_of(inner.begin(), inner.end(), isControl)) {
        value.assign(inner);
        return;
    }
    value.clear();
    for (std::size_t i = 0; i < inner.size(); ++i) {
        const char c = inner[i];
        if (c == '\r') {
            i += i + 1 < inner.size() && inner[i + 1] == '\n' ? 1 : 0;
            value += '\n';
        } else {
            value += isControl(c) && c != '\n' ? ' ' : c;
        }
    }
    value = std::string(trimmed(value, blanks));
}

}  // namespace

FieldKind addressPart(FieldKind kind, AddressPart part) {
    static_assert(static_cast<int>(FieldKind::workAddress) - static_cast<int>(FieldKind::workStreet) ==
                  static_cast<int>(AddressPart::whole));
    return static_cast<FieldKind>(static_cast<int>(kind) - static_cast<int>(AddressPart::whole) +
                                  static_cast<int>(part));
}

FieldKind PhonePlaces::place(FieldKind phone) {
    if (phone == FieldKind::workPhone) {
        return std::exchange(hasWork_, true) ? FieldKind::workPhone2 : phone;
    }
    if (phone == FieldKind::homePhone) {
        return std::exchange(hasHome_, true) ? FieldKind::homePhone2 : phone;
    }
    return phone;
}

std::string valueText(std::string_view text) {
    std::string value;
    assignValueText(value, text);
    return value;
}

void addValue(AddressRecord& record, FieldKind kind, std::string_view text, std::string_view source) {
    AddressValue& value = record.values.add();
    assignValueText(value.text, text);
    if (value.text.empty()) {
        record.values.dropLast();
        return;
    }
    value.kind = kind;
    value.source.assign(source);
}

void noteLostCharacters(AddressRecord& record, std::size_t line, std::string_view text, const std::string& source) {
    if (text.find("\ufffd") != std::string_view::npos) {
        record.problems.push_back({line, source, "it has characters that could not be read"});
    }
}

}  // namespace calljournal
