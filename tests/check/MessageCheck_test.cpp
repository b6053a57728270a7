#include "MessageCheck.h"

#include <gtest/gtest.h>
#include <random>

#include "CallKinds.h"
#include "CallListDatabaseAdapterHelper.h"
#include "Kinds.h"
#include "Message.h"
#include "Rounds.h"

namespace calljournal {

namespace {

/// An item of a kind with something in each text and two calls.
template <class Item>
Item fullItem() {
    using Kind = format::CallKind<Item>;
    Item item;
    item.setUniqueId("12");
    item.setEntryId("7");
    item.setSurname("Smith & Co");
    item.setFirstname("Ann");
    typename Kind::Call call;
    for (const auto& field : Kind::callFields) {
        if (const auto* text = std::get_if<0>(&field.member)) {
            call.*(*text) = "0301234";
        }
    }
    (item.*Kind::setCalls)({call, call});
    return item;
}

/// A request, a reply and a notification of each kind.
std::vector<std::string> messages() {
    using Helper = CallListDatabaseAdapterHelper;
    std::vector<std::string> all;
    forEachCallLog([&](auto type) {
        using Item = typename decltype(type)::Item;
        const Item item = fullItem<Item>();
        const std::string entry = Helper::createXMLField(Helper::ENTRY, KindInterface<Item>::encode(item));
        const std::string schema(format::CallKind<Item>::schema);
        std::string request = Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST) + entry;
        std::string reply = entry;
        Helper::addXMLHeaderFooter(request, schema);
        Helper::addXMLHeaderFooter(reply, schema);
        all.push_back(request);
        all.push_back(reply);
        all.push_back(KindInterface<Item>::update(item, "12", JournalServiceObserverIfc::CHANGED));
    });
    return all;
}

std::string raw(std::string_view value, ValueUse) {
    return std::string(value);
}

std::string linesOf(const std::vector<Finding>& findings) {
    std::string lines;
    for (const Finding& finding : findings) {
        lines += std::to_string(finding.place.at) + ": " + sentenceOf(finding, &raw) + "\n";
    }
    return lines;
}

/// Everything that is reported lies in the text and in its order.
void expectPlacesInOrder(const std::string& text, const CheckedMessage& checked) {
    std::size_t before = 0;
    for (const Finding& finding : checked.findings) {
        EXPECT_LE(before, finding.place.at);
        EXPECT_LE(finding.place.at, text.size());
        before = finding.place.at;
        EXPECT_NE(sentenceOf(finding, &raw), "");
    }
}

TEST(MessageCheck, FindsNothingInMessagesOfEachKind) {
    for (const std::string& message : messages()) {
        EXPECT_EQ(linesOf(checkMessage(message, "").findings), "") << message;
    }
}

TEST(MessageCheck, FindsEachCutOfARequestReplyOrNotification) {
    for (const std::string& message : messages()) {
        for (std::size_t length = 0; length < message.size(); ++length) {
            const std::string cut = message.substr(0, length);
            const CheckedMessage checked = checkMessage(cut, "");
            EXPECT_NE(checked.findings.size(), 0u) << cut;
            expectPlacesInOrder(cut, checked);
        }
    }
}

TEST(MessageCheck, FindsWhatIsWrongFromEachPlaceOn) {
    for (const std::string& message : messages()) {
        for (std::size_t length = 1; length < message.size(); ++length) {
            const std::string rest = message.substr(length);
            expectPlacesInOrder(rest, checkMessage(rest, ""));
        }
    }
}

TEST(MessageCheck, TakesAnyText) {
    constexpr unsigned seed = 20240501;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::vector<std::string> all = messages();
    const std::vector<std::string> pieces = {"<",
                                             ">",
                                             "&",
                                             "&lt;",
                                             "<Item>",
                                             "</Item>",
                                             "<Entry>",
                                             "</Entry>",
                                             "<LogList>",
                                             "</LogList>",
                                             "</Schema>",
                                             "<Picture>",
                                             "<Schema name=\"CallLog\">",
                                             "<Category>X</Category>",
                                             "\n",
                                             std::string(1, '\0'),
                                             "\x80",
                                             "<a b='c'/>",
                                             "<Item></Item>"};
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    for (unsigned round = 0; round < rounds(20000); ++round) {
        std::string text = all[below(all.size())];
        for (std::size_t change = below(6); change < 6; ++change) {
            const std::size_t at = below(text.size());
            switch (below(3)) {
                case 0:
                    text.insert(at, pieces[below(pieces.size())]);
                    break;
                case 1:
                    text.erase(at, 1 + below(30));
                    break;
                default:
                    text.insert(at, text.substr(below(text.size()), below(60)));
                    break;
            }
            if (text.empty()) {
                text = "<";
            }
        }
        const CheckedMessage checked = checkMessage(text, round % 2 == 0 ? "" : "dialled");
        expectPlacesInOrder(text, checked);
    }
}

TEST(MessageCheck, NestsAsDeepAsTheTextDoes) {
    std::string deep;
    for (int i = 0; i < 100000; ++i) {
        deep += "<a>";
    }
    EXPECT_EQ(checkMessage("<Viewed>True</Viewed>" + deep, "").findings.size(), 100001u);
}

TEST(KindDescriptor, HasARowForEachElementThatAnEncoderWrites) {
    for (const std::string& text : messages()) {
        const Message message = messageOf(text, "");
        ASSERT_NE(message.kind, nullptr);
        std::string written;
        for (const FieldDescriptor& row : message.kind->callFields) {
            written += "<" + std::string(row.writtenAs) + ">";
        }
        std::string found;
        const Outline& outline = message.outline;
        const Element& list = outline.elements[message.entries[0].elements.back()];
        ASSERT_EQ(list.name, "LogList");
        for (const std::size_t field : outline.elements[list.children[0]].children) {
            found += "<" + std::string(outline.elements[field].name) + ">";
        }
        EXPECT_EQ(found, written);
    }
}

}  // namespace

}  // namespace calljournal
