#include "Data.h"

#include <array>
#include <iterator>
#include <random>
#include <type_traits>
#include <utility>
#include <variant>

#include "CallListDatabaseAdapterHelper.h"
#include "Words.h"

using Helper = CallListDatabaseAdapterHelper;
namespace format = calljournal::format;

namespace bench {

namespace {

class Random {
public:
    /// Returns a number below `limit`.
    unsigned below(unsigned limit) { return static_cast<unsigned>(engine_() / 16U) % limit; }
    bool percent(unsigned share) { return below(100) < share; }

    template <std::size_t count>
    std::string oneOf(const char* const (&texts)[count]) {
        return texts[below(count)];
    }
    /// Returns `count` digits.
    std::string digits(std::size_t count) {
        std::string text;
        while (text.size() < count) {
            text += static_cast<char>('0' + below(10));
        }
        return text;
    }
    /// Returns `number` below `limit`, counted from `first`, with two digits.
    std::string twoDigits(unsigned first, unsigned limit) {
        return std::to_string(100 + first + below(limit)).substr(1);
    }

private:
    std::minstd_rand engine_;
};

constexpr const char* surnames[] = {"Mustermann", "Schmidt", "van der Velde", "Kowalczyk", "Lindqvist", "McAllister"};
constexpr const char* firstNames[] = {"Katharina", "Maximilian", "Ann", "Jean-Pierre", "Giovanni", "Elisabeth"};
constexpr const char* places[] = {"Reception desk north", "Sales department west", "Service point", "Head office"};

std::string dateAndTime(Random& random) {
    return "20" + random.twoDigits(20, 5) + "-" + random.twoDigits(1, 12) + "-" + random.twoDigits(1, 28) + " " +
           random.twoDigits(0, 24) + ":" + random.twoDigits(0, 60) + ":" + random.twoDigits(0, 60);
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// A text for the element of that name.
std::string textFor(std::string_view tag, Random& random) {
    if (endsWith(tag, "Id")) {
        return random.digits(8);
    }
    if (endsWith(tag, "GroupNumber")) {
        return random.digits(5);
    }
    if (endsWith(tag, "Number") || tag == "JSGroupBy") {
        return "+4930" + random.digits(8);
    }
    if (endsWith(tag, "Surname")) {
        return random.oneOf(surnames);
    }
    if (endsWith(tag, "Firstname") || endsWith(tag, "FirstName")) {
        return random.oneOf(firstNames);
    }
    if (tag == "TimeDate") {
        return dateAndTime(random);
    }
    if (tag == "Duration") {
        return "00:" + random.twoDigits(0, 60) + ":" + random.twoDigits(0, 60);
    }
    return startsWith(tag, "Picture") ? "pictures/" + random.digits(8) + ".jpg" : random.oneOf(places);
}

/// Which parties a call has.
struct Parties {
    bool connected;
    bool deflecting;
    bool group;

    bool have(std::string_view tag) const {
        return (connected || !startsWith(tag, "Connected")) && (deflecting || !startsWith(tag, "Deflect")) &&
               (group || !startsWith(tag, "Group"));
    }
};

void fill(std::string& value, std::string_view tag, Random& random) {
    value = textFor(tag, random);
}

void fill(bool& value, std::string_view, Random& random) {
    value = random.percent(30);
}

template <class Enumeration>
void fill(Enumeration& value, std::string_view, Random& random) {
    const format::Words& words = format::wordsFor(value);
    value = static_cast<Enumeration>(words.begin[random.below(static_cast<unsigned>(words.end - words.begin))].value);
}

template <class Item>
typename Kind<Item>::Call makeCall(Form form, Random& random) {
    typename Kind<Item>::Call call;
    const bool full = form == Form::full;
    const Parties parties = {full || random.percent(40), full || random.percent(20), full || random.percent(25)};
    for (const auto& field : Kind<Item>::callFields) {
        if (parties.have(field.tag)) {
            std::visit([&](auto member) { fill(call.*member, field.tag, random); }, field.member);
        }
    }
    return call;
}

template <class Base>
void setAccess(const format::TextAccess<Base>& access, std::string_view tag, Base& item, Random& random) {
    (item.*access.set)(textFor(tag, random));
}

template <class Base>
void setAccess(const format::FlagAccess<Base>& access, std::string_view, Base& item, Random& random) {
    (item.*access.set)(random.percent(50));
}

template <class Base, class Fields>
void setFields(const Fields& fields, Form form, Base& item, Random& random) {
    for (const auto& field : fields) {
        if (form == Form::full || !startsWith(field.readAs, "Picture") || random.percent(50)) {
            std::visit([&](const auto& access) { setAccess(access, field.readAs, item, random); }, field.access);
        }
    }
}

template <class Item>
Item makeItem(Form form, Random& random) {
    Item item;
    setFields(format::partyFields, form, static_cast<CallItemWithPicture&>(item), random);
    setFields(Kind<Item>::itemFields, form, item, random);
    std::list<typename Kind<Item>::Call> calls;
    for (unsigned count = 1 + random.below(10); count > 0; --count) {
        calls.push_back(makeCall<Item>(form, random));
    }
    (item.*Kind<Item>::setCalls)(calls);
    return item;
}

std::string bodyOf(const MissedCallItem& item) {
    return Helper::createXMLMissedCallItemBody(item, false);
}
std::string bodyOf(const DialledCallItem& item) {
    return Helper::createXMLDialledCallItemBody(item, false);
}
std::string bodyOf(const ReceivedCallItem& item) {
    return Helper::createXMLReceivedCallItemBody(item, false);
}
std::string bodyOf(const ForwardedCallItem& item) {
    return Helper::createXMLForwardedCallItemBody(item, false);
}

void replaceFirst(std::string& text, const std::string& what, const std::string& by) {
    const std::size_t at = text.find(what);
    if (at != std::string::npos) {
        text.replace(at, what.size(), by);
    }
}

}  // namespace

template <class Item>
std::vector<Item> makeItems(Form form, std::size_t count) {
    Random random;
    std::vector<Item> items;
    items.reserve(count);
    while (items.size() < count) {
        items.push_back(makeItem<Item>(form, random));
    }
    return items;
}

template <class Item>
std::string servedBody(const Item& item) {
    std::string body = bodyOf(item);
    replaceFirst(body, "<Picture>", "<PictureClip>");
    replaceFirst(body, "</Picture>", "</PictureClip>");
    return body;
}

std::string makeReply(const std::vector<MissedCallItem>& items) {
    std::string reply;
    for (const MissedCallItem& item : items) {
        reply += Helper::createXMLField(Helper::ENTRY, servedBody(item));
    }
    Helper::addXMLHeaderFooter(reply, Helper::DAS_CALLLOGMISSEDCALLS);
    return reply;
}

std::vector<std::string> makeCallTexts(const std::vector<MissedCallItem>& items) {
    std::vector<std::string> texts;
    for (const MissedCallItem& item : items) {
        std::string body = servedBody(item);
        std::string text;
        while (Helper::getAndRemoveXMLValue(body, Helper::ITEM, text)) {
            texts.push_back(text);
        }
    }
    return texts;
}

template <class Item>
bool same(const Item& first, const Item& second) {
    const CallItemWithPicture& party = first;
    bool all = party == static_cast<const CallItemWithPicture&>(second);
    const auto compare = [&](const auto& access) { all = all && (first.*access.get)() == (second.*access.get)(); };
    for (const auto& field : Kind<Item>::itemFields) {
        std::visit(compare, field.access);
    }
    const auto& calls = (first.*Kind<Item>::calls)();
    const auto& others = (second.*Kind<Item>::calls)();
    all = all && calls.size() == others.size();
    for (auto call = calls.begin(), other = others.begin(); all && call != calls.end(); ++call, ++other) {
        for (const auto& field : Kind<Item>::callFields) {
            std::visit([&](auto member) { all = all && (*call).*member == (*other).*member; }, field.member);
        }
    }
    return all;
}

#define BENCH_KIND(Item)                                                      \
    template std::vector<Item> makeItems<Item>(Form form, std::size_t count); \
    template std::string servedBody<Item>(const Item& item);                  \
    template bool same<Item>(const Item& first, const Item& second);

BENCH_KIND(MissedCallItem)
BENCH_KIND(DialledCallItem)
BENCH_KIND(ReceivedCallItem)
BENCH_KIND(ForwardedCallItem)

std::deque<MissedCallItem> shuffledList(std::size_t count) {
    const auto items = makeItems<MissedCallItem>(Form::full, 100);
    std::deque<MissedCallItem> list;
    for (std::size_t i = 0; i < count; ++i) {
        MissedCallItem::MissedCallInfo call = items[i % items.size()].getMissedCallInfoList().front();
        const std::size_t key = i * 7919 % 1000003;  // both prime, so that no key comes twice
        call.timeDate = std::to_string(2000000 + key).insert(4, "-05-01 10:");
        list.push_back(items[i % items.size()]);
        list.back().setMissedCallInfoList({call});
    }
    return list;
}

namespace {

constexpr std::size_t columnCount = 92;
using Columns = std::array<std::string, columnCount>;

/// A fifth of the columns: those that an import takes, and some that it passes over.
Columns makeColumns(Random& random) {
    Columns columns;
    columns[1] = random.oneOf(firstNames);
    columns[3] = random.oneOf(surnames);
    columns[5] = random.oneOf(places);
    columns[7] = "Engineer";
    columns[8] = "Long street " + random.digits(2);
    columns[11] = "Berlin";
    columns[13] = random.digits(5);
    columns[14] = "Germany";
    for (const std::size_t phone : {31U, 32U, 34U, 37U, 40U}) {
        columns[phone] = "+4930" + random.digits(8);
    }
    columns[57] = "somebody" + random.digits(4) + "@example.org";
    for (const std::size_t other : {0U, 9U, 50U, 70U, 91U}) {
        columns[other] = "Text " + random.digits(5);
    }
    return columns;
}

Contact expectedContact(const Columns& columns) {
    Contact contact;
    contact.lastName = columns[3];
    contact.firstName = columns[1];
    contact.business1 = columns[31];
    contact.business2 = columns[32];
    contact.mobile1 = columns[40];
    contact.private1 = columns[37];
    contact.company1 = columns[5];
    contact.address1 = columns[8];
    contact.address2 = columns[11] + ":" + columns[13] + ":" + columns[14];
    contact.position = columns[7];
    contact.email1 = columns[57];
    contact.defaultDial = 2;
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    return contact;
}

void appendLine(std::string& content, const Columns& columns) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const bool quoted = columns[i].find(',') != std::string::npos;
        content += i == 0 ? "" : ",";
        content += quoted ? '"' + columns[i] + '"' : columns[i];
    }
    content += "\r\n";
}

}  // namespace

ContactFile makeContacts(std::size_t count) {
    Random random;
    ContactFile file;
    for (std::size_t i = 0; i < columnCount; ++i) {
        file.content += (i == 0 ? "\"Column " : ",\"Column ") + std::to_string(i) + '"';
    }
    file.content += "\r\n";
    while (file.contacts.size() < count) {
        Columns columns = makeColumns(random);
        if (file.contacts.size() % 2 == 0) {
            columns[8] += ", 2nd floor";
        }
        appendLine(file.content, columns);
        file.contacts.push_back(expectedContact(columns));
    }
    return file;
}

bool same(const Contact& first, const Contact& second) {
    return first.firstName == second.firstName && first.lastName == second.lastName &&
           first.business1 == second.business1 && first.business2 == second.business2 &&
           first.mobile1 == second.mobile1 && first.private1 == second.private1 && first.email1 == second.email1 &&
           first.company1 == second.company1 && first.position == second.position &&
           first.address1 == second.address1 && first.address2 == second.address2 &&
           first.defaultDial == second.defaultDial && first.source == second.source;
}

}  // namespace bench
