#include "LiteralRules.h"

#include <cstdint>
#include <utility>

namespace rules {

const Format& missedFormat() {
    static const std::vector<Element> call = {
        {"Number", Form::text},
        {"NumberType", Form::numberType},
        {"ConnectedNumber", Form::text},
        {"ConnectedNumberType", Form::numberType},
        {"ConnectedSurname", Form::text},
        {"ConnectedFirstName", Form::text},
        {"TimeDate", Form::text},
        {"CompletedElsewhere", Form::flag, true},
        {"TargetLog", Form::targetLog},
        {"NumberPresentation", Form::presentation},
        {"NamePresentation", Form::presentation},
        {"DeflectNumberPresentation", Form::presentation},
        {"DeflectNumber", Form::text},
        {"DeflectNumberType", Form::numberType},
        {"DeflectNamePresentation", Form::presentation},
        {"DeflectName", Form::text},
        {"TimeFormat", Form::timeFormat},
        {"GroupName", Form::text},
        {"GroupNumber", Form::text},
    };
    static const Format format = {
        "CallLogMissedCalls",
        "missedCallsUpdate",
        {{"UniqueId", Form::text},
         {"EntryId", Form::text},
         {"Surname", Form::text},
         {"Firstname", Form::text},
         {"Picture", Form::text},
         {"Viewed", Form::flag}},
        {{"UniqueId", Form::text},
         {"EntryId", Form::text},
         {"Surname", Form::text},
         {"Firstname", Form::text},
         {"PictureClip", Form::text},
         {"Viewed", Form::flag}},
        call,
        call,
    };
    return format;
}

const Format& dialledFormat() {
    static const std::vector<Element> item = {
        {"UniqueId", Form::text},  {"EntryId", Form::text},     {"Surname", Form::text},
        {"Firstname", Form::text}, {"PictureClip", Form::text}, {"JSGroupBy", Form::text},
    };
    static const Format format = {
        "CallLogDialledCalls",
        "dialledCallsUpdate",
        item,
        item,
        {{"Number", Form::text},
         {"NumberType", Form::numberType},
         {"ResolvedNumber", Form::text},
         {"ConnectedNumber", Form::text},
         {"ConnectedNumberPriority", Form::flag},
         {"ConnectedNumberType", Form::numberType},
         {"ConnectedSurname", Form::text},
         {"ConnectedFirstName", Form::text},
         {"IsBluetoothCall", Form::flag},
         {"TimeDate", Form::text},
         {"Duration", Form::text},
         {"TargetLog", Form::targetLog},
         {"NumberPresentation", Form::presentation},
         {"NamePresentation", Form::presentation},
         {"TimeFormat", Form::timeFormat},
         {"TransferType", Form::transferType}},
        // The priority is looked for before the connected number, though it is written after it.
        {{"Number", Form::text},
         {"NumberType", Form::numberType},
         {"ResolvedNumber", Form::text},
         {"ConnectedNumberPriority", Form::flag},
         {"ConnectedNumber", Form::text},
         {"ConnectedNumberType", Form::numberType},
         {"ConnectedSurname", Form::text},
         {"ConnectedFirstName", Form::text},
         {"IsBluetoothCall", Form::flag},
         {"TimeDate", Form::text},
         {"Duration", Form::text},
         {"TargetLog", Form::targetLog},
         {"NumberPresentation", Form::presentation},
         {"NamePresentation", Form::presentation},
         {"TimeFormat", Form::timeFormat},
         {"TransferType", Form::transferType}},
    };
    return format;
}

const Format& receivedFormat() {
    static const std::vector<Element> item = {
        {"UniqueId", Form::text},  {"EntryId", Form::text},     {"Surname", Form::text},
        {"Firstname", Form::text}, {"PictureClip", Form::text},
    };
    static const std::vector<Element> call = {
        {"Number", Form::text},
        {"NumberType", Form::numberType},
        {"ConnectedNumber", Form::text},
        {"ConnectedNumberType", Form::numberType},
        {"ConnectedSurname", Form::text},
        {"ConnectedFirstName", Form::text},
        {"TimeDate", Form::text},
        {"Duration", Form::text},
        {"TargetLog", Form::targetLog},
        {"NumberPresentation", Form::presentation},
        {"NamePresentation", Form::presentation},
        {"DeflectNumberPresentation", Form::presentation},
        {"DeflectNumber", Form::text},
        {"DeflectNumberType", Form::numberType},
        {"DeflectNamePresentation", Form::presentation},
        {"DeflectName", Form::text},
        {"TimeFormat", Form::timeFormat},
        {"TransferType", Form::transferType},
    };
    static const Format format = {"CallLogReceivedCalls", "receivedCallsUpdate", item, item, call, call};
    return format;
}

const Format& forwardedFormat() {
    static const std::vector<Element> item = {
        {"UniqueId", Form::text},  {"EntryId", Form::text},     {"Surname", Form::text},
        {"Firstname", Form::text}, {"PictureClip", Form::text},
    };
    static const std::vector<Element> call = {
        {"Number", Form::text},
        {"NumberType", Form::numberType},
        {"ConnectedNumber", Form::text},
        {"ConnectedNumberType", Form::numberType},
        {"ConnectedSurname", Form::text},
        {"ConnectedFirstName", Form::text},
        {"TimeDate", Form::text},
        {"Duration", Form::text},
        {"TransferType", Form::transferType},
    };
    static const Format format = {"CallLogForwardedCalls", "forwardedCallsUpdate", item, item, call, call};
    return format;
}

bool operator==(const Entry& first, const Entry& second) {
    return first.item == second.item && first.calls == second.calls;
}

Members emptyMissedItem() {
    return {{"UniqueId", ""},  {"EntryId", ""},     {"Surname", ""},
            {"Firstname", ""}, {"PictureClip", ""}, {"Viewed", "0"}};
}

Members emptyMissedCall() {
    return {{"reference", ""},
            {"Number", ""},
            {"ConnectedNumber", ""},
            {"ConnectedSurname", ""},
            {"ConnectedFirstName", ""},
            {"TimeDate", ""},
            {"TargetLog", "0"},
            {"NumberPresentation", "0"},
            {"NamePresentation", "0"},
            {"NumberType", "0"},
            {"ConnectedNumberType", "0"},
            {"TimeFormat", "0"},
            {"DeflectNumber", ""},
            {"DeflectName", ""},
            {"DeflectNumberType", "0"},
            {"DeflectNumberPresentation", "0"},
            {"DeflectNamePresentation", "0"},
            {"TransferType", "0"},
            {"CompletedElsewhere", "0"},
            {"GroupName", ""},
            {"GroupNumber", ""}};
}

namespace {

const std::vector<std::pair<std::string, std::string>>& entities() {
    static const std::vector<std::pair<std::string, std::string>> pairs = {
        {"&", "&amp;"}, {"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}, {"'", "&apos;"}};
    return pairs;
}

}  // namespace

std::string escape(const std::string& text) {
    std::string result;
    for (const char character : text) {
        std::string piece(1, character);
        for (const auto& [plain, entity] : entities()) {
            if (piece == plain) {
                piece = entity;
                break;
            }
        }
        result += piece;
    }
    return result;
}

std::string unescape(const std::string& text) {
    std::string result;
    for (std::size_t position = 0; position < text.size();) {
        std::string piece(1, text[position]);
        std::size_t length = 1;
        for (const auto& [plain, entity] : entities()) {
            if (text.compare(position, entity.size(), entity) == 0) {
                piece = plain;
                length = entity.size();
            }
        }
        result += piece;
        position += length;
    }
    return result;
}

std::string word(Form form, int value) {
    switch (form) {
        case Form::targetLog:
            switch (value) {
                case 0:
                    return "IN_ANSWERED";
                case 1:
                    return "IN_NO_ANSWER";
                case 2:
                    return "IN_BUSY";
                case 3:
                    return "IN_GROUP_MISSED";
                case 4:
                    return "OUT_ANSWERED";
                case 5:
                    return "OUT_NO_ANSWER";
                case 7:
                    return "IN_GROUP_BUSY";
                default:
                    return "OUT_BUSY";
            }
        case Form::presentation:
            return value == 1 ? "ALLOWED" : value == 2 ? "NOT_ALLOWED" : "NOT_AVAILABLE";
        case Form::timeFormat:
            return value == 1 ? "FORM_AM" : value == 2 ? "FORM_PM" : "FORM_24";
        case Form::numberType:
            return value == 1   ? "PRIVATE"
                   : value == 2 ? "BUSINESS1"
                   : value == 3 ? "BUSINESS2"
                   : value == 4 ? "MOBILE"
                                : "NO_ICON";
        case Form::transferType:
            return value == 1   ? "TRANSFER_DESTINATION_NUMBER"
                   : value == 2 ? "TRANSFER_GROUP_NUMBER"
                                : "TRANSFER_SOURCE_NUMBER";
        default:
            return std::string();
    }
}

int valueOfWord(Form form, const std::string& word) {
    switch (form) {
        case Form::targetLog:
            if (word == "IN_ANSWERED") {
                return 0;
            }
            if (word.empty()) {
                return 0;
            }
            if (word == "IN_NO_ANSWER") {
                return 1;
            }
            if (word == "IN_BUSY") {
                return 2;
            }
            if (word == "IN_GROUP_MISSED") {
                return 3;
            }
            if (word == "OUT_ANSWERED") {
                return 4;
            }
            if (word == "OUT_NO_ANSWER") {
                return 5;
            }
            if (word == "OUT_BUSY") {
                return 6;
            }
            if (word == "IN_GROUP_BUSY") {
                return 7;
            }
            return 6;
        case Form::presentation:
            return word == "ALLOWED" ? 1 : word == "NOT_ALLOWED" ? 2 : 0;
        case Form::timeFormat:
            return word == "FORM_AM" ? 1 : word == "FORM_PM" ? 2 : 0;
        case Form::numberType:
            return word == "PRIVATE" ? 1 : word == "MOBILE" ? 4 : word == "BUSINESS1" ? 2 : word == "BUSINESS2" ? 3 : 0;
        case Form::transferType:
            return word == "TRANSFER_DESTINATION_NUMBER" ? 1 : word == "TRANSFER_GROUP_NUMBER" ? 2 : 0;
        default:
            return 0;
    }
}

namespace {

std::string beginTag(const std::string& tag) {
    return "<" + tag + ">";
}

std::string closeTag(const std::string& tag) {
    return "</" + tag + ">";
}

/// Finds the first element at or behind the cursor. Returns whether there is one.
bool find(const std::string& text, std::size_t cursor, const std::string& tag, std::string& inner, std::size_t& next) {
    const std::string visible = text.substr(0, text.find('\0'));
    const std::string open = beginTag(tag);
    const std::string close = closeTag(tag);
    const std::size_t begin = visible.find(open, cursor);
    if (begin == std::string::npos) {
        return false;
    }
    const std::size_t start = begin + open.size();
    const std::size_t end = visible.find(close, start);
    if (end == std::string::npos) {
        return false;
    }
    inner = visible.substr(start, end - start);
    next = begin == cursor ? end + close.size() : cursor;
    return true;
}

}  // namespace

std::size_t value(const std::string& text, std::size_t cursor, const std::string& tag, std::string& out) {
    std::string inner;
    std::size_t next = cursor;
    if (!find(text, cursor, tag, inner, next)) {
        out.clear();
        return cursor;
    }
    out = unescape(inner);
    return next;
}

std::size_t flag(const std::string& text, std::size_t cursor, const std::string& tag, bool& out) {
    std::string inner;
    std::size_t next = cursor;
    if (!find(text, cursor, tag, inner, next)) {
        out = false;
        return cursor;
    }
    out = inner == "True";
    return next;
}

bool cutOut(std::string& xml, const std::string& tag, std::string& out) {
    const std::string open = beginTag(tag);
    const std::string close = closeTag(tag);
    const std::size_t begin = xml.find(open);
    const std::size_t end = xml.find(close);
    const std::int32_t p1 = begin == std::string::npos ? -1 : static_cast<std::int32_t>(begin);
    const std::int32_t p2 = end == std::string::npos ? -1 : static_cast<std::int32_t>(end);
    const std::int32_t start = p1 + static_cast<std::int32_t>(open.size());
    const std::int32_t behind = p2 + static_cast<std::int32_t>(close.size());
    if (!(start < p2 && p1 < behind)) {
        return false;
    }
    out = xml.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(p2 - start));
    // From position 0 up to a missing begin tag is the whole text.
    xml = xml.substr(0, begin) + xml.substr(static_cast<std::size_t>(behind));
    return true;
}

std::string method(const std::string& message) {
    const std::size_t begin = message.find("<Method>");
    if (begin == std::string::npos) {
        return std::string();
    }
    const std::size_t end = message.find("</Method>");
    if (end == std::string::npos) {
        return std::string();
    }
    return end < begin ? message.substr(begin) : message.substr(begin, end - begin);
}

namespace {

std::string field(const std::string& tag, const std::string& text) {
    return text.empty() ? std::string() : beginTag(tag) + text + closeTag(tag);
}

std::string encode(const Element& element, const std::string& stored) {
    switch (element.form) {
        case Form::text:
            return field(element.tag, stored);
        case Form::flag:
            return field(element.tag, stored == "1" ? "True" : "False");
        default:
            return field(element.tag, word(element.form, std::stoi(stored)));
    }
}

std::string withoutColons(const std::string& text) {
    std::string result;
    for (const char character : text) {
        if (character != ':') {
            result += character;
        }
    }
    return result;
}

std::string itemText(const Element& element, const Members& item) {
    if (element.tag == "UniqueId") {
        return withoutColons(item.at("UniqueId"));
    }
    if (element.tag == "Surname" || element.tag == "Firstname") {
        return escape(item.at(element.tag));
    }
    return item.at(element.tag == "Picture" ? "PictureClip" : element.tag);
}

}  // namespace

std::string encodeCalls(const Format& format, const std::vector<Members>& calls) {
    std::string out = "<LogList>";
    for (const Members& call : calls) {
        out += "<Item>";
        for (const Element& element : format.callWritten) {
            out += encode(element, call.at(element.tag));
        }
        out += "</Item>";
    }
    return out + "</LogList>";
}

std::string encodeItem(const Format& format, const Entry& entry, bool onlyUniqueId) {
    std::string out;
    for (const Element& element : format.itemWritten) {
        out += encode(element, itemText(element, entry.item));
        if (onlyUniqueId) {
            return out;
        }
    }
    return out + encodeCalls(format, entry.calls);
}

namespace {

std::size_t decode(const Element& element, const std::string& xml, std::size_t cursor, std::string& stored) {
    if (element.form == Form::flag && !element.readAsText) {
        bool isTrue = false;
        const std::size_t next = flag(xml, cursor, element.tag, isTrue);
        stored = isTrue ? "1" : "0";
        return next;
    }
    std::string text;
    const std::size_t next = value(xml, cursor, element.tag, text);
    if (element.form == Form::text) {
        stored = text;
    } else if (element.form == Form::flag) {
        stored = text == "True" ? "1" : "0";
    } else {
        stored = std::to_string(valueOfWord(element.form, text));
    }
    return next;
}

}  // namespace

void decodeCall(const Format& format, const std::string& xml, Members& call) {
    std::size_t cursor = 0;
    for (const Element& element : format.callRead) {
        cursor = decode(element, xml, cursor, call[element.tag]);
    }
}

bool decodeCalls(const Format& format, const std::string& xml, const Members& fresh, std::vector<Members>& calls) {
    calls.clear();
    std::string list;
    value(xml, 0, "LogList", list);
    if (list.empty()) {
        return false;
    }
    for (;;) {
        const bool hasBegin = list.find("<Item>") != std::string::npos;
        std::string text;
        if (!cutOut(list, "Item", text)) {
            break;
        }
        // An end tag alone repeats what is behind it. If that makes no begin tag either, it does so for ever.
        if (!hasBegin && list.find("<Item>") == std::string::npos) {
            break;
        }
        if (text.empty()) {
            continue;
        }
        Members call = fresh;
        decodeCall(format, text, call);
        calls.push_back(call);
    }
    return !calls.empty();
}

void decodeItem(const Format& format, const std::string& xml, const Members& fresh, Entry& entry) {
    std::size_t cursor = 0;
    for (const Element& element : format.itemRead) {
        cursor = decode(element, xml, cursor, entry.item[element.tag]);
    }
    std::vector<Members> calls;
    if (decodeCalls(format, xml.substr(cursor), fresh, calls)) {
        entry.calls = calls;
    }
}

std::string request(const std::string& schema, const std::string& reason, const std::string& body) {
    std::string text = field("ReasonForMessage", reason) + field("Entry", body);
    if (!schema.empty()) {
        text = "<Schema name=\"" + schema + "\">" + text + "</Schema>";
    }
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>" + text;
}

int parseTag(const std::string& name) {
    static const std::map<std::string, int> tags = {
        {"Entry", 0},
        {"Item", 1},
        {"Method", 2},
        {"UniqueId", 3},
        {"Category", 4},
        {"EntryId", 5},
        {"Surname", 6},
        {"Firstname", 7},
        {"PictureClip", 8},
        {"JSGroupBy", 9},
        {"Viewed", 10},
        {"CallBackNumber", 23},
        {"CallBackType", 24},
        {"CallBackState", 25},
        {"CallBackDeviceId", 26},
        {"Number", 11},
        {"NumberType", 12},
        {"ResolvedNumber", 13},
        {"ConnectedNumberPriority", 14},
        {"ConnectedNumber", 15},
        {"ConnectedNumberType", 16},
        {"ConnectedSurname", 17},
        {"ConnectedFirstName", 18},
        {"IsBluetoothCall", 19},
        {"TimeDate", 20},
        {"Duration", 21},
        {"CompletedElsewhere", 22},
        {"TargetLog", 27},
        {"NumberPresentation", 28},
        {"NamePresentation", 29},
        {"TimeFormat", 30},
        {"DeflectNumberPresentation", 31},
        {"DeflectNumber", 32},
        {"DeflectNumberType", 33},
        {"DeflectNamePresentation", 34},
        {"DeflectName", 35},
        {"GroupName", 37},
        {"GroupNumber", 38},
        {"TransferType", 39},
        {"UniqueID", 40},
        {"Office", 41},
        {"Mobile", 42},
        {"Private", 43},
        {"Email", 44},
        {"Group", 45},
        {"DefaultNumber", 46},
        {"Company", 47},
        {"Office2", 48},
        {"Address", 49},
        {"Address2", 50},
        {"JobFunction", 51},
        {"VoiceDial", 52},
        {"Picture", 53},
        {"ExternalID", 54},
        {"ContactSource", 55},
    };
    const auto found = tags.find(name);
    return found == tags.end() ? 56 : found->second;
}

bool ListReader::isClosed() const {
    return !schemaName.empty() && schemaName != "CallLogMissedCalls" && schemaName != "CallLog" &&
           schemaName != "CallLogPhoneBook" && schemaName != "Conversations";
}

void ListReader::begin(const std::string& name, const std::vector<std::string>& attributes) {
    if (isClosed()) {
        return;
    }
    tagName = name;
    tag = parseTag(name);
    if (name == "Schema") {
        schemaName = attributes.size() >= 2 ? attributes[1] : std::string();
        if (schemaName == "CallLogMissedCalls") {
            callLogType = "Missed";
        }
    }
}

void ListReader::data(const std::string& text) {
    if (isClosed()) {
        return;
    }
    const auto number = [&text](Form form) { return std::to_string(valueOfWord(form, text)); };
    const std::string isTrue = text == "True" ? "1" : "0";
    switch (tag) {
        case 2:
            if (text == "getMissedCallList") {
                callLogType = "Missed";
            }
            break;
        case 3:
            if (entry.item["UniqueId"].empty()) {
                entry.item["UniqueId"] = text;
            }
            log.push_back("missed uniqueId[" + entry.item["UniqueId"] + "]");
            break;
        case 4:
            callLogType = text;
            break;
        case 5:
            entry.item["EntryId"] = text;
            break;
        case 6:
            if (entry.item["Surname"].empty()) {
                entry.item["Surname"] = unescape(text);
            }
            break;
        case 7:
            if (entry.item["Firstname"].empty()) {
                entry.item["Firstname"] = unescape(text);
            }
            break;
        case 8:
            entry.item["PictureClip"] = text;
            break;
        case 10:
            entry.item["Viewed"] = isTrue;
            break;
        case 11:
            call["Number"] = text;
            break;
        case 12:
            call["NumberType"] = number(Form::numberType);
            break;
        case 15:
            call["ConnectedNumber"] = text;
            break;
        case 16:
            call["ConnectedNumberType"] = number(Form::numberType);
            break;
        case 17:
            call["ConnectedSurname"] = text;
            break;
        case 18:
            call["ConnectedFirstName"] = text;
            break;
        case 20:
            call["TimeDate"] = text;
            break;
        case 22:
            call["CompletedElsewhere"] = isTrue;
            break;
        case 27:
            call["TargetLog"] = number(Form::targetLog);
            break;
        case 28:
            call["NumberPresentation"] = number(Form::presentation);
            break;
        case 29:
            call["NamePresentation"] = number(Form::presentation);
            break;
        case 30:
            call["TimeFormat"] = number(Form::timeFormat);
            break;
        case 31:
            call["DeflectNumberPresentation"] = number(Form::presentation);
            break;
        case 32:
            call["DeflectNumber"] = text;
            break;
        case 33:
            call["DeflectNumberType"] = number(Form::numberType);
            break;
        case 34:
            call["DeflectNamePresentation"] = number(Form::presentation);
            break;
        case 35:
            call["DeflectName"] = text;
            break;
        case 37:
            call["GroupName"] = text;
            break;
        case 38:
            call["GroupNumber"] = text;
            break;
        default:
            break;
    }
}

void ListReader::end(const std::string& name) {
    if (isClosed()) {
        return;
    }
    if (name == "Entry") {
        if (callLogType == "Missed") {
            output.push_back(entry);
        }
        entry = {emptyMissedItem(), {}};
    } else if (name == "Item") {
        if (entry.calls.size() < 10) {
            entry.calls.push_back(call);
        }
        call = emptyMissedCall();
    }
}

std::string sortKey(const Entry& entry) {
    return entry.calls.empty() ? entry.item.at("EntryId") : entry.calls.front().at("TimeDate");
}

bool isOrdered(const Entry& first, const Entry& second) {
    const std::string key = sortKey(first);
    const std::string other = sortKey(second);
    for (std::size_t position = 0; position < key.size() && position < other.size(); ++position) {
        const unsigned char byte = static_cast<unsigned char>(key[position]);
        const unsigned char otherByte = static_cast<unsigned char>(other[position]);
        if (byte != otherByte) {
            return byte > otherByte;
        }
    }
    return key.size() > other.size();
}

namespace {

/// Puts the entry that stands before all others in front, and so on with the rest.
void sort(std::vector<Entry>& list) {
    for (std::size_t place = 0; place < list.size(); ++place) {
        for (std::size_t other = place + 1; other < list.size(); ++other) {
            if (isOrdered(list[other], list[place])) {
                std::swap(list[other], list[place]);
            }
        }
    }
}

/// One step of the walk: returns whether the entry at `place` stays.
bool keepOrDelete(Normalised& result, std::size_t place) {
    const Entry& entry = result.list[place];
    const std::string groupName = entry.calls.empty() ? std::string() : entry.calls.front().at("GroupName");
    const std::string groupNumber = entry.calls.empty() ? std::string() : entry.calls.front().at("GroupNumber");
    result.log.push_back("(*it).getMissedCallInfoList(): size:" + std::to_string(entry.calls.size()) +
                         ", groupname:" + groupName + ", groupNumber:" + groupNumber + "\n");
    if (!entry.calls.empty()) {
        return true;
    }
    const std::string text = request("CallLogMissedCalls", "delete_request", encodeItem(missedFormat(), entry, true));
    result.log.push_back("CallListDatabaseAdapter::updateEntries msg: \n " + text + "\n");
    result.requests.push_back(text);
    result.log.push_back("DAS resp ok \n");
    return false;
}

}  // namespace

Normalised normalise(std::vector<Entry> list) {
    Normalised result;
    const std::string size = std::to_string(list.size());
    result.log.push_back("before sort normalizeMissedCallList: missedCallList.size():" + size + "\n");
    sort(list);
    result.log.push_back("after sort normalizeMissedCallList: missedCallList.size():" + size + "\n");
    result.list = std::move(list);
    for (std::size_t place = 0; place < result.list.size();) {
        if (keepOrDelete(result, place)) {
            ++place;
        } else {
            result.list.erase(result.list.begin() + static_cast<std::ptrdiff_t>(place));
            place = 0;
        }
    }
    return result;
}

}  // namespace rules
