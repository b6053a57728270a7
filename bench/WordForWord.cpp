#include "WordForWord.h"

#include <algorithm>
#include <boost/algorithm/string/replace.hpp>
#include <boost/tokenizer.hpp>
#include <cstring>
#include <fstream>
#include <list>
#include <map>
#include <string_view>
#include <variant>

#include "ClientUtils.h"
#include "Words.h"
#include "XmlParser.h"
#include "detail/ParseTags.h"

namespace format = calljournal::format;

namespace bench::wordForWord {

namespace {

std::string beginTag(const std::string& tag) {
    return "<" + tag + ">";
}

std::string closeTag(const std::string& tag) {
    return "</" + tag + ">";
}

std::string element(const std::string& tag, const std::string& text) {
    return text.empty() ? std::string() : beginTag(tag) + text + closeTag(tag);
}

// Words.

std::string textOf(const std::string& value) {
    return value;
}

std::string textOf(bool value) {
    return value ? "True" : "False";
}

template <class Enumeration>
std::string textOf(Enumeration value) {
    return std::string(format::toWord(value));
}

void assign(std::string& value, const std::string& text) {
    value = text;
}

void assign(bool& value, const std::string& text) {
    value = text == "True";
}

template <class Enumeration>
void assign(Enumeration& value, const std::string& text) {
    const format::Words& words = format::wordsFor(value);
    const auto* row = std::find_if(words.begin, words.end,
                                   [&](const format::Word& word) { return text == std::string_view(word.word); });
    value = static_cast<Enumeration>(row == words.end ? words.begin->value : row->value);
}

// Encoding.

template <class Base>
std::string textOfAccess(const format::TextAccess<Base>& access, const Base& item) {
    std::string text = (item.*access.get)();
    switch (access.form) {
        case format::Form::escaped:
            return ClientUtils::escapeXMLString(text);
        case format::Form::withoutColons:
            text.erase(std::remove(text.begin(), text.end(), ':'), text.end());
            return text;
        case format::Form::asItIs:
            break;
    }
    return text;
}

template <class Base>
std::string textOfAccess(const format::FlagAccess<Base>& access, const Base& item) {
    return textOf((item.*access.get)());
}

template <class Base, class Fields>
void appendFields(std::string& out, const Fields& fields, const Base& item) {
    for (const auto& field : fields) {
        out += element(std::string(std::string_view(field.writtenAs)),
                       std::visit([&](const auto& access) { return textOfAccess(access, item); }, field.access));
    }
}

// Decoding.

bool cutOut(std::string& xml, const std::string& tag, std::string& out) {
    const std::string open = beginTag(tag);
    const std::string close = closeTag(tag);
    const std::size_t begin = xml.find(open);
    const std::size_t end = xml.find(close);
    if (begin == std::string::npos || end == std::string::npos || begin + open.size() >= end) {
        return false;
    }
    out = xml.substr(begin + open.size(), end - begin - open.size());
    xml = xml.substr(0, begin) + xml.substr(end + close.size());
    return true;
}

template <class Item>
std::list<typename Kind<Item>::Call> decodeCalls(const char* xml) {
    std::list<typename Kind<Item>::Call> calls;
    std::string list;
    takeValue(xml, "LogList", list);
    std::string text;
    while (cutOut(list, "Item", text)) {
        typename Kind<Item>::Call call;
        const char* cursor = text.c_str();
        for (std::size_t place = 0; place < std::size(Kind<Item>::callFields); ++place) {
            const auto& field = Kind<Item>::callFields[format::readAt(Kind<Item>::callFields, place)];
            std::string value;
            cursor = takeValue(cursor, std::string(std::string_view(field.tag)).c_str(), value);
            std::visit([&](auto member) { assign(call.*member, value); }, field.member);
        }
        calls.push_back(call);
    }
    return calls;
}

template <class Base>
void setAccess(const format::TextAccess<Base>& access, const std::string& text, Base& item) {
    (item.*access.set)(text);
}

template <class Base>
void setAccess(const format::FlagAccess<Base>& access, const std::string& text, Base& item) {
    (item.*access.set)(text == "True");
}

template <class Base, class Fields>
const char* takeFields(const char* cursor, const Fields& fields, Base& item) {
    for (const auto& field : fields) {
        std::string value;
        cursor = takeValue(cursor, std::string(std::string_view(field.readAs)).c_str(), value);
        std::visit([&](const auto& access) { setAccess(access, value, item); }, field.access);
    }
    return cursor;
}

}  // namespace

const char* takeValue(const char* cursor, const char* tag, std::string& out) {
    const std::string open = beginTag(tag);
    const std::string close = closeTag(tag);
    const char* begin = std::strstr(cursor, open.c_str());
    const char* end = begin == nullptr ? nullptr : std::strstr(begin + open.size(), close.c_str());
    if (end == nullptr) {
        out.clear();
        return cursor;
    }
    out = ClientUtils::unescapeXMLString(std::string(begin + open.size(), end));
    return begin == cursor ? end + close.size() : cursor;
}

template <class Item>
std::string encode(const Item& item) {
    std::string out;
    appendFields(out, format::partyFields, static_cast<const CallItemWithPicture&>(item));
    appendFields(out, Kind<Item>::itemFields, item);
    out += beginTag("LogList");
    const auto calls = (item.*Kind<Item>::calls)();
    for (const auto& call : calls) {
        out += beginTag("Item");
        for (const auto& field : Kind<Item>::callFields) {
            out += element(std::string(std::string_view(field.tag)),
                           std::visit([&](auto member) { return textOf(call.*member); }, field.member));
        }
        out += closeTag("Item");
    }
    return out + closeTag("LogList");
}

template <class Item>
void decode(const std::string& body, Item& item) {
    const char* cursor = takeFields(body.c_str(), format::partyFields, static_cast<CallItemWithPicture&>(item));
    cursor = takeFields(cursor, Kind<Item>::itemFields, item);
    const auto calls = decodeCalls<Item>(cursor);
    if (!calls.empty()) {
        (item.*Kind<Item>::setCalls)(calls);
    }
}

#define BENCH_WORD_FOR_WORD(Item)                   \
    template std::string encode<Item>(const Item&); \
    template void decode<Item>(const std::string&, Item&);

BENCH_WORD_FOR_WORD(MissedCallItem)
BENCH_WORD_FOR_WORD(DialledCallItem)
BENCH_WORD_FOR_WORD(ReceivedCallItem)
BENCH_WORD_FOR_WORD(ForwardedCallItem)

// The list.

namespace {

constexpr int entryTag = 0;
constexpr int itemTag = 1;
constexpr int unknownTag = 56;

int tagOf(const std::string& name) {
    static const std::map<std::string, int> tags = [] {
        std::map<std::string, int> all;
        for (const calljournal::detail::ParseTag& tag : calljournal::detail::parseTags) {
            all[std::string(tag.name)] = static_cast<int>(tag.tag);
        }
        return all;
    }();
    const auto found = tags.find(name);
    return found == tags.end() ? unknownTag : found->second;
}

const auto& callFields = Kind<MissedCallItem>::callFields;

/// The index of the call's field by the number of its tag, -1 for other tags.
const std::vector<int>& fieldsByTag() {
    static const std::vector<int> fields = [] {
        std::vector<int> all(unknownTag + 1, -1);
        for (std::size_t i = 0; i < std::size(callFields); ++i) {
            const int tag = tagOf(std::string(std::string_view(callFields[i].tag)));
            all[static_cast<std::size_t>(tag)] = static_cast<int>(i);
        }
        return all;
    }();
    return fields;
}

}  // namespace

bool ListReader::isForeign() const {
    return !schemaName_.empty() && schemaName_ != "CallLogMissedCalls" && schemaName_ != "CallLog" &&
           schemaName_ != "CallLogPhoneBook" && schemaName_ != "Conversations";
}

void ListReader::parseRemoteXMLTagBegin(void* userData, const char* name, const char** attributes) {
    ListReader& self = *static_cast<ListReader*>(userData);
    if (self.isForeign()) {
        return;
    }
    self.tagName_ = name;
    self.tag_ = tagOf(self.tagName_);
    if (self.tagName_ == "Schema" && attributes[0] != nullptr) {
        self.schemaName_ = attributes[1];
        if (self.schemaName_ == "CallLogMissedCalls") {
            self.callLogType_ = "Missed";
        }
    }
}

void ListReader::takeText(const std::string& text) {
    switch (tag_) {
        case 2:
            if (text == "getMissedCallList") {
                callLogType_ = "Missed";
            }
            break;
        case 3:
            if (entry_.getUniqueId().empty()) {
                entry_.setUniqueId(text);
            }
            break;
        case 4:
            callLogType_ = text;
            break;
        case 5:
            entry_.setEntryId(text);
            break;
        case 6:
            if (entry_.getSurname().empty()) {
                entry_.setSurname(ClientUtils::unescapeXMLString(text));
            }
            break;
        case 7:
            if (entry_.getFirstname().empty()) {
                entry_.setFirstname(ClientUtils::unescapeXMLString(text));
            }
            break;
        case 8:
            entry_.setPictureClip(text);
            break;
        case 10:
            entry_.setViewed(text == "True");
            break;
        default:
            break;
    }
}

void ListReader::parseRemoteXMLData(void* userData, const char* text, int length) {
    ListReader& self = *static_cast<ListReader*>(userData);
    if (self.isForeign()) {
        return;
    }
    const std::string value(text, static_cast<std::size_t>(length));
    const int field = fieldsByTag()[static_cast<std::size_t>(self.tag_)];
    if (field < 0) {
        self.takeText(value);
    } else {
        std::visit([&](auto member) { assign(self.call_.*member, value); },
                   callFields[static_cast<std::size_t>(field)].member);
    }
}

void ListReader::parseRemoteXMLTagEnd(void* userData, const char* name) {
    ListReader& self = *static_cast<ListReader*>(userData);
    if (self.isForeign()) {
        return;
    }
    const int tag = tagOf(name);
    if (tag == entryTag) {
        if (self.callLogType_ == "Missed") {
            self.output_.push_back(self.entry_);
        }
        self.entry_.reset();
    } else if (tag == itemTag) {
        self.entry_.appendCallInfoToList(self.call_);
        self.call_.reset();
    }
}

void readList(const std::string& reply, std::deque<MissedCallItem>& list) {
    list.clear();
    ListReader reader(list);
    XmlParser parser(&reader, &ListReader::parseRemoteXMLTagBegin, &ListReader::parseRemoteXMLTagEnd,
                     &ListReader::parseRemoteXMLData);
    const std::string fixed = ClientUtils::fixSpecialXMLCharactersToQuote(reply);
    parser.parseMessage(fixed.c_str(), static_cast<int>(fixed.size()));
}

namespace {

std::string sortKey(const MissedCallItem& item) {
    const std::list<MissedCallItem::MissedCallInfo>& calls = item.getMissedCallInfoList();
    return calls.empty() ? item.getEntryId() : calls.front().timeDate;
}

}  // namespace

void normalise(std::deque<CopiedItem>& list) {
    std::sort(list.begin(), list.end(), [](const CopiedItem& first, const CopiedItem& second) {
        return sortKey(first.item) > sortKey(second.item);
    });
}

// The import.

namespace {

using Separator = boost::escaped_list_separator<char>;

std::string cut(const std::string& field) {
    unsigned weight = 0;
    for (std::size_t i = 0; i < field.size(); ++i) {
        switch (field[i]) {
            case '"':
            case '\'':
                weight += 6;
                break;
            case '&':
                weight += 5;
                break;
            case '<':
            case '>':
                weight += 4;
                break;
            default:
                weight += 1;
        }
        if (weight > 249) {
            return field.substr(0, i);
        }
    }
    return field;
}

std::vector<std::string> split(const std::string& line, const Separator& separator) {
    std::vector<std::string> columns;
    const boost::tokenizer<Separator> tokens(line, separator);
    for (const std::string& token : tokens) {
        columns.push_back(cut(token));
    }
    return columns;
}

bool isContinued(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

/// Whether the text is UTF-8, by the shape of its characters.
bool isUtf8(const std::string& text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (length == 0 || i + length > text.size()) {
            return false;
        }
        for (std::size_t k = 1; k < length; ++k) {
            if (!isContinued(static_cast<unsigned char>(text[i + k]))) {
                return false;
            }
        }
        i += length;
    }
    return true;
}

std::string fromLatin1(const std::string& text) {
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            out += c;
        } else {
            out += static_cast<char>(0xC0U | (byte >> 6U));
            out += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return out;
}

std::string column(const std::vector<std::string>& columns, std::size_t index) {
    const std::string text = columns[index];
    return isUtf8(text) ? text : fromLatin1(text);
}

Contact contactOf(const std::vector<std::string>& columns) {
    Contact contact;
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    contact.lastName = column(columns, 3);
    contact.firstName = column(columns, 1);
    contact.business1 = columns[31].empty() ? column(columns, 44) : column(columns, 31);
    contact.business2 = column(columns, 32);
    contact.mobile1 = columns[40].empty() ? column(columns, 34) : column(columns, 40);
    contact.private1 = column(columns, 37);
    contact.company1 = column(columns, 5);
    contact.address1 = column(columns, 8);
    contact.position = column(columns, 7);
    contact.email1 = column(columns, 57);
    for (const std::size_t part : {11U, 13U, 14U}) {
        contact.address2 += contact.address2.empty() ? "" : ":";
        contact.address2 += column(columns, part);
    }
    contact.defaultDial = !contact.business1.empty()   ? 2
                          : !contact.business2.empty() ? 3
                          : !contact.mobile1.empty()   ? 4
                          : !contact.private1.empty()  ? 1
                                                       : 0;
    return contact;
}

}  // namespace

std::vector<Contact> import(const std::string& path) {
    std::vector<Contact> contacts;
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    ClientUtils::handleCRatEnd(line);
    boost::replace_all(line, "\"", "");
    Separator separator('\\', ';', '"');
    std::vector<std::string> names = split(line, separator);
    if (names.size() == 1) {
        separator = Separator('\\', ',', '"');
        names = split(line, separator);
    }
    while (std::getline(file, line)) {
        ClientUtils::handleCRatEnd(line);
        boost::replace_all(line, "\"\"", "\\\"");
        const std::vector<std::string> columns = split(line, separator);
        if (columns.size() >= names.size()) {
            const Contact contact = contactOf(columns);
            contacts.push_back(contact);
        }
    }
    return contacts;
}

}  // namespace bench::wordForWord
