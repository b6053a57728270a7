#include "ContactMapper.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "ContactColumns.h"
#include "ContactFields.h"
#include "PhoneFile.h"

namespace calljournal {

namespace {

using TextMember = std::string Contact::*;

constexpr std::size_t fieldCount = std::size(contactTexts);

/// Returns which of contactTexts a member is.
constexpr std::size_t fieldOf(TextMember member) {
    std::size_t field = 0;
    while (contactTexts[field].member != member) {
        ++field;
    }
    return field;
}

constexpr std::size_t address1 = fieldOf(&Contact::address1);
constexpr std::size_t address2 = fieldOf(&Contact::address2);

/// A field and one source that may fill it if it is still empty. The rows are tried in order.
struct Choice {
    constexpr Choice(TextMember member, FieldKind from) : field(fieldOf(member)), kind(from) {}

    std::size_t field;
    FieldKind kind;
};

/// The importer's own choices, in its order ...
constexpr Choice importersChoices[] = {
    {&Contact::lastName, FieldKind::family},      {&Contact::firstName, FieldKind::given},
    {&Contact::business1, FieldKind::workPhone},  {&Contact::business1, FieldKind::primaryPhone},
    {&Contact::business2, FieldKind::workPhone2}, {&Contact::mobile1, FieldKind::mobile},
    {&Contact::mobile1, FieldKind::carPhone},     {&Contact::private1, FieldKind::homePhone},
    {&Contact::company1, FieldKind::company},     {&Contact::position, FieldKind::jobTitle},
    {&Contact::email1, FieldKind::email1},
};

/// ... and what else fills a place that they leave empty, so that it is not lost.
constexpr Choice furtherChoices[] = {
    {&Contact::business2, FieldKind::workPhone},     {&Contact::business1, FieldKind::workPhone2},
    {&Contact::business1, FieldKind::companyPhone},  {&Contact::business2, FieldKind::companyPhone},
    {&Contact::mobile1, FieldKind::mobile},          {&Contact::mobile1, FieldKind::radioPhone},
    {&Contact::private1, FieldKind::homePhone2},     {&Contact::private1, FieldKind::homePhone},
    {&Contact::business2, FieldKind::primaryPhone},  {&Contact::private1, FieldKind::primaryPhone},
    {&Contact::private1, FieldKind::otherPhone},     {&Contact::business2, FieldKind::otherPhone},
    {&Contact::business2, FieldKind::callbackPhone}, {&Contact::business2, FieldKind::isdn},
    {&Contact::private1, FieldKind::mobile},         {&Contact::private1, FieldKind::carPhone},
    {&Contact::email1, FieldKind::email2},           {&Contact::email1, FieldKind::email3},
    {&Contact::email1, FieldKind::email4},           {&Contact::firstName, FieldKind::middle},
};

/// What a contact without any name is called by.
constexpr Choice nameChoices[] = {{&Contact::lastName, FieldKind::displayName},
                                  {&Contact::lastName, FieldKind::nickname}};

/// The address in the phone's own form.
constexpr Choice ownAddress[] = {{&Contact::address1, FieldKind::addressLine1},
                                 {&Contact::address2, FieldKind::addressLine2}};

/// One of the addresses that a record may have; the first that there is becomes the contact's.
struct Address {
    FieldKind streets[3];
    FieldKind poBox;
    FieldKind whole;
    FieldKind line[3];  ///< City, postal code, country: what the importer joins.
};

constexpr Address addresses[] = {
    {{FieldKind::workStreet, FieldKind::workStreet2, FieldKind::workStreet3},
     FieldKind::workPoBox,
     FieldKind::workAddress,
     {FieldKind::workCity, FieldKind::workPostcode, FieldKind::workCountry}},
    {{FieldKind::homeStreet, FieldKind::homeStreet2, FieldKind::homeStreet3},
     FieldKind::homePoBox,
     FieldKind::homeAddress,
     {FieldKind::homeCity, FieldKind::homePostcode, FieldKind::homeCountry}},
    {{FieldKind::otherStreet, FieldKind::otherStreet2, FieldKind::otherStreet3},
     FieldKind::otherPoBox,
     FieldKind::otherAddress,
     {FieldKind::otherCity, FieldKind::otherPostcode, FieldKind::otherCountry}},
};

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

/// Puts `separator` where lines end, and nothing at either end; a comma that was there already counts.
std::string inOneLine(const std::string& text, std::string_view separator) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!isLineEnd(text[i])) {
            line += text[i];
        } else if (!line.empty() && i + 1 < text.size() && !isLineEnd(text[i + 1])) {
            line += line.back() == ',' ? std::string_view(" ") : separator;
        }
    }
    return line;
}

/// The work on one record.
class Mapping {
public:
    Mapping(const AddressRecord& record, const NumberWriter& numbers, MappedContact& mapped)
        : record_(record), numbers_(numbers), mapped_(mapped) {
        for (const ContactText& text : contactTexts) {
            (mapped_.contact.*text.member).clear();
        }
        mapped_.contact.source = Contact::CSV;
        mapped_.isJoinedAddress = false;
        mapped_.taken.clear();
        mapped_.remarks.clear();
        mapped_.isUsed.assign(record.values.size(), false);
        first_.fill(none);
        for (std::size_t i = record.values.size(); i-- != 0;) {
            first_[static_cast<std::size_t>(record.values[i].kind)] = i;
        }
    }

    void map() {
        choose(importersChoices);
        choose(furtherChoices);
        if (mapped_.contact.lastName.empty() && mapped_.contact.firstName.empty()) {
            choose(nameChoices);
        }
        chooseAddress();
        for (std::size_t field = 0; field < fieldCount; ++field) {
            cut(field);
        }
        deriveDefault();
        noteLeftOut();
    }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// The first value of that kind that nothing has taken yet and that has a text.
    std::size_t find(FieldKind kind) const {
        std::size_t i = first_[static_cast<std::size_t>(kind)];
        if (i == none) {
            return none;
        }
        for (; i < record_.values.size(); ++i) {
            const AddressValue& value = record_.values[i];
            if (value.kind == kind && !mapped_.isUsed[i] &&
                !std::all_of(value.text.begin(), value.text.end(), isLineEnd)) {
                return i;
            }
        }
        return none;
    }

    std::string& textOf(std::size_t field) { return mapped_.contact.*contactTexts[field].member; }

    template <std::size_t count>
    void choose(const Choice (&choices)[count]) {
        for (const Choice& choice : choices) {
            std::string& target = textOf(choice.field);
            const std::size_t found = target.empty() ? find(choice.kind) : none;
            if (found != none) {
                take(found, choice.field, target);
            }
        }
    }

    /// Marks a value as taken for a field, and sets `text` to its text in the form that the field has.
    void take(std::size_t index, std::size_t field, std::string& text) {
        const AddressValue& value = record_.values[index];
        mapped_.isUsed[index] = true;
        mapped_.taken.push_back({contactTexts[field].name, value.source});
        sources_[field] = value.source;
        text.assign(value.text);
        if (std::any_of(text.begin(), text.end(), isLineEnd)) {
            text = inOneLine(text, field == address1 || field == address2 ? ", " : " ");
            remark(Remark::changed, value.source, "its lines were joined into one");
        }
        if (isNumber(contactTexts[field].member)) {
            writeNumber(text, value.source);
        }
    }

    void writeNumber(std::string& text, std::string_view source) {
        WrittenNumber written = numbers_(text);
        if (!written.problem.empty()) {
            remark(Remark::doubtful, source, '"' + text + "\" " + written.problem);
        }
        if (written.text != text) {
            remark(Remark::changed, source, '"' + text + "\" was written as \"" + written.text + '"');
            text = std::move(written.text);
        }
    }

    void chooseAddress() {
        choose(ownAddress);
        if (!mapped_.contact.address1.empty() || !mapped_.contact.address2.empty()) {
            return;
        }
        const auto* address = std::find_if(std::begin(addresses), std::end(addresses),
                                           [this](const Address& candidate) { return hasAny(candidate); });
        if (address != std::end(addresses)) {
            takeAddress(*address);
        }
    }

    bool hasAny(const Address& address) const {
        const auto isThere = [this](FieldKind kind) { return find(kind) != none; };
        return std::any_of(std::begin(address.streets), std::end(address.streets), isThere) ||
               std::any_of(std::begin(address.line), std::end(address.line), isThere) || isThere(address.whole) ||
               isThere(address.poBox);
    }

    void takeAddress(const Address& address) {
        std::string& street = mapped_.contact.address1;
        for (const FieldKind kind : address.streets) {
            addStreet(street, kind);
        }
        if (street.empty()) {
            addStreet(street, address.poBox);
        }
        joinLine(address);
        if (street.empty() && mapped_.contact.address2.empty()) {
            addStreet(street, address.whole);
        }
    }

    void addStreet(std::string& street, FieldKind kind) {
        const std::size_t found = find(kind);
        if (found != none) {
            std::string text;
            take(found, address1, text);
            street += (street.empty() ? "" : ", ") + text;
        }
    }

    void joinLine(const Address& address) {
        std::array<std::size_t, 3> parts;
        std::transform(std::begin(address.line), std::end(address.line), parts.begin(),
                       [this](FieldKind kind) { return find(kind); });
        if (std::all_of(parts.begin(), parts.end(), [](std::size_t part) { return part == none; })) {
            return;
        }
        mapped_.isJoinedAddress = true;
        for (const std::size_t part : parts) {
            std::string text;
            if (part != none) {
                take(part, address2, text);
            }
            format::joinAddressPart(mapped_.contact.address2, text);
        }
    }

    void cut(std::size_t field) {
        std::string& text = textOf(field);
        const std::size_t length = storableLength(text);
        if (length < text.size()) {
            remark(Remark::changed, sources_[field],
                   "was cut to " + std::to_string(length) + " of " + std::to_string(text.size()) + " bytes");
            text.resize(length);
        }
    }

    void deriveDefault() {
        mapped_.contact.defaultDial = format::derivedDefaultDial(mapped_.contact);
        const std::size_t stated = find(FieldKind::defaultDial);
        if (stated == none) {
            return;
        }
        mapped_.isUsed[stated] = true;
        const AddressValue& value = record_.values[stated];
        const std::string derived = std::to_string(mapped_.contact.defaultDial);
        if (value.text != derived) {
            remark(Remark::changed, value.source,
                   '"' + value.text + "\" became " + derived + ": the first number is the default one");
        }
    }

    void noteLeftOut() {
        for (std::size_t i = 0; i < record_.values.size(); ++i) {
            if (!mapped_.isUsed[i]) {
                remark(Remark::leftOut, record_.values[i].source, std::string());
            }
        }
    }

    void remark(Remark::Kind kind, std::string_view source, std::string reason) {
        mapped_.remarks.push_back({kind, source, std::move(reason)});
    }

    const AddressRecord& record_;
    const NumberWriter& numbers_;
    MappedContact& mapped_;
    /// Of each kind. Most records have each once, or not at all; looking for one is then a look into a table.
    std::array<std::size_t, fieldKindCount> first_;
    std::array<std::string_view, fieldCount> sources_;  ///< Of each field's text.
};

}  // namespace

void ContactMapper::map(const AddressRecord& record, MappedContact& mapped) const {
    Mapping(record, numbers_, mapped).map();
}

}  // namespace calljournal
