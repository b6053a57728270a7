#include "VCard.h"

#include <gtest/gtest.h>
#include <string>

#include "CSVType.h"

namespace {

using calljournal::foldedLine;
using calljournal::toVCard;

/// The card's lines between version and end.
std::string bodyOf(const Contact& contact, int csvType = CSV_TAMBER) {
    const std::string card = toVCard(contact, csvType);
    const std::string begin = "BEGIN:VCARD\r\nVERSION:4.0\r\n";
    const std::string end = "END:VCARD\r\n";
    EXPECT_EQ(card.substr(0, begin.size()), begin);
    EXPECT_EQ(card.substr(card.size() - end.size()), end);
    return card.substr(begin.size(), card.size() - begin.size() - end.size());
}

Contact named(const std::string& lastName) {
    Contact contact;
    contact.lastName = lastName;
    return contact;
}

TEST(VCard, HoldsEveryText) {
    Contact contact;
    contact.firstName = "Anna";
    contact.lastName = "Schmidt";
    contact.business1 = "1";
    contact.business2 = "2";
    contact.mobile1 = "3";
    contact.private1 = "4";
    contact.email1 = "anna@example.com";
    contact.company1 = "Schmidt Bau";
    contact.position = "Chefin";
    contact.address1 = "Gasse 1";
    contact.address2 = "Wien:1010:Austria";
    contact.defaultDial = 4;
    EXPECT_EQ(toVCard(contact, CSV_OUTLOOK),
              "BEGIN:VCARD\r\n"
              "VERSION:4.0\r\n"
              "FN:Anna Schmidt\r\n"
              "N:Schmidt;Anna;;;\r\n"
              "ORG:Schmidt Bau\r\n"
              "TITLE:Chefin\r\n"
              "TEL;TYPE=work,voice:1\r\n"
              "TEL;TYPE=work,voice:2\r\n"
              "TEL;TYPE=cell;PREF=1:3\r\n"
              "TEL;TYPE=home,voice:4\r\n"
              "EMAIL:anna@example.com\r\n"
              "ADR;TYPE=work:;;Gasse 1;Wien;;1010;Austria\r\n"
              "END:VCARD\r\n");
}

TEST(VCard, IsCalledByWhatThereIs) {
    Contact contact;
    contact.address2 = "Wien::";
    EXPECT_EQ(bodyOf(contact, CSV_OUTLOOK).substr(0, 11), "FN:Wien::\r\n");
    contact.business1 = "1";
    EXPECT_EQ(bodyOf(contact, CSV_OUTLOOK).substr(0, 6), "FN:1\r\n");
    contact.company1 = "Bau";
    EXPECT_EQ(bodyOf(contact, CSV_OUTLOOK).substr(0, 8), "FN:Bau\r\n");
    contact.firstName = "Anna";
    EXPECT_EQ(bodyOf(contact, CSV_OUTLOOK).substr(0, 23), "FN:Anna\r\nN:;Anna;;;\r\nOR");
}

TEST(VCard, EscapesWhatWouldSeparate) {
    EXPECT_EQ(bodyOf(named("a\\b,c;d\ne\r\nf\rg:h\"")),
              "FN:a\\\\b\\,c;d\\ne\\nf\\ng:h\"\r\n"
              "N:a\\\\b\\,c\\;d\\ne\\nf\\ng:h\";;;;\r\n");
}

TEST(VCard, ReplacesWhatHasNoForm) {
    EXPECT_EQ(bodyOf(named("M\xfcller\x01\x7f\t!")), "FN:M\ufffdller  \t!\r\nN:M\ufffdller  \t!;;;;\r\n");
}

TEST(VCard, PutsTheColonsOfAnOutlookAddressInTheirPlaces) {
    const struct {
        const char* address2;
        int layout;
        const char* line;
    } cases[] = {
        {"Wien:1010:Austria", CSV_OUTLOOK, ";;;Wien;;1010;Austria"},
        {"Wien::", CSV_OUTLOOK, ";;;Wien;;;"},
        {"Wien::Austria", CSV_OUTLOOK, ";;;Wien;;;Austria"},
        {"1010:Austria", CSV_OUTLOOK, ";;;;;1010;Austria"},
        {"1010:", CSV_OUTLOOK, ";;;;;1010;"},
        {"Austria", CSV_OUTLOOK, ";;;;;;Austria"},
        {"a:b:c:d", CSV_OUTLOOK, ";;;a:b:c:d;;;"},
        {"Wien:1010:Austria", CSV_TAMBER, ";;;Wien;;1010;Austria"},
        {"1010 Wien", CSV_TAMBER, ";;;1010 Wien;;;"},
        {"Door: 4", CSV_TAMBER, ";;;Door: 4;;;"},
    };
    for (const auto& one : cases) {
        Contact contact = named("x");
        contact.address2 = one.address2;
        EXPECT_EQ(bodyOf(contact, one.layout), std::string("FN:x\r\nN:x;;;;\r\nADR;TYPE=work:") + one.line + "\r\n");
    }
}

TEST(VCardLine, StaysWholeUpTo75Bytes) {
    EXPECT_EQ(foldedLine(std::string(75, 'x')), std::string(75, 'x') + "\r\n");
    EXPECT_EQ(foldedLine(std::string(76, 'x')), std::string(75, 'x') + "\r\n x\r\n");
    EXPECT_EQ(foldedLine(std::string(75 + 74, 'x')), std::string(75, 'x') + "\r\n " + std::string(74, 'x') + "\r\n");
    EXPECT_EQ(foldedLine(std::string(75 + 75, 'x')),
              std::string(75, 'x') + "\r\n " + std::string(74, 'x') + "\r\n x\r\n");
}

TEST(VCardLine, IsNeverFoldedInsideACharacter) {
    for (const std::string character : {"ü", "€", "😀"}) {
        for (std::size_t before = 60; before < 80; ++before) {
            std::string text(before, 'x');
            for (int i = 0; i < 100; ++i) {
                text += character;
            }
            const std::string folded = foldedLine(text);
            std::string joined;
            std::size_t begin = 0;
            while (begin < folded.size()) {
                const std::size_t end = folded.find("\r\n", begin);
                const std::string line = folded.substr(begin, end - begin);
                EXPECT_LE(line.size(), 75u);
                EXPECT_NE(static_cast<unsigned char>(line[begin == 0 ? 0 : 1]) & 0xc0u, 0x80u);
                joined += begin == 0 ? line : line.substr(1);
                begin = end + 2;
            }
            EXPECT_EQ(joined, text);
        }
    }
}

}  // namespace
