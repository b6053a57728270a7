// docs/format.md says of the stored format what the library's tables and functions do.

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CallListDatabaseAdapterHelper.h"
#include "ClientUtils.h"
#include "KindDescriptor.h"
#include "Page.h"
#include "Words.h"

namespace calljournal {

namespace {

using Helper = CallListDatabaseAdapterHelper;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::Not;

const Section& section(const std::string& heading) {
    static const std::map<std::string, Section> page = readPage(FORMAT_PAGE);
    return page.at(heading);
}

const Section& sectionOf(const KindDescriptor& kind) {
    std::string heading(kind.name);
    heading[0] = static_cast<char>(heading[0] - 'a' + 'A');
    return section(kind.hasCalls() ? heading + " calls" : "Call-backs");
}

std::string code(std::string_view text) {
    return text.empty() ? "(empty)" : "`" + std::string(text) + "`";
}

const std::pair<std::string, format::Words> enumerations[] = {
    {"log target", format::targetLog},          {"presentation", format::presentation},
    {"time format", format::timeFormat},        {"number type", format::numberType},
    {"transfer type", format::transferType},    {"call-back type", format::callBackType},
    {"call-back state", format::callBackState},
};

std::string wordsOf(format::Form form) {
    return form == format::Form::asItIs ? "as it is" : form == format::Form::escaped ? "escaped" : "without colons";
}

std::string valueOf(const FieldDescriptor& field) {
    if (field.type == ValueType::flag) {
        return "`True` or `False`";
    }
    const auto enumeration = std::find_if(std::begin(enumerations), std::end(enumerations), [&](const auto& one) {
        return field.type == ValueType::word && one.second.begin == field.words.begin;
    });
    return enumeration == std::end(enumerations) ? "text " + wordsOf(field.form) : enumeration->first + " word";
}

std::vector<Row> rowsOf(const std::vector<FieldDescriptor>& fields) {
    std::vector<Row> rows;
    for (const FieldDescriptor& field : fields) {
        const std::string readAs = field.readAs == field.writtenAs ? "" : " (" + code(field.readAs) + ")";
        const char* const times = field.unescapes == 0 ? "never" : field.unescapes == 1 ? "once" : "twice";
        rows.push_back({std::to_string(rows.size() + 1), code(field.writtenAs) + readAs, valueOf(field),
                        field.isAlwaysWritten() ? "always" : "not empty", times});
    }
    return rows;
}

TEST(FormatPage, ListsTheElementsOfEachKind) {
    for (const KindDescriptor& kind : kindDescriptors()) {
        std::vector<std::vector<Row>> expected = {rowsOf(kind.fields)};
        if (kind.hasCalls()) {
            const std::string number = std::to_string(kind.fields.size() + 1);
            expected[0].push_back({number, "`LogList`", "one `Item` a call", "always", "once"});
            expected.push_back(rowsOf(kind.callFields));
        }
        EXPECT_EQ(sectionOf(kind).tables, expected) << kind.name;
    }
}

TEST(FormatPage, SaysWhereAKindIsReadInAnotherOrder) {
    for (const KindDescriptor& kind : kindDescriptors()) {
        for (std::size_t i = 0; i + 1 < kind.callFields.size(); ++i) {
            const std::string sentence = "The decoder looks for " + code(kind.callFields[i + 1].readAs) + " before " +
                                         code(kind.callFields[i].readAs);
            const bool isSaid = sectionOf(kind).text.find(sentence) != std::string::npos;
            EXPECT_EQ(isSaid, kind.callFields[i].readRank > kind.callFields[i + 1].readRank)
                << kind.name << ": " << sentence;
        }
    }
}

TEST(FormatPage, NamesSchemaAndMethodOfEachKind) {
    std::vector<Row> expected;
    for (const KindDescriptor& kind : kindDescriptors()) {
        expected.push_back(
            {std::string(kind.name), code(kind.schema), kind.updateMethod.empty() ? "none" : code(kind.updateMethod)});
    }
    EXPECT_EQ(section("Envelope").tables.at(0), expected);
}

TEST(FormatPage, ListsTheWordsOfEachEnumeration) {
    for (const auto& [title, words] : enumerations) {
        std::vector<Row> expected;
        std::string rule = "Any other value is written as " + code(words.begin->word) + ", any other word is read as " +
                           std::to_string(words.begin->value) + ".";
        for (const format::Word* word = words.begin; word != words.end; ++word) {
            if (word->word.empty()) {
                rule += " An empty or absent one is read as " + std::to_string(word->value) + ".";
            } else {
                expected.push_back({std::to_string(word->value), code(word->word)});
            }
        }
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(section(title).tables.at(0), expected) << title;
        EXPECT_THAT(section(title).text, HasSubstr("\n" + rule + "\n"));
    }
}

/// Values as the library writes them, by what the descriptors say.
std::string written(const std::vector<FieldDescriptor>& fields, const std::vector<std::string>& values) {
    std::string text;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string value =
            fields[i].form == format::Form::escaped ? ClientUtils::escapeXMLString(values[i]) : values[i];
        if (fields[i].isAlwaysWritten() || !value.empty()) {
            text += Helper::createXMLField(std::string(fields[i].writtenAs).c_str(), value);
        }
    }
    return text;
}

TEST(FormatPage, ShowsAnEntryOfEachKindAsItIsWritten) {
    for (const KindDescriptor& kind : kindDescriptors()) {
        const std::string example = sectionOf(kind).examples.at(0);
        std::string served = example;  // with the picture where its reader looks for it
        for (std::size_t at = served.find("Picture>"); at != std::string::npos; at = served.find("Picture>", at)) {
            served.replace(at, 7, "PictureClip");
        }
        const EntryValues values = kind.decode(served.c_str());
        std::string expected = written(kind.fields, values.fields);
        if (kind.hasCalls()) {
            ASSERT_EQ(values.calls.size(), 1u) << kind.name;
            expected += "<LogList><Item>" + written(kind.callFields, values.calls[0]) + "</Item></LogList>";
        }
        EXPECT_EQ(example, expected);
    }
}

TEST(FormatPage, ShowsARequestAndNotificationsAsTheyAreSent) {
    MissedCallItem missed;
    missed.setUniqueId("7");
    std::string request = Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST) +
                          Helper::createXMLField(Helper::ENTRY, Helper::createXMLMissedCallItemBody(missed, false));
    Helper::addXMLHeaderFooter(request, Helper::DAS_CALLLOGMISSEDCALLS);
    EXPECT_EQ(section("Envelope").examples.at(0), request);

    ForwardedCallItem forwarded;
    Helper::parseXMLForwardedCallItem(section("Forwarded calls").examples.at(0).c_str(), forwarded);
    const std::string update =
        Helper::obsReqForwardedCallsUpdate(forwarded, "1234", JournalServiceObserverIfc::DELETED);
    EXPECT_THAT(section("Notifications").examples, ElementsAreArray({update, Helper::obsReqMissedCallsCountUpdate(3)}));
}

/// What the decoder makes of a value that the encoder wrote, as the page shows it.
std::string comesBack(const std::string& what, const std::string& value) {
    using Party = CallItemWithPicture;
    struct Text {
        void (Party::*set)(const std::string&);
        const std::string& (Party::*get)() const;
    };
    static const std::map<std::string, Text> texts = {
        {"unique id", {&Party::setUniqueId, &Party::getUniqueId}},
        {"entry id", {&Party::setEntryId, &Party::getEntryId}},
        {"surname", {&Party::setSurname, &Party::getSurname}},
        {"picture of a missed call", {&Party::setPictureClip, &Party::getPictureClip}},
        {"picture of another call", {&Party::setPictureClip, &Party::getPictureClip}},
    };
    if (what == "picture of a missed call") {
        MissedCallItem item;
        item.setPictureClip(value);
        MissedCallItem copy;
        Helper::parseXMLMissedCallItem(Helper::createXMLMissedCallItemBody(item, false).c_str(), copy);
        return code(copy.getPictureClip());
    }
    const bool isOfCall = what == "text of a call";
    ReceivedCallItem item;
    ReceivedCallItem::ReceivedCallInfo call;
    if (isOfCall) {
        call.number = value;
    } else {
        (item.*texts.at(what).set)(value);
    }
    item.addCallInfoToList(call);
    ReceivedCallItem copy;
    Helper::parseXMLReceivedCallItem(Helper::createXMLReceivedCallItemBody(item, false).c_str(), copy);
    const auto& calls = copy.getReceivedCallInfoList();
    return isOfCall && calls.empty() ? "no call at all"
                                     : code(isOfCall ? calls.front().number : (copy.*texts.at(what).get)());
}

TEST(FormatPage, SaysWhatComesBackOfEachValue) {
    for (const Row& row : section("What does not survive").tables.at(0)) {
        EXPECT_EQ(row.at(2), comesBack(row.at(0), row.at(1).substr(1, row.at(1).size() - 2))) << row.at(0);
    }
}

TEST(FormatPage, CallsNoMemberLostThatIsCarried) {
    const std::string& text = section("What does not survive").text;
    for (const KindDescriptor& kind : kindDescriptors()) {
        const std::size_t begin = text.find("\n- " + std::string(kind.name) + ": ");
        ASSERT_EQ(begin != std::string::npos, kind.hasCalls()) << kind.name;
        for (const FieldDescriptor& field : kind.callFields) {
            std::string member = code(field.readAs);
            member[1] = static_cast<char>(member[1] - 'A' + 'a');
            EXPECT_THAT(text.substr(begin, text.find("\n- ", begin + 1) - begin), Not(HasSubstr(member))) << kind.name;
        }
    }
}

}  // namespace

}  // namespace calljournal
