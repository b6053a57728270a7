#include "ContactJson.h"

#include <gtest/gtest.h>

namespace {

TEST(ContactJson, UsesTheNamesOfTheMembers) {
    Contact contact;
    contact.firstName = "Ann";
    contact.lastName = "Smith";
    contact.business1 = "1";
    contact.mobile1 = "2";
    contact.company1 = "Smith & Co";
    contact.email1 = "ann@example.com";
    contact.position = "Head";
    contact.defaultDial = 4;
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    contact.business2 = "3";
    contact.private1 = "4";
    contact.address1 = "Mill Lane";
    contact.address2 = "Leeds::";
    EXPECT_EQ(calljournal::contactJson(contact),
              R"({"firstName":"Ann","lastName":"Smith","business1":"1","business2":"3","mobile1":"2","private1":"4",)"
              R"("email1":"ann@example.com","company1":"Smith & Co","position":"Head","address1":"Mill Lane",)"
              R"("address2":"Leeds::","defaultDial":4,"source":"CSV"})");
}

TEST(ContactJson, LeavesOutEmptyTextsAndReplacesBadBytes) {
    Contact contact;
    contact.lastName = "M\xfcller\n\"";
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    EXPECT_EQ(calljournal::contactJson(contact),
              "{\"lastName\":\"M\ufffdller\\n\\\"\",\"defaultDial\":0,\"source\":\"CSV\"}");
}

}  // namespace
