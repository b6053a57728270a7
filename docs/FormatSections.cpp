#include "FormatSections.h"

#include <algorithm>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "CallBacks.h"
#include "CallKinds.h"
#include "CallListDatabaseAdapterHelper.h"
#include "KindDescriptor.h"
#include "Kinds.h"
#include "ManText.h"
#include "Outline.h"
#include "Words.h"

namespace calljournal {

namespace {

using Helper = CallListDatabaseAdapterHelper;
using Row = std::vector<std::string>;

std::string code(std::string_view text) {
    return text.empty() ? std::string("(empty)") : "`" + std::string(text) + "`";
}

std::string tableLine(const Row& cells) {
    std::string line = "|";
    for (const std::string& cell : cells) {
        line += " " + cell + " |";
    }
    return line + "\n";
}

std::string table(const Row& head, const std::vector<Row>& rows) {
    std::string text = tableLine(head) + tableLine(Row(head.size(), "---"));
    for (const Row& row : rows) {
        text += tableLine(row);
    }
    return text;
}

// Elements.

struct Enumeration {
    std::string_view title;
    format::Words words;
};

const Enumeration enumerations[] = {
    {"log target", format::wordsOf(format::targetLogWords)},
    {"presentation", format::wordsOf(format::presentationWords)},
    {"time format", format::wordsOf(format::timeFormatWords)},
    {"number type", format::wordsOf(format::numberTypeWords)},
    {"transfer type", format::wordsOf(format::transferTypeWords)},
    {"call-back type", format::wordsOf(format::callBackTypeWords)},
    {"call-back state", format::wordsOf(format::callBackStateWords)},
};

std::string conversion(const FieldDescriptor& row) {
    if (row.type == ValueType::flag) {
        return "`True` or `False`";
    }
    for (const Enumeration& enumeration : enumerations) {
        if (row.type == ValueType::word && row.words.begin == enumeration.words.begin) {
            return std::string(enumeration.title) + " word";
        }
    }
    return "text " + std::string(row.idiom);
}

std::string timesUnescaped(int times) {
    return times == 0 ? "never" : times == 1 ? "once" : "twice";
}

std::vector<Row> elementRows(const std::vector<FieldDescriptor>& fields) {
    std::vector<Row> rows;
    for (const FieldDescriptor& field : fields) {
        rows.push_back(
            {std::to_string(rows.size() + 1),
             code(field.writtenAs) + (field.writtenAs == field.readAs ? "" : ", read as " + code(field.readAs)),
             conversion(field), field.isAlwaysWritten() ? "always" : "not empty", timesUnescaped(field.unescapes)});
    }
    return rows;
}

std::string elementTables(const KindDescriptor& kind) {
    const Row head = {"#", "Element", "Value", "Written", "Unescaped"};
    std::vector<Row> rows = elementRows(kind.fields);
    if (kind.hasCalls()) {
        rows.push_back(
            {std::to_string(rows.size() + 1), "`LogList`", "one `Item` for each call, newest first", "always", "once"});
    }
    std::string text = table(head, rows);
    if (kind.hasCalls()) {
        text += "\nEach `Item`:\n\n" + table(head, elementRows(kind.callFields));
    }
    return text;
}

/// The elements that are looked for in another order than they are written in.
std::string readingOrder(const KindDescriptor& kind) {
    std::string text;
    for (std::size_t i = 0; i + 1 < kind.readRanks.size(); ++i) {
        if (kind.readRanks[i] > kind.readRanks[i + 1]) {
            text += "\nThe decoder looks for " + code(kind.callFields[i + 1].readAs) + " before " +
                    code(kind.callFields[i].readAs) + ", the other way round than they are written.\n";
        }
    }
    return text;
}

// Members that the format leaves out.

/// Names `member` if a call of this kind has it and its table has no row for it.
template <class Item, class Member>
void addUnlessCarried(std::string& names, const char* name, Member member) {
    using Call = typename format::CallKind<Item>::Call;
    if constexpr (std::is_invocable_v<Member, ItemType<Call>>) {
        bool isCarried = false;
        for (const auto& field : format::CallKind<Item>::callFields) {
            std::visit(
                [&](auto carried) {
                    if constexpr (std::is_convertible_v<decltype(member(ItemType<Call>())), decltype(carried)>) {
                        isCarried = isCarried || carried == static_cast<decltype(carried)>(member(ItemType<Call>()));
                    }
                },
                field.member);
        }
        names += isCarried ? "" : (names.empty() ? "" : ", ") + code(name);
    }
}

#define ADD_UNLESS_CARRIED(name) \
    addUnlessCarried<Item>(      \
        names, #name, [](auto type) -> decltype(&decltype(type)::Item::name) { return &decltype(type)::Item::name; });

template <class Item>
std::string membersLeftOut() {
    std::string names;
    ADD_UNLESS_CARRIED(reference)
    ADD_UNLESS_CARRIED(timeDate)
    ADD_UNLESS_CARRIED(number)
    ADD_UNLESS_CARRIED(numberType)
    ADD_UNLESS_CARRIED(numberPresentation)
    ADD_UNLESS_CARRIED(namePresentation)
    ADD_UNLESS_CARRIED(targetLog)
    ADD_UNLESS_CARRIED(connectedNumber)
    ADD_UNLESS_CARRIED(connectedNumberType)
    ADD_UNLESS_CARRIED(connectedSurname)
    ADD_UNLESS_CARRIED(connectedFirstname)
    ADD_UNLESS_CARRIED(resolvedNumber)
    ADD_UNLESS_CARRIED(connectedNumberPriority)
    ADD_UNLESS_CARRIED(isBluetoothCall)
    ADD_UNLESS_CARRIED(completedElsewhere)
    ADD_UNLESS_CARRIED(duration)
    ADD_UNLESS_CARRIED(timeFormat)
    ADD_UNLESS_CARRIED(deflectNumber)
    ADD_UNLESS_CARRIED(deflectNumberType)
    ADD_UNLESS_CARRIED(deflectNumberPresentation)
    ADD_UNLESS_CARRIED(deflectName)
    ADD_UNLESS_CARRIED(deflectNamePresentation)
    ADD_UNLESS_CARRIED(transferType)
    ADD_UNLESS_CARRIED(groupName)
    ADD_UNLESS_CARRIED(groupNumber)
    return names;
}

#undef ADD_UNLESS_CARRIED

// Words.

std::string wordTables() {
    std::string text;
    for (const Enumeration& enumeration : enumerations) {
        std::vector<Row> rows;
        for (const format::Word* word = enumeration.words.begin; word != enumeration.words.end; ++word) {
            if (!word->word.empty()) {
                rows.push_back({std::to_string(word->value), code(word->word)});
            }
        }
        std::sort(rows.begin(), rows.end());
        const format::Word& fallback = *enumeration.words.begin;
        text += (text.empty() ? "" : "\n") + ("**" + std::string(enumeration.title) + "**\n\n") +
                table({"Value", "Word"}, rows) + "\nAny other value is written as " + code(fallback.word) +
                ", any other word is read as " + std::to_string(fallback.value) + ".";
        for (const format::Word* word = enumeration.words.begin; word != enumeration.words.end; ++word) {
            text += word->word.empty() ? " An empty or absent one is read as " + std::to_string(word->value) + "." : "";
        }
        text += "\n";
    }
    return text;
}

// Examples.

/// A text of the format with a line for each element, for reading.
std::string inLines(const std::string& xml) {
    const Outline outline = outlineOf(xml);
    std::string text;
    std::size_t at = 0;
    std::size_t depth = 0;
    const auto add = [&](std::size_t end) {
        text += std::string(2 * depth, ' ') + xml.substr(at, end - at) + "\n";
        at = end;
    };
    if (outline.begin > 0) {
        add(outline.begin);
    }
    std::vector<const Element*> open;
    const auto closeBefore = [&](std::size_t place) {
        while (!open.empty() && open.back()->textEnd < place) {
            --depth;
            add(open.back()->end);
            open.pop_back();
        }
    };
    for (const Element& element : outline.elements) {
        closeBefore(element.begin);
        if (element.children.empty()) {
            add(element.end);
        } else {
            add(element.textBegin);
            open.push_back(&element);
            ++depth;
        }
    }
    closeBefore(xml.size());
    return "```xml\n" + text + "```\n";
}

void party(CallItemWithPicture& item) {
    item.setUniqueId("12:34");
    item.setEntryId("7");
    item.setSurname("Smith & Co");
    item.setFirstname("Ann");
    item.setPictureClip("ann.jpg");
}

template <class Call>
void numbers(Call& call) {
    call.number = "0301234";
    call.numberType = NumberType::MOBILE;
    call.connectedNumber = "0305555";
    call.connectedSurname = "Jones";
    call.timeDate = "2024-05-01 10:15:00";
}

MissedCallItem example(ItemType<MissedCallItem>) {
    MissedCallItem item;
    party(item);
    MissedCallItem::MissedCallInfo call;
    numbers(call);
    call.targetLog = CallLogEntryEvent::IN_NO_ANSWER;
    call.numberPresentation = CallLogEntryEvent::ALLOWED;
    call.groupName = "Sales";
    item.addCallInfoToList(call);
    return item;
}

DialledCallItem example(ItemType<DialledCallItem>) {
    DialledCallItem item;
    party(item);
    item.setJournalSeviceGroupBy("+49301234");
    DialledCallItem::DialledCallInfo call;
    numbers(call);
    call.resolvedNumber = "00301234";
    call.duration = "00:00:41";
    call.targetLog = CallLogEntryEvent::OUT_ANSWERED;
    item.addCallInfoToList(call);
    return item;
}

ReceivedCallItem example(ItemType<ReceivedCallItem>) {
    ReceivedCallItem item;
    party(item);
    ReceivedCallItem::ReceivedCallInfo call;
    numbers(call);
    call.duration = "00:00:41";
    call.deflectNumber = "600";
    call.deflectName = "Reception";
    item.addCallInfoToList(call);
    return item;
}

ForwardedCallItem example(ItemType<ForwardedCallItem>) {
    ForwardedCallItem item;
    party(item);
    ForwardedCallItem::ForwardedCallInfo call;
    numbers(call);
    call.duration = "00:00:41";
    call.transferType = TransferNumber::TRANSFER_DESTINATION_NUMBER;
    item.addCallInfoToList(call);
    return item;
}

CallBackItem exampleCallBack() {
    CallBackItem item;
    item.setSurname("Smith & Co");
    item.setNumber("0301234");
    item.setTimeDate("2024-05-01 10:15:00");
    item.setCallBackType(CallBackItem::BUSY);
    item.setCallBackState(CallBackItem::ACTIVE);
    return item;
}

// What comes back.

/// Writes and reads an item of one kind in which `set` set a value, and returns the row on it.
template <class Item, class Set, class Get>
Row roundTrip(const std::string& what, const std::string& value, Set set, Get get) {
    Item item;
    set(item);
    Item copy;
    KindInterface<Item>::decode(KindInterface<Item>::encode(item).c_str(), copy);
    return {what, code(value), get(copy)};
}

template <class Set>
Row callTrip(const std::string& what, const std::string& value, Set set) {
    using Call = ReceivedCallItem::ReceivedCallInfo;
    return roundTrip<ReceivedCallItem>(
        what, value,
        [&](ReceivedCallItem& item) {
            Call call;
            set(call);
            item.addCallInfoToList(call);
        },
        [](const ReceivedCallItem& item) {
            return item.getReceivedCallInfoList().empty() ? "no call at all"
                                                          : code(item.getReceivedCallInfoList().front().number);
        });
}

Row numberTrip(const std::string& what, const std::string& number) {
    return callTrip(what, number, [&](ReceivedCallItem::ReceivedCallInfo& call) { call.number = number; });
}

template <class Item>
Row pictureTrip() {
    return roundTrip<Item>(
        "picture of " + std::string(KindInterface<Item>::name), "p.jpg",
        [](Item& item) { item.setPictureClip("p.jpg"); }, [](const Item& item) { return code(item.getPictureClip()); });
}

Row textTrip(const std::string& what, const std::string& value, void (CallItemWithPicture::*set)(const std::string&),
             const std::string& (CallItemWithPicture::*get)() const) {
    return roundTrip<ReceivedCallItem>(
        what, value, [&](ReceivedCallItem& item) { (item.*set)(value); },
        [&](const ReceivedCallItem& item) { return code((item.*get)()); });
}

std::string roundTrips() {
    using Party = CallItemWithPicture;
    std::vector<Row> rows = {
        textTrip("unique id", "12:34", &Party::setUniqueId, &Party::getUniqueId),
        textTrip("unique id", "1&amp;2", &Party::setUniqueId, &Party::getUniqueId),
        textTrip("entry id", "a&lt;b", &Party::setEntryId, &Party::getEntryId),
        textTrip("entry id", "a</EntryId>b", &Party::setEntryId, &Party::getEntryId),
        textTrip("surname", "A<B & C", &Party::setSurname, &Party::getSurname),
        textTrip("surname", "A&lt;B", &Party::setSurname, &Party::getSurname),
    };
    forEachKind([&](auto type) { rows.push_back(pictureTrip<typename decltype(type)::Item>()); });
    for (const auto& [what, number] : std::vector<std::pair<std::string, std::string>>{
             {"text of a call", "A<B & C"},
             {"text of a call", "&lt;"},
             {"text of a call", "&amp;lt;"},
             {"text of a call", "1</Number>2"},
             {"text of a call", "1</Item>2"},
             {"text of a call", "1&lt;/Item&gt;2"},
             {"text of a call", "1</LogList>2"},
         }) {
        rows.push_back(numberTrip(what, number));
    }
    for (const Enumeration& enumeration : enumerations) {
        rows.push_back(
            {std::string(enumeration.title), code("99"), code(std::to_string(enumeration.words.begin->value))});
    }
    return table({"Value", "Written from", "Reads back as"}, rows);
}

std::string calledKinds() {
    std::vector<Row> rows;
    for (const KindDescriptor& kind : kindDescriptors()) {
        rows.push_back(
            {std::string(kind.name), code(kind.schema), kind.updateMethod.empty() ? "none" : code(kind.updateMethod)});
    }
    return table({"Kind", "Schema", "Method of its notification"}, rows);
}

std::string writeRequest() {
    MissedCallItem item;
    item.setUniqueId("7");
    std::string request = Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST) +
                          Helper::createXMLField(Helper::ENTRY, KindInterface<MissedCallItem>::encode(item));
    Helper::addXMLHeaderFooter(request, Helper::DAS_CALLLOGMISSEDCALLS);
    return inLines(request);
}

}  // namespace

std::map<std::string, std::string> formatSections() {
    std::map<std::string, std::string> sections;
    sections["kinds"] = calledKinds();
    sections["request"] = writeRequest();
    sections["words"] = wordTables();
    sections["round trips"] = roundTrips();
    for (const KindDescriptor& kind : kindDescriptors()) {
        sections[std::string(kind.name)] = elementTables(kind) + readingOrder(kind);
    }
    std::vector<Row> left;
    forEachKind([&](auto type) {
        using Item = typename decltype(type)::Item;
        const std::string name = KindInterface<Item>::name;
        const Item item = example(type);
        sections[name + " entry"] = inLines(KindInterface<Item>::encode(item));
        left.push_back({name, membersLeftOut<Item>()});
        if (name == KindInterface<ForwardedCallItem>::name) {
            sections["notification"] =
                inLines(KindInterface<Item>::update(item, "1234", JournalServiceObserverIfc::DELETED));
        }
    });
    sections["callback entry"] = inLines(encodeCallBack(exampleCallBack()));
    sections["count"] = inLines(Helper::obsReqMissedCallsCountUpdate(3));
    sections["members"] = table({"Kind", "Members of a call that are not carried"}, left);
    return sections;
}

std::map<std::string, std::string> manualSections() {
    std::map<std::string, std::string> sections;
    for (const auto& [name, markdown] : formatSections()) {
        const bool isFurtherExample = name != "missed entry" && name.find(" entry") != std::string::npos;
        if (!isFurtherExample) {
            sections[name] = manText(markdown);
        }
    }
    return sections;
}

const SectionMarks markdownMarks = {"<!-- generated: ", " -->\n", "<!-- end -->", "\n"};
const SectionMarks manualMarks = {".\\\" generated: ", "\n", ".\\\" end", ""};

std::string withSections(const std::string& document, const std::map<std::string, std::string>& sections,
                         const SectionMarks& marks) {
    std::string result;
    std::size_t shown = 0;
    std::size_t at = 0;
    for (std::size_t mark = document.find(marks.begin); mark != std::string::npos;
         mark = document.find(marks.begin, at)) {
        const std::size_t nameBegin = mark + marks.begin.size();
        const std::size_t nameEnd = document.find(marks.beginEnd, nameBegin);
        const std::string name = document.substr(nameBegin, nameEnd - nameBegin);
        const auto section = sections.find(name);
        const std::size_t close = document.find(marks.end, mark);
        if (nameEnd == std::string::npos || section == sections.end() || close == std::string::npos) {
            throw std::runtime_error("the document has an unknown section or one without end: " + name.substr(0, 60));
        }
        result +=
            document.substr(at, nameEnd + marks.beginEnd.size() - at) + marks.blank + section->second + marks.blank;
        at = close;
        ++shown;
    }
    if (shown != sections.size()) {
        throw std::runtime_error("the document shows " + std::to_string(shown) + " sections, the code has " +
                                 std::to_string(sections.size()));
    }
    return result + document.substr(at);
}

}  // namespace calljournal
