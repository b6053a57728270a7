#include "CallRecord.h"

#include "ItemJson.h"
#include "Kinds.h"
#include "Text.h"
#include "Time.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr std::string_view kindKey = "Kind";
constexpr std::string_view withheldKey = "Withheld";

/// The log that a call of a kind belongs to unless it says otherwise.
template <class Item>
constexpr auto usualLog = CallLogEntryEvent::IN_ANSWERED;
template <>
constexpr auto usualLog<MissedCallItem> = CallLogEntryEvent::IN_NO_ANSWER;
template <>
constexpr auto usualLog<DialledCallItem> = CallLogEntryEvent::OUT_ANSWERED;

/// Makes a call of its elements.
template <class Item>
NewCall<Item> newCallFromJson(const Json& json) {
    NewCall<Item> call;
    call.call.targetLog = usualLog<Item>;
    bool isWithheld = false;
    for (const auto& [key, value] : json.get_ref<const Json::object_t&>()) {
        if (key == kindKey || takeCallValue<Item>(key, value, call.call)) {
            continue;
        }
        if (key == withheldKey) {
            isWithheld = jsonFlag(value, key);
        } else if (key == format::text::UNIQUEID || !takeItemValue(key, value, call.party)) {
            throw ValueError(key + ": a " + KindInterface<Item>::name + " call has no such element");
        }
    }
    if (isWithheld == !call.call.number.empty()) {
        throw ValueError("a call has either a number or is withheld");
    }
    if (call.call.timeDate.empty()) {
        call.call.timeDate = currentTime();
    }
    const bool isNamed = !call.party.getSurname().empty() || !call.party.getFirstname().empty();
    if (!json.contains(format::text::NUMBERPRESENTATION)) {
        call.call.numberPresentation = isWithheld ? CallLogEntryEvent::NOT_ALLOWED : CallLogEntryEvent::ALLOWED;
    }
    if (!json.contains(format::text::NAMEPRESENTATION)) {
        call.call.namePresentation = isNamed ? CallLogEntryEvent::ALLOWED : CallLogEntryEvent::NOT_AVAILABLE;
    }
    return call;
}

template <>
NewCall<StoredCallBack> newCallFromJson(const Json& json) {
    NewCall<StoredCallBack> call;
    for (const auto& [key, value] : json.get_ref<const Json::object_t&>()) {
        if (key != kindKey && (key == format::text::UNIQUEID || !takeItemValue(key, value, call.party))) {
            throw ValueError(key + ": a call-back has no such element");
        }
    }
    if (call.party.getNumber().empty()) {
        throw ValueError("a call-back needs a number");
    }
    if (call.party.getTimeDate().empty()) {
        call.party.setTimeDate(currentTime());
    }
    return call;
}

/// Does `work`; a refusal says at which place of a file: "line 3: ...", "line 3, column 7: ...".
template <class Work>
void workAt(const std::string& place, Work work) {
    try {
        work();
    } catch (const ValueError& error) {
        constexpr std::string_view onlyLine = "line 1, ";
        const std::string_view sentence = error.what();
        const bool hasColumn = sentence.substr(0, onlyLine.size()) == onlyLine;
        throw ValueError((place + (hasColumn ? ", " : ": ")).append(sentence.substr(hasColumn ? onlyLine.size() : 0)));
    }
}

}  // namespace

void addCall(const Json& json, const std::string& kind, NewCalls& calls) {
    if (!json.is_object()) {
        throw ValueError("a call is a JSON object");
    }
    const auto named = json.find(kindKey);
    const std::string& word = named == json.end() ? kind : jsonString(*named, std::string(kindKey));
    bool isKnown = false;
    withKind(word, [&](auto type) {
        using Item = typename decltype(type)::Item;
        std::get<std::vector<NewCall<Item>>>(calls).push_back(newCallFromJson<Item>(json));
        isKnown = true;
    });
    if (!isKnown) {
        throw ValueError("\"" + word + "\" is not one of " + joined(kindNames()));
    }
}

NewCalls readCalls(std::string_view text, const std::string& kind) {
    NewCalls calls;
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start != std::string_view::npos && text[start] == '[') {
        std::size_t count = 0;
        for (const Json& call : parseJson(text)) {
            workAt("call " + std::to_string(++count), [&] { addCall(call, kind, calls); });
        }
        return calls;
    }
    std::size_t lineNumber = 0;
    for (const std::string_view line : split(text, '\n')) {
        ++lineNumber;
        if (line.find_first_not_of(" \t\r") != std::string_view::npos) {
            workAt("line " + std::to_string(lineNumber), [&] { addCall(parseJson(line), kind, calls); });
        }
    }
    return calls;
}

}  // namespace calljournal
