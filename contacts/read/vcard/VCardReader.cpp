#include "VCardReader.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "Text.h"
#include "ValueKinds.h"

namespace calljournal {

namespace {

struct KindOfWord {
    std::string_view word;
    FieldKind kind;
};

/// Properties with one text. What is in neither table is not taken over.
constexpr KindOfWord textProperties[] = {
    {"FN", FieldKind::displayName},
    {"NICKNAME", FieldKind::nickname},
    {"TITLE", FieldKind::jobTitle},
    {"NOTE", FieldKind::notes},
    {"BDAY", FieldKind::birthDate},
    {"ANNIVERSARY", FieldKind::anniversary},
    {"URL", FieldKind::web},
    {"X-ANNIVERSARY", FieldKind::anniversary},
    {"CATEGORIES", FieldKind::categories},
};

/// Properties about the card and not about the person.
constexpr std::string_view cardProperties[] = {"PRODID", "UID", "REV", "PROFILE", "SOURCE", "CLASS", "CLIENTPIDMAP"};

/// Types of telephones; the first that a number has counts.
constexpr KindOfWord phoneTypes[] = {
    {"PAGER", FieldKind::pager},
    {"CELL", FieldKind::mobile},
    {"IPHONE", FieldKind::mobile},
    {"CAR", FieldKind::carPhone},
    {"ISDN", FieldKind::isdn},
    {"TEXTPHONE", FieldKind::ttyTdd},
    {"X-EVOLUTION-TTYTDD", FieldKind::ttyTdd},
    {"TLX", FieldKind::telex},
    {"X-EVOLUTION-TELEX", FieldKind::telex},
    {"X-EVOLUTION-ASSISTANT", FieldKind::assistantPhone},
    {"X-EVOLUTION-CALLBACK", FieldKind::callbackPhone},
    {"X-EVOLUTION-RADIO", FieldKind::radioPhone},
    {"X-EVOLUTION-COMPANY", FieldKind::companyPhone},
    {"WORK", FieldKind::workPhone},
    {"HOME", FieldKind::homePhone},
    {"MAIN", FieldKind::primaryPhone},
    {"OTHER", FieldKind::otherPhone},
};

/// In the order of the value.
constexpr FieldKind nameParts[] = {FieldKind::family, FieldKind::given, FieldKind::middle, FieldKind::title,
                                   FieldKind::suffix};
constexpr AddressPart addressParts[] = {AddressPart::poBox,  AddressPart::street2, AddressPart::street,
                                        AddressPart::city,   AddressPart::state,   AddressPart::postcode,
                                        AddressPart::country};

constexpr std::string_view blanks = " \t\r\n";

bool isMarker(const VCardProperty& property, std::string_view name) {
    return property.name == name && upperCase(trimmed(property.value, blanks)) == "VCARD";
}

/// 1 is liked best, 100 least; without a word about it a number comes behind these.
int preference(const VCardProperty& property) {
    constexpr int none = 101;
    for (const VCardParameter& parameter : property.parameters) {
        if (parameter.name == "PREF") {
            int number = none;
            std::from_chars(parameter.value.data(), parameter.value.data() + parameter.value.size(), number);
            return number;
        }
    }
    return property.hasType("PREF") ? 1 : none;
}

void sortByPreference(std::vector<VCardProperty>& properties) {
    std::stable_sort(properties.begin(), properties.end(),
                     [](const VCardProperty& a, const VCardProperty& b) { return preference(a) < preference(b); });
}

/// "tel:+49-30-1234" is written for programs.
std::string_view withoutScheme(std::string_view text, std::string_view scheme) {
    return upperCase(text.substr(0, scheme.size())) == scheme ? text.substr(scheme.size()) : text;
}

/// A part of a structured value may be a list.
std::string joinedList(std::string_view part, std::string_view separator, bool isOldVersion) {
    std::string text;
    for (const std::string_view item : splitValue(part, isOldVersion ? '\0' : ',')) {
        const std::string plain = valueText(unescaped(item, isOldVersion));
        text += (text.empty() || plain.empty() ? "" : std::string(separator)) + plain;
    }
    return text;
}

}  // namespace

bool isVCard(std::string_view beginning) {
    const std::string_view text = trimmed(beginning, blanks);
    return upperCase(trimmed(text.substr(0, text.find_first_of("\r\n")), blanks)) == "BEGIN:VCARD";
}

VCardReader::VCardReader(TextStream stream, std::shared_ptr<const ColumnFinder> finder, Recognition recognition)
    : lines_(LineReader(std::move(stream))), finder_(std::move(finder)) {
    recognition_ = std::move(recognition);
    recognition_.format = "vCard";
}

bool VCardReader::next(AddressRecord& record) {
    if (!take()) {
        return false;
    }
    record.values.clear();
    record.problems.clear();
    record.fault.clear();
    record.number = ++number_;
    record.firstLine = property_.line;
    record.lastLine = property_.lastLine;
    if (isMarker(property_, "BEGIN")) {
        readCard(record);
    } else {
        skipToCard(record);
    }
    return true;
}

void VCardReader::skipToCard(AddressRecord& record) {
    record.fault = "it stands outside of all cards";
    while (take()) {
        if (isMarker(property_, "BEGIN")) {
            isHeld_ = true;
            return;
        }
        record.lastLine = property_.lastLine;
    }
}

void VCardReader::readCard(AddressRecord& record) {
    isOldVersion_ = false;
    lines_.setOldVersion(false);
    size_ = 0;
    phones_.clear();
    mails_.clear();
    addresses_.clear();
    labels_.clear();
    bool isComplete = false;
    while (!isComplete && take()) {
        if (isMarker(property_, "BEGIN")) {
            isHeld_ = true;
            break;
        }
        record.lastLine = property_.lastLine;
        isComplete = isMarker(property_, "END");
        if (!isComplete) {
            addProperty(record);
        }
    }
    if (!isComplete) {
        record.problems.push_back({record.lastLine, "", "END:VCARD is missing"});
    }
    finishCard(record);
}

/// Reads over a card inside the card, that of a person's agent.
void VCardReader::skipNested(AddressRecord& record) {
    std::size_t depth = 0;
    while (take()) {
        if (depth == 0 && !isMarker(property_, "BEGIN")) {
            isHeld_ = true;
            return;
        }
        record.lastLine = property_.lastLine;
        depth += isMarker(property_, "BEGIN") ? 1 : 0;
        depth -= isMarker(property_, "END") ? 1 : 0;
        if (depth == 0) {
            return;
        }
    }
}

void VCardReader::addProperty(AddressRecord& record) {
    VCardProperty& property = property_;
    constexpr std::size_t overhead = 200;
    size_ += property.value.size() + property.source.size() + overhead;
    if (size_ > longestRecord) {
        record.fault = "it is longer than " + std::to_string(longestRecord) + " bytes";
    }
    if (!record.fault.empty()) {
        return;
    }
    if (property.name.empty()) {
        record.problems.push_back({property.line, "", "the line is no property"});
    } else if (property.isTooLong) {
        record.problems.push_back({property.line, property.source, "it is too long"});
    } else if (property.name == "VERSION") {
        isOldVersion_ = trimmed(property.value, blanks).substr(0, 2) == "2.";
        lines_.setOldVersion(isOldVersion_);
    } else if (property.name == "AGENT" && trimmed(property.value, blanks).empty()) {
        skipNested(record);
    } else if (property.name == "N") {
        addName(record);
    } else if (property.name == "ORG") {
        addOrganization(record);
    } else if (property.name == "TEL") {
        phones_.push_back(std::move(property));
    } else if (property.name == "EMAIL") {
        mails_.push_back(std::move(property));
    } else if (property.name == "ADR") {
        addresses_.push_back(std::move(property));
    } else if (property.name == "X-ABLABEL") {
        labels_[property.group] = unescaped(property.value, isOldVersion_);
    } else if (property.name == "KIND" || property.name == "X-ADDRESSBOOKSERVER-KIND") {
        if (upperCase(trimmed(property.value, blanks)) == "GROUP") {
            record.fault = "it is a list of contacts";
        }
    } else {
        addOther(record);
    }
}

void VCardReader::addText(AddressRecord& record, const VCardProperty& property, FieldKind kind, std::string_view text) {
    addValue(record, kind, text, property.source);
    noteLostCharacters(record, property.line, text, property.source);
}

void VCardReader::addOther(AddressRecord& record) {
    const auto* const known = std::find_if(std::begin(textProperties), std::end(textProperties),
                                           [&](const KindOfWord& p) { return p.word == property_.name; });
    if (known != std::end(textProperties)) {
        const bool isHomePage = known->kind == FieldKind::web && property_.hasType("HOME");
        addText(record, property_, isHomePage ? FieldKind::webHome : known->kind,
                unescaped(property_.value, isOldVersion_));
        return;
    }
    const bool isAboutCard =
        std::find(std::begin(cardProperties), std::end(cardProperties), property_.name) != std::end(cardProperties);
    if (!isAboutCard) {
        addValue(record, FieldKind::other, property_.isBinary ? "(binary)" : property_.value, property_.source);
    }
}

void VCardReader::addName(AddressRecord& record) {
    const std::vector<std::string_view> parts = splitValue(property_.value, ';');
    for (std::size_t i = 0; i < std::min(parts.size(), std::size(nameParts)); ++i) {
        addText(record, property_, nameParts[i], joinedList(parts[i], " ", isOldVersion_));
    }
}

void VCardReader::addOrganization(AddressRecord& record) {
    const std::vector<std::string_view> parts = splitValue(property_.value, ';');
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const FieldKind kind = i == 0 ? FieldKind::company : FieldKind::department;
        addText(record, property_, kind, unescaped(parts[i], isOldVersion_));
    }
}

/// Drops everything if the card cannot be used, else adds what had to wait for the whole card.
void VCardReader::finishCard(AddressRecord& record) {
    if (!record.fault.empty()) {
        record.values.clear();
        record.problems.clear();
        return;
    }
    addPhones(record);
    addMails(record);
    for (const VCardProperty& address : addresses_) {
        addAddress(record, address);
    }
}

void VCardReader::addPhones(AddressRecord& record) {
    sortByPreference(phones_);
    PhonePlaces places;
    for (const VCardProperty& phone : phones_) {
        const std::string number = valueText(withoutScheme(unescaped(phone.value, isOldVersion_), "TEL:"));
        if (!number.empty()) {
            addText(record, phone, places.place(phoneKind(phone)), number);
        }
    }
}

void VCardReader::addMails(AddressRecord& record) {
    constexpr FieldKind places[] = {FieldKind::email1, FieldKind::email2, FieldKind::email3, FieldKind::email4};
    sortByPreference(mails_);
    std::size_t place = 0;
    for (const VCardProperty& mail : mails_) {
        addText(record, mail, places[place], withoutScheme(unescaped(mail.value, isOldVersion_), "MAILTO:"));
        place = std::min(place + 1, std::size(places) - 1);
    }
}

void VCardReader::addAddress(AddressRecord& record, const VCardProperty& property) {
    const FieldKind kind = addressKind(property);
    const std::vector<std::string_view> parts = splitValue(property.value, ';');
    for (std::size_t i = 0; i < std::min(parts.size(), std::size(addressParts)); ++i) {
        addText(record, property, addressPart(kind, addressParts[i]), joinedList(parts[i], ", ", isOldVersion_));
    }
}

/// The name that a group has: `item1.X-ABLabel:_$!<Home>!$_` for `item1.TEL`.
std::string VCardReader::labelOf(const VCardProperty& property) const {
    const auto found = property.group.empty() ? labels_.end() : labels_.find(property.group);
    if (found == labels_.end()) {
        return {};
    }
    std::string label = found->second;
    const auto isFrame = [](char c) { return c == '_' || c == '$' || c == '!' || c == '<' || c == '>'; };
    label.erase(std::remove_if(label.begin(), label.end(), isFrame), label.end());
    return label;
}

FieldKind VCardReader::phoneKind(const VCardProperty& property) const {
    if (property.hasType("FAX")) {
        return property.hasType("WORK")   ? FieldKind::workFax
               : property.hasType("HOME") ? FieldKind::homeFax
                                          : FieldKind::otherFax;
    }
    const auto* const type = std::find_if(std::begin(phoneTypes), std::end(phoneTypes),
                                          [&](const KindOfWord& t) { return property.hasType(t.word); });
    if (type != std::end(phoneTypes)) {
        return type->kind;
    }
    const std::string label = labelOf(property);
    return label.empty() ? FieldKind::primaryPhone : finder_->phoneType(label).value_or(FieldKind::otherPhone);
}

/// An address without a word about it is one at work, as old versions of the format have it.
FieldKind VCardReader::addressKind(const VCardProperty& property) const {
    if (property.hasType("WORK")) {
        return FieldKind::workAddress;
    }
    if (property.hasType("HOME")) {
        return FieldKind::homeAddress;
    }
    const std::string label = labelOf(property);
    return label.empty() ? FieldKind::workAddress : finder_->addressType(label).value_or(FieldKind::otherAddress);
}

}  // namespace calljournal
