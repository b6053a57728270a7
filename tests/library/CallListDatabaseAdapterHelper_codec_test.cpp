#include <gtest/gtest.h>
#include <list>
#include <string>
#include <vector>

#include "FakePlatform.h"
#include "Kinds.h"

/// What the codecs of all four kinds have in common.
namespace {

template <class Kind>
class CodecOfKind : public ::testing::Test {
protected:
    CodecOfKind() { fakePlatform().reset(); }
};

TYPED_TEST_SUITE(CodecOfKind, AllKinds, KindNames);

TYPED_TEST(CodecOfKind, AppendsTheBodyOrReturnsIt) {
    const auto item = filledItem<TypeParam>();
    std::string out = "before";

    TypeParam::encodeTo(item, out, false);

    EXPECT_EQ(out, "before" + TypeParam::encode(item, false));
    out = "before";
    TypeParam::encodeTo(item, out, true);
    EXPECT_EQ(out, "before<UniqueId>the UniqueId</UniqueId>");
}

TYPED_TEST(CodecOfKind, AppendsTheLogList) {
    typename TypeParam::Item item;
    std::string out = "before";

    TypeParam::encodeCalls(item, out);

    EXPECT_EQ(out, "before<LogList></LogList>");
}

TYPED_TEST(CodecOfKind, WritesOnlyTheUniqueIdForADeletion) {
    EXPECT_EQ(TypeParam::encode(filledItem<TypeParam>(), true), "<UniqueId>the UniqueId</UniqueId>");
}

TYPED_TEST(CodecOfKind, DropsColonsFromTheUniqueId) {
    const struct {
        const char* id;
        const char* element;
    } rows[] = {
        {"a:b::c", "<UniqueId>abc</UniqueId>"}, {":a:", "<UniqueId>a</UniqueId>"}, {":", ""}, {"::::", ""}, {"", ""},
        {"a;b", "<UniqueId>a;b</UniqueId>"}};

    for (const auto& row : rows) {
        typename TypeParam::Item item;
        item.setUniqueId(row.id);
        EXPECT_EQ(TypeParam::encode(item, true), row.element) << row.id;
        EXPECT_EQ(TypeParam::encode(item, false), row.element + TypeParam::encode(typename TypeParam::Item(), false))
            << row.id;
        EXPECT_EQ(item.getUniqueId(), row.id);
    }
}

TYPED_TEST(CodecOfKind, EscapesTheNamesOfTheEntryAndNothingElse) {
    typename TypeParam::Item item;
    typename TypeParam::Info call;
    item.setSurname("A<B>&\"'");
    item.setFirstname("&amp;");
    item.setEntryId("<&");
    item.setPictureClip("<&>");
    item.setUniqueId("&<");
    call.connectedSurname = "A<B";
    call.number = "1&2";
    item.addCallInfoToList(call);

    const std::string body = TypeParam::encode(item, false);

    for (const char* const part :
         {"<UniqueId>&<</UniqueId><EntryId><&</EntryId><Surname>A&lt;B&gt;&amp;&quot;&apos;</Surname>"
          "<Firstname>&amp;amp;</Firstname>",
          "<&></Picture", "<ConnectedSurname>A<B</ConnectedSurname>", "<Number>1&2</Number>"}) {
        EXPECT_NE(body.find(part), std::string::npos) << part << " in " << body;
    }
}

TYPED_TEST(CodecOfKind, ReadsBackNamesWithMarkup) {
    typename TypeParam::Item item;
    typename TypeParam::Info call;
    item.setSurname("A<B");
    item.setFirstname("Tom & </Firstname>");
    call.connectedSurname = "A<B";
    item.addCallInfoToList(call);
    typename TypeParam::Item copy;

    TypeParam::decode(TypeParam::encode(item, false).c_str(), copy);

    EXPECT_EQ(copy.getSurname(), "A<B");
    EXPECT_EQ(copy.getFirstname(), "Tom & </Firstname>");
    ASSERT_EQ(TypeParam::calls(copy).size(), 1u);
    EXPECT_EQ(TypeParam::calls(copy).front().connectedSurname, "A<B");
}

TYPED_TEST(CodecOfKind, WritesCallsInTheirOrderHoweverMany) {
    const auto item = TypeParam::make("", "", "", callsWithNumbers<TypeParam>(1, 12));
    std::list<typename TypeParam::Info> calls;
    std::string out;

    TypeParam::encodeCalls(item, out);
    EXPECT_TRUE(TypeParam::decodeCalls(out.c_str(), calls));

    EXPECT_EQ(numbers<TypeParam>(TypeParam::make("", "", "", calls)), numbers<TypeParam>(item));
    EXPECT_EQ(TypeParam::calls(item).size(), 12u);
}

TYPED_TEST(CodecOfKind, WritesAndReadsTextsOfEveryLength) {
    std::vector<std::size_t> lengths{100, 255, 256, 257, 1000, 1400, 1500, 1600, 3000, 100000};
    for (std::size_t length = 1; length <= 40; ++length) {
        lengths.push_back(length);
    }
    for (const std::size_t length : lengths) {
        SCOPED_TRACE(length);
        typename TypeParam::Info first = filledCall<TypeParam>();
        first.number = std::string(length, '1');
        first.connectedNumber = std::string(length / 2, '2') + "3";
        typename TypeParam::Info second = filledCall<TypeParam>();
        second.timeDate = std::string(length, '4');
        auto item = TypeParam::make(std::string(length, 'e'), std::string(length, 's'), "", {first, second, first});
        item.setPictureClip(std::string(length, 'p'));

        const std::string body = TypeParam::encode(item, false);
        typename TypeParam::Item read;
        TypeParam::decode(body.c_str(), read);

        EXPECT_TRUE(body == rules::encodeItem(TypeParam::format(), describeEntry<TypeParam>(item), false));
        std::string callsRead;
        std::string callsWritten;
        TypeParam::encodeCalls(read, callsRead);
        TypeParam::encodeCalls(item, callsWritten);
        EXPECT_TRUE(callsRead == callsWritten);
    }
}

TYPED_TEST(CodecOfKind, WritesEachEnumerationAsItsWordAlsoOutsideItsTable) {
    for (const auto& row : TypeParam::infoMembers()) {
        if (row.form == rules::Form::text || row.form == rules::Form::flag) {
            continue;
        }
        for (int value = -2; value <= 12; ++value) {
            typename TypeParam::Info call;
            row.set(call, std::to_string(value));
            const auto item = TypeParam::make("", "", "", {call});
            EXPECT_EQ(TypeParam::encode(item, false),
                      rules::encodeItem(TypeParam::format(), describeEntry<TypeParam>(item), false))
                << row.name << " " << value;
        }
    }
}

TYPED_TEST(CodecOfKind, GivesBackWhatItCarriesAndDefaultsForTheRest) {
    const auto item = filledItem<TypeParam>();
    typename TypeParam::Item copy;
    rules::Entry expected = describeEntry<TypeParam>(item);
    const rules::Members fresh = describeCall<TypeParam>(typename TypeParam::Info());
    for (rules::Members& call : expected.calls) {
        for (auto& [name, value] : call) {
            bool isCarried = false;
            for (const rules::Element& element : TypeParam::format().callRead) {
                isCarried = isCarried || element.tag == name;
            }
            value = isCarried ? value : fresh.at(name);
        }
    }
    bool readsItsPicture = true;
    for (const rules::Element& element : TypeParam::format().itemWritten) {
        readsItsPicture = readsItsPicture && element.tag != "Picture";
    }
    expected.item["PictureClip"] = readsItsPicture ? expected.item["PictureClip"] : "";

    TypeParam::decode(TypeParam::encode(item, false).c_str(), copy);

    EXPECT_EQ(describeEntry<TypeParam>(copy), expected);
}

TYPED_TEST(CodecOfKind, WritesAgainWhatItHasRead) {
    typename TypeParam::Item copy;
    const std::string body = TypeParam::encode(filledItem<TypeParam>(), false);
    TypeParam::decode(body.c_str(), copy);
    copy.setPictureClip("the PictureClip");

    EXPECT_EQ(TypeParam::encode(copy, false), body);
}

TYPED_TEST(CodecOfKind, OverwritesEveryCarriedMemberOfACallAndKeepsTheRest) {
    auto call = filledCall<TypeParam>();
    rules::Members expected = describeCall<TypeParam>(call);
    for (const rules::Element& element : TypeParam::format().callRead) {
        expected[element.tag] = element.form == rules::Form::text ? "" : "0";
    }

    TypeParam::decodeCall("", call);

    EXPECT_EQ(describeCall<TypeParam>(call), expected);
    EXPECT_EQ(call.reference, "the reference");
}

TYPED_TEST(CodecOfKind, ReadsEachMemberOfACallOnItsOwn) {
    for (const rules::Element& element : TypeParam::format().callRead) {
        for (const char* const text : {"some text", "True", "PRIVATE", "ALLOWED", "FORM_PM", "OUT_BUSY", "IN_BUSY",
                                       "TRANSFER_GROUP_NUMBER", "", "&amp;&lt;", "&amp;amp;"}) {
            const std::string xml = "<" + element.tag + ">" + text + "</" + element.tag + ">";
            typename TypeParam::Info call;
            rules::Members expected = describeCall<TypeParam>(call);
            rules::decodeCall(TypeParam::format(), xml, expected);
            TypeParam::decodeCall(xml.c_str(), call);
            EXPECT_EQ(describeCall<TypeParam>(call), expected) << xml;
        }
    }
}

TYPED_TEST(CodecOfKind, FindsMembersInAnyOrderButNotBehindTheCursor) {
    typename TypeParam::Info call;

    TypeParam::decodeCall("<TimeDate>now</TimeDate><NumberType>MOBILE</NumberType><Number>1</Number>", call);
    EXPECT_EQ(call.number, "1");
    EXPECT_EQ(static_cast<int>(call.numberType), 4);
    EXPECT_EQ(call.timeDate, "now");

    // The number is found at the cursor, which then stands behind the second type.
    TypeParam::decodeCall("<Number>1<NumberType>MOBILE</NumberType></Number><NumberType>PRIVATE</NumberType>", call);
    EXPECT_EQ(call.number, "1<NumberType>MOBILE</NumberType>");
    EXPECT_EQ(static_cast<int>(call.numberType), 1);
}

TYPED_TEST(CodecOfKind, UnescapesAValueOnceWithTheListAndOnceByItself) {
    std::list<typename TypeParam::Info> calls;

    EXPECT_TRUE(TypeParam::decodeCalls("<LogList><Item><Number>&amp;lt;</Number></Item></LogList>", calls));

    EXPECT_EQ(calls.front().number, "<");
    typename TypeParam::Info call;
    TypeParam::decodeCall("<Number>&amp;lt;</Number>", call);
    EXPECT_EQ(call.number, "&lt;");
}

struct ListRow {
    const char* story;
    const char* xml;
    std::vector<std::string> numbers;
};

const std::vector<ListRow>& listRows() {
    static const std::vector<ListRow> rows = {
        {"no list", "<Item><Number>1</Number></Item>", {}},
        {"an empty list", "<LogList></LogList>", {}},
        {"an unfinished list", "<LogList><Item><Number>1</Number></Item>", {}},
        {"one call", "<LogList><Item><Number>1</Number></Item></LogList>", {"1"}},
        {"two calls", "<LogList><Item><Number>1</Number></Item><Item><Number>2</Number></Item></LogList>", {"1", "2"}},
        {"text between the calls",
         "<LogList>a<Item><Number>1</Number></Item>b<Item><Number>2</Number></Item>c</LogList>",
         {"1", "2"}},
        {"an empty call stops the scan", "<LogList><Item></Item><Item><Number>1</Number></Item></LogList>", {}},
        {"an empty call behind one",
         "<LogList><Item><Number>1</Number></Item><Item></Item><Item><Number>2</Number></Item></LogList>",
         {"1"}},
        {"a call of a blank has no number",
         "<LogList><Item> </Item><Item><Number>1</Number></Item></LogList>",
         {"", "1"}},
        {"a stray close tag stops the scan", "<LogList></Item><Item><Number>1</Number></Item></LogList>", {}},
        {"a stray close tag behind a call stops it too",
         "<LogList><Item><Number>1</Number></Item></Item><Item><Number>2</Number></Item></LogList>",
         {"1"}},
        {"a close tag but no open tag left", "<LogList><Item><Number>1</Number></Item>abcdef</Item></LogList>", {"1"}},
        {"what is behind a lone close tag makes an open tag when it is repeated",
         "<LogList>abcde<Number>1</Number></Item>em>x<It</LogList>",
         {"1"}},
        {"the same behind a call",
         "<LogList>ab<Item><Number>1</Number></Item>cde<Number>2</Number></Item>em>x<It</LogList>",
         {"1", "2"}},
        {"a lone close tag behind six bytes, the first five of which do not count",
         "<LogList>abcde </Item>Item>x<</LogList>",
         {""}},
        {"a lone close tag behind five bytes", "<LogList>abcde</Item>Item>x<</LogList>", {}},
        {"a lone close tag behind a call and five bytes",
         "<LogList>ab<Item><Number>1</Number></Item>cde</Item>Item>x<</LogList>",
         {"1"}},
        {"a lone close tag with one close tag behind it",
         "<LogList>abcde<Number>1</Number></Item>m></Item><Ite</LogList>",
         {"1"}},
        {"a call without an end", "<LogList><Item><Number>1</Number></Item><Item><Number>2</Number></LogList>", {"1"}},
        {"a call inside a call takes the first end",
         "<LogList><Item><Number>1</Number><Item><Number>2</Number></Item><Number>3</Number></Item></LogList>",
         {"1"}},
        {"a cut joins a tag",
         "<LogList><It<Item><Number>1</Number></Item>em><Number>2</Number></Item></LogList>",
         {"1", "2"}},
        {"a cut joins a tag twice",
         "<LogList><It<I<Item><Number>1</Number></Item>tem><Number>2</Number></Item>em><Number>3</Number></Item>"
         "</LogList>",
         {"1", "2", "3"}},
        {"a cut joins a close tag",
         "<LogList><Item>a</It<Item>b</Item>em><Item><Number>2</Number></Item></LogList>",
         {"", "2"}},
        {"tags that unescaping makes", "<LogList>&lt;Item&gt;<Number>1</Number>&lt;/Item&gt;</LogList>", {"1"}},
        {"tags escaped twice stay text",
         "<LogList><Item><Number>1</Number>&amp;lt;/Item&amp;gt;</Item></LogList>",
         {"1"}},
        {"tags escaped twice make no call", "<LogList>&amp;lt;Item&amp;gt;a&amp;lt;/Item&amp;gt;</LogList>", {}},
        {"an escaped end of the list does not end it",
         "<LogList><Item><Number>1&lt;/LogList&gt;</Number></Item></LogList>",
         {"1</LogList>"}},
        {"of two lists the first",
         "<LogList><Item><Number>1</Number></Item></LogList><LogList><Item><Number>2</Number></Item></LogList>",
         {"1"}},
        {"of two lists the first, though it is empty",
         "<LogList></LogList><LogList><Item><Number>2</Number></Item></LogList>",
         {}},
        {"a list inside the list ends it early",
         "<LogList><LogList><Item><Number>1</Number></Item></LogList><Item><Number>2</Number></Item></LogList>",
         {"1"}},
        {"eleven calls are all read",
         "<LogList><Item>a</Item><Item>a</Item><Item>a</Item><Item>a</Item><Item>a</Item><Item>a</Item><Item>a</Item>"
         "<Item>a</Item><Item>a</Item><Item>a</Item><Item>a</Item></LogList>",
         {"", "", "", "", "", "", "", "", "", "", ""}},
        {"names that begin alike", "<LogList><Items>a</Items><Item><Numbers>1</Numbers></Item></LogList>", {""}},
    };
    return rows;
}

TYPED_TEST(CodecOfKind, ReadsTheCallsOfTheFirstLogList) {
    for (const ListRow& row : listRows()) {
        std::list<typename TypeParam::Info> calls = {filledCall<TypeParam>()};
        std::vector<rules::Members> expected;
        EXPECT_EQ(TypeParam::decodeCalls(row.xml, calls), !row.numbers.empty()) << row.story;
        EXPECT_EQ(numbers<TypeParam>(TypeParam::make("", "", "", calls)), row.numbers) << row.story;

        rules::decodeCalls(TypeParam::format(), row.xml, describeCall<TypeParam>(typename TypeParam::Info()), expected);
        EXPECT_EQ(describeCalls<TypeParam>(calls), expected) << row.story;
    }
}

TYPED_TEST(CodecOfKind, KeepsTheCallsOfAnEntryWhenTheBodyHasNone) {
    for (const char* const body :
         {"", "<LogList></LogList>", "<LogList><Item></Item></LogList>", "<LogList><Item><Number>9</Number></Item>"}) {
        auto item = TypeParam::make("7", "Smith", "Ann", callsWithNumbers<TypeParam>(1, 2));
        TypeParam::decode(body, item);
        EXPECT_EQ(numbers<TypeParam>(item), (std::vector<std::string>{"1", "2"})) << body;
        EXPECT_EQ(item.getSurname(), "") << body;
    }
}

TYPED_TEST(CodecOfKind, ReplacesTheCallsOfAnEntryByThoseOfTheBody) {
    auto item = TypeParam::make("7", "Smith", "Ann", callsWithNumbers<TypeParam>(1, 2));

    TypeParam::decode("<LogList><Item><Number>9</Number></Item></LogList>", item);

    EXPECT_EQ(numbers<TypeParam>(item), std::vector<std::string>{"9"});
}

TYPED_TEST(CodecOfKind, OverwritesEveryMemberOfTheEntry) {
    auto item = filledItem<TypeParam>();

    TypeParam::decode("", item);

    EXPECT_EQ(describe(item, TypeParam::itemMembers()), describe(typename TypeParam::Item(), TypeParam::itemMembers()));
}

TYPED_TEST(CodecOfKind, LooksForTheLogListFromTheCursorOn) {
    // The surname stands at the cursor, so the list inside it is passed by.
    typename TypeParam::Item item;
    TypeParam::decode(
        "<Surname><LogList><Item><Number>1</Number></Item></LogList></Surname>"
        "<LogList><Item><Number>2</Number></Item></LogList>",
        item);
    EXPECT_EQ(numbers<TypeParam>(item), std::vector<std::string>{"2"});

    // Here it does not, and the cursor stays in front of it.
    TypeParam::decode(
        "?<Surname><LogList><Item><Number>1</Number></Item></LogList></Surname>"
        "<LogList><Item><Number>2</Number></Item></LogList>",
        item);
    EXPECT_EQ(numbers<TypeParam>(item), std::vector<std::string>{"1"});
}

TYPED_TEST(CodecOfKind, DoesNotTakeElementsOfOneKindOfEntryForAnother) {
    typename TypeParam::Item item;
    rules::Entry expected = describeEntry<TypeParam>(item);
    const std::string xml =
        "<UniqueId>1</UniqueId><EntryId>2</EntryId><Surname>&amp;lt;</Surname><Firstname>4</Firstname>"
        "<Picture>5</Picture><PictureClip>6</PictureClip><Viewed>True</Viewed><JSGroupBy>8</JSGroupBy>";

    TypeParam::decode(xml.c_str(), item);
    rules::decodeItem(TypeParam::format(), xml, {}, expected);

    EXPECT_EQ(describeEntry<TypeParam>(item), expected);
    EXPECT_EQ(item.getSurname(), "&lt;");
    EXPECT_EQ(item.getPictureClip(), "6");
}

TYPED_TEST(CodecOfKind, ReadsABodyCutAtAnyByteByTheSameRules) {
    const std::string body = TypeParam::encode(filledItem<TypeParam>(), false);
    const rules::Members fresh = describeCall<TypeParam>(typename TypeParam::Info());

    for (std::size_t length = 0; length <= body.size(); ++length) {
        const std::string cut = body.substr(0, length);
        auto item = filledItem<TypeParam>();
        rules::Entry expected = describeEntry<TypeParam>(item);
        TypeParam::decode(cut.c_str(), item);
        rules::decodeItem(TypeParam::format(), cut, fresh, expected);
        ASSERT_EQ(describeEntry<TypeParam>(item), expected) << cut;
    }
}

TYPED_TEST(CodecOfKind, ReadsABodyFromAnyByteByTheSameRules) {
    const std::string body = TypeParam::encode(filledItem<TypeParam>(), false);
    const rules::Members fresh = describeCall<TypeParam>(typename TypeParam::Info());

    for (std::size_t start = 0; start <= body.size(); ++start) {
        const std::string cut = body.substr(start);
        typename TypeParam::Info call;
        rules::Members expected = fresh;
        TypeParam::decodeCall(cut.c_str(), call);
        rules::decodeCall(TypeParam::format(), cut, expected);
        ASSERT_EQ(describeCall<TypeParam>(call), expected) << cut;

        std::list<typename TypeParam::Info> calls;
        std::vector<rules::Members> expectedCalls;
        const bool found = TypeParam::decodeCalls(cut.c_str(), calls);
        ASSERT_EQ(found, rules::decodeCalls(TypeParam::format(), cut, fresh, expectedCalls)) << cut;
        ASSERT_EQ(describeCalls<TypeParam>(calls), expectedCalls) << cut;
    }
}

TYPED_TEST(CodecOfKind, ReadsALongListInTimeThatGrowsWithItsLength) {
    // Cutting one element at a time out of one text would copy 20000 calls 20000 times.
    const auto item = TypeParam::make("", "", "", callsWithNumbers<TypeParam>(1, 20000));
    std::string out;
    std::list<typename TypeParam::Info> calls;

    TypeParam::encodeCalls(item, out);

    EXPECT_TRUE(TypeParam::decodeCalls(out.c_str(), calls));
    EXPECT_EQ(calls.size(), 20000u);
    EXPECT_EQ(calls.back().number, "20000");
}

TYPED_TEST(CodecOfKind, WritesNothingToTheLogButReplacedUniqueIds) {
    for (const int level : {2, 4, 5, 6}) {
        for (const char* const module :
             {"Journal Service", "CallListDatabaseAdapterHelper", "CallListDatabaseAdapter"}) {
            fakePlatform().switchOn(module, level);
        }
    }
    typename TypeParam::Item item;

    TypeParam::decode(TypeParam::encode(filledItem<TypeParam>(), false).c_str(), item);

    EXPECT_EQ(fakePlatform().logTexts(), std::vector<std::string>{});
}

}  // namespace
