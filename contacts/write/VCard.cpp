#include "VCard.h"

#include <cstddef>
#include <vector>

#include "CSVType.h"
#include "ContactFields.h"
#include "Text.h"
#include "Utf8.h"

namespace calljournal {

namespace {

constexpr std::size_t longestLine = 75;
constexpr std::string_view lineEnd = "\r\n";

/// A value of type TEXT. Control characters have no place in it; a line end of any kind becomes "\n". A semicolon may
/// stay as it is, and the grammar knows no other form.
std::string escaped(std::string_view text) {
    const std::string valid = asUtf8(text);
    std::string value;
    for (std::size_t i = 0; i < valid.size(); ++i) {
        const char c = valid[i];
        const bool isLineEnd = c == '\n' || c == '\r';
        if (isLineEnd) {
            i += c == '\r' && i + 1 < valid.size() && valid[i + 1] == '\n' ? 1 : 0;
            value += "\\n";
        } else if (c == '\\' || c == ',') {
            value += '\\';
            value += c;
        } else {
            value += isControl(c) ? ' ' : c;
        }
    }
    return value;
}

/// A part of a value that has several, with semicolons between them.
std::string escapedComponent(std::string_view text) {
    std::string component;
    for (const char c : escaped(text)) {
        component += c == ';' ? "\\;" : std::string(1, c);
    }
    return component;
}

/// What a card is called: by the person, else by whatever identifies it.
std::string formattedName(const Contact& contact) {
    std::string name = fullName(contact.firstName, contact.lastName);
    if (!name.empty()) {
        return name;
    }
    for (const auto member : {&Contact::company1, &Contact::email1, &Contact::business1, &Contact::business2,
                              &Contact::mobile1, &Contact::private1, &Contact::position, &Contact::address1}) {
        if (!(contact.*member).empty()) {
            return contact.*member;
        }
    }
    return contact.address2;
}

struct Place {
    std::string_view city;
    std::string_view postalCode;
    std::string_view country;
};

/// The Outlook layout joins what there is of city, postal code and country by colons, and drops those in front. Other
/// texts are nobody's business: they go where a reader looks first.
Place placeOf(const Contact& contact, int csvType) {
    std::vector<std::string_view> parts = split(contact.address2, ':');
    if (csvType == CSV_OUTLOOK && parts.size() < 3) {
        parts.insert(parts.begin(), 3 - parts.size(), std::string_view());
    }
    return parts.size() == 3 ? Place{parts[0], parts[1], parts[2]} : Place{contact.address2, {}, {}};
}

void addText(std::string& card, const std::string& property, const std::string& text) {
    if (!text.empty()) {
        card += foldedLine(property + ':' + escaped(text));
    }
}

std::string numberType(format::DialCode code) {
    switch (code) {
        case format::dialMobile1:
            return "cell";
        case format::dialPrivate1:
            return "home,voice";
        default:
            return "work,voice";
    }
}

void addNumbers(std::string& card, const Contact& contact) {
    for (const ContactNumber& number : contactNumbers) {
        const std::string preferred = number.dialCode == contact.defaultDial ? ";PREF=1" : "";
        addText(card, "TEL;TYPE=" + numberType(number.dialCode) + preferred, contact.*number.member);
    }
}

void addAddress(std::string& card, const Contact& contact, int csvType) {
    if (contact.address1.empty() && contact.address2.empty()) {
        return;
    }
    const Place place = placeOf(contact, csvType);
    // Post office box, extension, street, city, region, postal code, country.
    card += foldedLine("ADR;TYPE=work:;;" + escapedComponent(contact.address1) + ';' + escapedComponent(place.city) +
                       ";;" + escapedComponent(place.postalCode) + ';' + escapedComponent(place.country));
}

}  // namespace

std::string foldedLine(std::string_view line) {
    std::string folded;
    std::size_t room = longestLine;
    while (line.size() > room) {
        const std::size_t cut = wholeCharacters(line, room);
        folded.append(line.substr(0, cut)).append(lineEnd).append(" ");
        line.remove_prefix(cut);
        room = longestLine - 1;
    }
    return folded.append(line).append(lineEnd);
}

std::string toVCard(const Contact& contact, int csvType) {
    std::string card;
    card += foldedLine("BEGIN:VCARD");
    card += foldedLine("VERSION:4.0");
    card += foldedLine("FN:" + escaped(formattedName(contact)));
    if (!contact.lastName.empty() || !contact.firstName.empty()) {
        card +=
            foldedLine("N:" + escapedComponent(contact.lastName) + ';' + escapedComponent(contact.firstName) + ";;;");
    }
    if (!contact.company1.empty()) {
        card += foldedLine("ORG:" + escapedComponent(contact.company1));
    }
    addText(card, "TITLE", contact.position);
    addNumbers(card, contact);
    addText(card, "EMAIL", contact.email1);
    addAddress(card, contact, csvType);
    card += foldedLine("END:VCARD");
    return card;
}

}  // namespace calljournal
