#include "ContactMapper.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <utility>

#include "ContactFields.h"

namespace calljournal {
namespace {

struct Value {
    FieldKind kind;
    const char* text;
};

/// A record whose sources are the names of the kinds.
AddressRecord recordOf(std::initializer_list<Value> values) {
    AddressRecord record;
    for (const Value& value : values) {
        record.values.add() = {value.kind, value.text, std::string(fieldKindName(value.kind))};
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
    const auto mapped = mappedFrom({{FieldKind::given, "Anna"},
                                    {FieldKind::family, "Schmidt"},
                                    {FieldKind::company, "Schmidt & Co"},
                                    {FieldKind::jobTitle, "Head"},
                                    {FieldKind::workPhone, "+49 30 2345671"},
                                    {FieldKind::workPhone2, "+49 30 2345672"},
                                    {FieldKind::mobile, "+49 170 2345673"},
                                    {FieldKind::homePhone, "+49 30 2345674"},
                                    {FieldKind::email1, "anna@example.com"},
                                    {FieldKind::workStreet, "Lindenweg 1"},
                                    {FieldKind::workCity, "Berlin"},
                                    {FieldKind::workPostcode, "10969"},
                                    {FieldKind::workCountry, "Germany"}});
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
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::primaryPhone, "4711"}, {FieldKind::workPhone, "4712"}})),
              "business1=4712\nbusiness2=4711\ndial 2\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::primaryPhone, "4711"}})), "business1=4711\ndial 2\n");
    EXPECT_EQ(shown(*mappedFrom(
                  {{FieldKind::carPhone, "4711"}, {FieldKind::mobile, "4712"}, {FieldKind::homePhone, "4713"}})),
              "mobile1=4712\nprivate1=4713\ndial 4\nleft out carPhone\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::carPhone, "4711"}})), "mobile1=4711\ndial 4\n");
}

TEST(ContactMapper, FillsEmptyPlacesWithNumbersThatWouldBeLost) {
    EXPECT_EQ(shown(*mappedFrom(
                  {{FieldKind::workPhone, "4711"}, {FieldKind::workPhone, "4712"}, {FieldKind::workPhone, "4713"}})),
              "business1=4711\nbusiness2=4712\ndial 2\nleft out workPhone\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::otherPhone, "4711"}})), "private1=4711\ndial 1\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::mobile, "4711"}, {FieldKind::mobile, "4712"}})),
              "mobile1=4711\nprivate1=4712\ndial 4\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::email2, "a@b"}})), "email1=a@b\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::workFax, "4711"}, {FieldKind::pager, "4712"}, {FieldKind::family, "A"}})),
              "lastName=A\ndial 0\nleft out workFax\nleft out pager\n");
}

TEST(ContactMapper, NamesAContactByWhatThereIs) {
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::displayName, "Anna S."}, {FieldKind::nickname, "Anni"}})),
              "lastName=Anna S.\ndial 0\nleft out nickname\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::nickname, "Anni"}})), "lastName=Anni\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::displayName, "Anna S."}, {FieldKind::given, "Anna"}})),
              "firstName=Anna\ndial 0\nleft out displayName\n");
}

TEST(ContactMapper, TakesOneAddressAsAWhole) {
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::homeStreet, "At home 1"},
                                 {FieldKind::homeCity, "Town"},
                                 {FieldKind::workCity, "City"},
                                 {FieldKind::workCountry, "Land"}})),
              "address2=City::Land\ndial 0\nleft out homeStreet\nleft out homeCity\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::homeStreet, "At home 1"}, {FieldKind::homeStreet2, "Floor 2"}})),
              "address1=At home 1, Floor 2\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::otherCountry, "Land"}})), "address2=Land\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::workPoBox, "PO 5"}, {FieldKind::workPostcode, "123"}})),
              "address1=PO 5\naddress2=123:\ndial 0\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::homeAddress, "Way 1\r\nTown\nLand\n"}})),
              "address1=Way 1, Town, Land\ndial 0\nchanged homeAddress: its lines were joined into one\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::workStreet, "Way 1"}, {FieldKind::workAddress, "Way 1\nTown"}})),
              "address1=Way 1\ndial 0\nleft out workAddress\n");
    const auto own = mappedFrom(
        {{FieldKind::workStreet, "Way 1"}, {FieldKind::addressLine2, "a:b"}, {FieldKind::addressLine1, "c"}});
    EXPECT_EQ(shown(*own), "address1=c\naddress2=a:b\ndial 0\nleft out workStreet\n");
    EXPECT_FALSE(own->isJoinedAddress);
}

TEST(ContactMapper, WritesLinesSideBySide) {
    EXPECT_EQ(
        shown(*mappedFrom({{FieldKind::workStreet, "\n\nFloor 2,\r\n\r\nWay 1\r\n"}, {FieldKind::given, "An\nna"}})),
        "firstName=An na\naddress1=Floor 2, Way 1\ndial 0\n"
        "changed given: its lines were joined into one\nchanged workStreet: its lines were joined into one\n");
    EXPECT_EQ(
        shown(*mappedFrom({{FieldKind::workStreet, "\r\n"}, {FieldKind::given, "\n"}, {FieldKind::given, "Anna"}})),
        "firstName=Anna\ndial 0\nleft out workStreet\nleft out given\n");
}

TEST(ContactMapper, CutsWhereTheImporterWouldAndSaysSo) {
    const std::string longName = std::string(248, 'a') + "ü";
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::given, longName.c_str()}})),
              "firstName=" + std::string(248, 'a') + "\ndial 0\nchanged given: was cut to 248 of 250 bytes\n");
}

TEST(ContactMapper, WritesNumbersInTheStyleAskedFor) {
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::workPhone, "030 2345678"}}, NumberStyle::international)),
              "business1=+49 30 2345678\ndial 2\n"
              "changed workPhone: \"030 2345678\" was written as \"+49 30 2345678\"\n");
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::mobile, "none"}})),
              "mobile1=none\ndial 4\ndoubtful mobile: \"none\" is no number\n");
}

TEST(ContactMapper, DerivesTheDefaultNumberWhateverTheFileSays) {
    EXPECT_EQ(shown(*mappedFrom({{FieldKind::mobile, "4711"}, {FieldKind::defaultDial, "4"}})),
              "mobile1=4711\ndial 4\n");
    EXPECT_EQ(shown(*mappedFrom(
                  {{FieldKind::workPhone, "4711"}, {FieldKind::mobile, "4712"}, {FieldKind::defaultDial, "4"}})),
              "business1=4711\nmobile1=4712\ndial 2\n"
              "changed defaultDial: \"4\" became 2: the first number is the default one\n");
}

TEST(ContactMapper, ForgetsTheRecordBefore) {
    const auto mapped = mappedFrom({{FieldKind::workCity, "City"}, {FieldKind::notes, "x"}});
    ContactMapper(NumberStyle::keep, "ZZ").map(AddressRecord(), *mapped);
    EXPECT_EQ(shown(*mapped), "dial 0\n");
    EXPECT_FALSE(mapped->isJoinedAddress);
    EXPECT_TRUE(mapped->taken.empty());
}

}  // namespace
}  // namespace calljournal
