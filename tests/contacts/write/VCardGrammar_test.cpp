// Reads our cards with BelCard, whose parser is built from the grammar of RFC 6350, and compares what it understood.

#include <belcard/belcard.hpp>
#include <belcard/belcard_parser.hpp>
#include <gtest/gtest.h>
#include <random>

#include "CSVType.h"
#include "ContactFields.h"
#include "Text.h"
#include "VCard.h"

namespace {

using calljournal::toVCard;

std::shared_ptr<belcard::BelCard> parsed(const Contact& contact, int csvType = CSV_OUTLOOK) {
    return belcard::BelCardParser::getInstance()->parseOne(toVCard(contact, csvType));
}

/// BelCard hands texts over as they are in the card.
std::string unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == '\\' && i + 1 < text.size();
        plain += !isEscape ? text[i] : text[++i] == 'n' ? '\n' : text[i];
    }
    return plain;
}

TEST(VCardGrammar, RefusesWhatIsNoCard) {
    const auto parser = belcard::BelCardParser::getInstance();
    EXPECT_EQ(parser->parseOne("BEGIN:VCARD\r\nVERSION:4.0\r\nFN:a\r\nTEL;x:1\r\nEND:VCARD\r\n"), nullptr);
    EXPECT_EQ(parser->parseOne("BEGIN:VCARD\r\nVERSION:4.0\r\nFN:a\r\nN:a;b\r\nEND:VCARD\r\n"), nullptr);
}

TEST(VCardGrammar, UnderstandsEveryText) {
    Contact contact;
    contact.firstName = "Anna, die Ältere";
    contact.lastName = "von; \"Schmidt\\Co\"";
    contact.business1 = "+49 30 1;ext=2";
    contact.business2 = "2";
    contact.mobile1 = "3";
    contact.private1 = "4";
    contact.email1 = "anna@example.com";
    contact.company1 = "Schmidt; Bau, KG";
    contact.position = "Chefin\nund Gründerin " + std::string(100, 'x');
    contact.address1 = "Gasse 1, Tür 4";
    contact.address2 = "Wien:1010:Austria";
    contact.defaultDial = 2;
    const auto card = parsed(contact);
    ASSERT_NE(card, nullptr);
    EXPECT_TRUE(card->assertRFCCompliance());
    EXPECT_EQ(unescaped(card->getFullName()->getValue()), calljournal::fullName(contact.firstName, contact.lastName));
    EXPECT_EQ(unescaped(card->getName()->getFamilyName()), contact.lastName);
    EXPECT_EQ(unescaped(card->getName()->getGivenName()), contact.firstName);
    ASSERT_EQ(card->getOrganizations().size(), 1u);
    EXPECT_EQ(unescaped(card->getOrganizations().front()->getValue()), contact.company1);
    EXPECT_EQ(unescaped(card->getTitles().front()->getValue()), contact.position);
    EXPECT_EQ(card->getEmails().front()->getValue(), contact.email1);
    ASSERT_EQ(card->getPhoneNumbers().size(), 4u);
    EXPECT_EQ(unescaped(card->getPhoneNumbers().front()->getValue()), contact.business1);
    EXPECT_EQ(card->getPhoneNumbers().front()->getParams().back()->getName(), "PREF");
    EXPECT_EQ(card->getPhoneNumbers().front()->getParams().back()->getValue(), "1");
    EXPECT_EQ(card->getPhoneNumbers().back()->getParams().size(), 1u);
    const auto address = card->getAddresses().front();
    EXPECT_EQ(unescaped(address->getStreet()), contact.address1);
    EXPECT_EQ(address->getLocality(), "Wien");
    EXPECT_EQ(address->getPostalCode(), "1010");
    EXPECT_EQ(address->getCountry(), "Austria");
    EXPECT_EQ(address->getPostOfficeBox() + address->getExtendedAddress() + address->getRegion(), "");
}

TEST(VCardGrammar, UnderstandsRandomContacts) {
    const std::string alphabet[] = {"a",
                                    "B",
                                    "1",
                                    " ",
                                    "\\",
                                    ",",
                                    ";",
                                    ":",
                                    "\"",
                                    "'",
                                    "\n",
                                    "\r",
                                    "\t",
                                    "ü",
                                    "€",
                                    "😀",
                                    "\xfc",
                                    "\xe2\x82",
                                    std::string(1, '\0'),
                                    "\x1f",
                                    "\x7f",
                                    "=",
                                    "+",
                                    "xxxxxxxxxx"};
    std::mt19937 random(6350);
    for (int round = 0; round < 1000; ++round) {
        Contact contact;
        for (const auto& text : calljournal::contactTexts) {
            for (std::size_t count = random() % 3 == 0 ? 0 : random() % 40; count > 0; --count) {
                contact.*text.member += alphabet[random() % std::size(alphabet)];
            }
        }
        contact.lastName += "x";
        for (const auto& number : calljournal::contactNumbers) {
            // BelCard takes a number that starts like a URI for a broken URI.
            std::string& text = contact.*number.member;
            text.insert(0, text.empty() ? "" : "+");
        }
        contact.defaultDial = static_cast<int>(random() % 5);
        const auto card = parsed(contact, round % 2 == 0 ? CSV_OUTLOOK : CSV_TAMBER);
        ASSERT_NE(card, nullptr) << "round " << round << '\n' << toVCard(contact, CSV_OUTLOOK);
        EXPECT_TRUE(card->assertRFCCompliance());
        std::size_t numbers = 0;
        for (const auto& number : calljournal::contactNumbers) {
            numbers += (contact.*number.member).empty() ? 0 : 1;
        }
        EXPECT_EQ(card->getPhoneNumbers().size(), numbers) << "round " << round;
    }
}

}  // namespace
