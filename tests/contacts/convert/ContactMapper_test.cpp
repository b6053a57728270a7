#include "ContactMapper.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <utility>

#include "ContactFields.h"

namespace calljournal {
namespace {

struct Value {
    Meaning meaning;
    const char* text;
};

/// A record whose sources are the names of the meanings.
AddressRecord recordOf(std::initializer_list<Value> values) {
    AddressRecord record;
    for (const Value& value : values) {
        record.values.add() = {value.meaning, value.text, std::string(meaningName(value.meaning))};
    }
    return record;
}

/// What a record became; it goes on to name the sources.
struct Mapped : MappedContact {
    explicit Mapped(AddressRecord from) : record(std::move(from)) {}
    AddressRecord record;
};

std::unique_ptr<Mapped> mappedFrom(std::initializer_list<Value> values, NumberStyle style = NumberStyle::keep) {
    auto mapped = std::make_unique<Mapped>(recordOf(values));
    ContactMapper(style, "DE").map(mapped->record, *mapped);
    return mapped;
}

/// The contact as "field=text", one a line, and the remarks behind it.
std::string shown(const MappedContact& mapped) {
    std::string all;
    for (const ContactText& text : contactTexts) {
        if (!(mapped.contact.*text.member).empty()) {
            all += std::string(text.name) + '=' + mapped.contact.*text.member + '\n';
        }
    }
    all += "dial " + std::to_string(mapped.contact.defaultDial) + '\n';
    for (const Remark& remark : mapped.remarks) {
        const char* kinds[] = {"changed ", "left out ", "doubtful "};
        all += kinds[remark.kind] + std::string(remark.source) + (remark.reason.empty() ? "" : ": ") + remark.reason +
               '\n';
    }
    return all;
}

TEST(ContactMapper, TakesEachFieldFromItsMeaning) {
    const auto mapped = mappedFrom({{Meaning::given, "Anna"},
                                    {Meaning::family, "Schmidt"},
                                    {Meaning::company, "Schmidt & Co"},
                                    {Meaning::jobTitle, "Head"},
                                    {Meaning::workPhone, "+49 30 2345671"},
                                    {Meaning::workPhone2, "+49 30 2345672"},
                                    {Meaning::mobile, "+49 170 2345673"},
                                    {Meaning::homePhone, "+49 30 2345674"},
                                    {Meaning::email1, "anna@example.com"},
                                    {Meaning::workStreet, "Lindenweg 1"},
                                    {Meaning::workCity, "Berlin"},
                                    {Meaning::workPostcode, "10969"},
                                    {Meaning::workCountry, "Germany"}});
    EXPECT_EQ(shown(*mapped),
              "firstName=Anna\n"
              "lastName=Schmidt\n"
              "business1=+49 30 2345671\n"
              "business2=+49 30 2345672\n"
              "mobile1=+49 170 2345673\n"
              "private1=+49 30 2345674\n"
              "email1=anna@example.com\n"
              "company1=Schmidt & Co\n"
              "position=Head\n"
              "address1=Lindenweg 1\n"
              "address2=Berlin:10969:Germany\n"
              "dial 2\n");
    EXPECT_TRUE(mapped->isJoinedAddress);
    EXPECT_EQ(mapped->contact.source, 3);
    ASSERT_EQ(mapped->taken.size(), 13u);
    EXPECT_EQ(mapped->taken[0].field, "lastName");
    EXPECT_EQ(mapped->taken[0].source, "family");
}

TEST(ContactMapper, PrefersWhatTheImporterPrefers) {
    EXPECT_EQ(shown(*mappedFrom({{Meaning::primaryPhone, "4711"}, {Meaning::workPhone, "4712"}})),
              "business1=4712\nbusiness2=4711\ndial 2\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::primaryPhone, "4711"}})), "business1=4711\ndial 2\n");
    EXPECT_EQ(
        shown(*mappedFrom({{Meaning::carPhone, "4711"}, {Meaning::mobile, "4712"}, {Meaning::homePhone, "4713"}})),
        "mobile1=4712\nprivate1=4713\ndial 4\nleft out carPhone\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::carPhone, "4711"}})), "mobile1=4711\ndial 4\n");
}

TEST(ContactMapper, FillsEmptyPlacesWithNumbersThatWouldBeLost) {
    EXPECT_EQ(
        shown(*mappedFrom({{Meaning::workPhone, "4711"}, {Meaning::workPhone, "4712"}, {Meaning::workPhone, "4713"}})),
        "business1=4711\nbusiness2=4712\ndial 2\nleft out workPhone\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::otherPhone, "4711"}})), "private1=4711\ndial 1\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::mobile, "4711"}, {Meaning::mobile, "4712"}})),
              "mobile1=4711\nprivate1=4712\ndial 4\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::email2, "a@b"}})), "email1=a@b\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::workFax, "4711"}, {Meaning::pager, "4712"}, {Meaning::family, "A"}})),
              "lastName=A\ndial 0\nleft out workFax\nleft out pager\n");
}

TEST(ContactMapper, NamesAContactByWhatThereIs) {
    EXPECT_EQ(shown(*mappedFrom({{Meaning::displayName, "Anna S."}, {Meaning::nickname, "Anni"}})),
              "lastName=Anna S.\ndial 0\nleft out nickname\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::nickname, "Anni"}})), "lastName=Anni\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::displayName, "Anna S."}, {Meaning::given, "Anna"}})),
              "firstName=Anna\ndial 0\nleft out displayName\n");
}

TEST(ContactMapper, TakesOneAddressAsAWhole) {
    EXPECT_EQ(shown(*mappedFrom({{Meaning::homeStreet, "At home 1"},
                                 {Meaning::homeCity, "Town"},
                                 {Meaning::workCity, "City"},
                                 {Meaning::workCountry, "Land"}})),
              "address2=City::Land\ndial 0\nleft out homeStreet\nleft out homeCity\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::homeStreet, "At home 1"}, {Meaning::homeStreet2, "Floor 2"}})),
              "address1=At home 1, Floor 2\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::otherCountry, "Land"}})), "address2=Land\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::workPoBox, "PO 5"}, {Meaning::workPostcode, "123"}})),
              "address1=PO 5\naddress2=123:\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::homeAddress, "Way 1\r\nTown\nLand\n"}})),
              "address1=Way 1, Town, Land\ndial 0\nchanged homeAddress: its lines were joined into one\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::workStreet, "Way 1"}, {Meaning::workAddress, "Way 1\nTown"}})),
              "address1=Way 1\ndial 0\nleft out workAddress\n");
    const auto own =
        mappedFrom({{Meaning::workStreet, "Way 1"}, {Meaning::addressLine2, "a:b"}, {Meaning::addressLine1, "c"}});
    EXPECT_EQ(shown(*own), "address1=c\naddress2=a:b\ndial 0\nleft out workStreet\n");
    EXPECT_FALSE(own->isJoinedAddress);
}

TEST(ContactMapper, WritesLinesSideBySide) {
    EXPECT_EQ(shown(*mappedFrom({{Meaning::workStreet, "\n\nFloor 2,\r\n\r\nWay 1\r\n"}, {Meaning::given, "An\nna"}})),
              "firstName=An na\naddress1=Floor 2, Way 1\ndial 0\n"
              "changed given: its lines were joined into one\nchanged workStreet: its lines were joined into one\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::workStreet, "\r\n"}, {Meaning::given, "\n"}, {Meaning::given, "Anna"}})),
              "firstName=Anna\ndial 0\nleft out workStreet\nleft out given\n");
}

TEST(ContactMapper, CutsWhereTheImporterWouldAndSaysSo) {
    const std::string longName = std::string(248, 'a') + "ü";
    EXPECT_EQ(shown(*mappedFrom({{Meaning::given, longName.c_str()}})),
              "firstName=" + std::string(248, 'a') + "\ndial 0\nchanged given: was cut to 248 of 250 bytes\n");
}

TEST(ContactMapper, WritesNumbersInTheStyleAskedFor) {
    EXPECT_EQ(shown(*mappedFrom({{Meaning::workPhone, "030 2345678"}}, NumberStyle::international)),
              "business1=+49 30 2345678\ndial 2\n"
              "changed workPhone: \"030 2345678\" was written as \"+49 30 2345678\"\n");
    EXPECT_EQ(shown(*mappedFrom({{Meaning::mobile, "none"}})),
              "mobile1=none\ndial 4\ndoubtful mobile: \"none\" is no number\n");
}

TEST(ContactMapper, DerivesTheDefaultNumberWhateverTheFileSays) {
    EXPECT_EQ(shown(*mappedFrom({{Meaning::mobile, "4711"}, {Meaning::defaultDial, "4"}})), "mobile1=4711\ndial 4\n");
    EXPECT_EQ(
        shown(*mappedFrom({{Meaning::workPhone, "4711"}, {Meaning::mobile, "4712"}, {Meaning::defaultDial, "4"}})),
        "business1=4711\nmobile1=4712\ndial 2\n"
        "changed defaultDial: \"4\" became 2: the first number is the default one\n");
}

TEST(ContactMapper, ForgetsTheRecordBefore) {
    const auto mapped = mappedFrom({{Meaning::workCity, "City"}, {Meaning::notes, "x"}});
    ContactMapper(NumberStyle::keep, "ZZ").map(AddressRecord(), *mapped);
    EXPECT_EQ(shown(*mapped), "dial 0\n");
    EXPECT_FALSE(mapped->isJoinedAddress);
    EXPECT_TRUE(mapped->taken.empty());
}

}  // namespace
}  // namespace calljournal
