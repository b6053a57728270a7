#include "CallRecord.h"

#include <algorithm>

#include "ItemJson.h"
#include "Kinds.h"
#include "Time.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr char kindKey[] = "Kind";
constexpr char withheldKey[] = "Withheld";

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
    call.call.timeDate = currentTime();
    bool isWithheld = false;
    for (const auto& [key, value] : json.items()) {
        if (key == withheldKey) {
            isWithheld = jsonFlag(value, key);
        } else if (key != format::text::UNIQUEID && takeItemValue(key, value, call.party)) {
            continue;
        } else if (!takeCallValue<Item>(key, value, call.call)) {
            throw ValueError(key + ": a " + KindInterface<Item>::name + " call has no such element");
        }
    }
    if (isWithheld == !call.call.number.empty()) {
        throw ValueError("a call has either a number or is withheld");
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
    call.party.setTimeDate(currentTime());
    for (const auto& [key, value] : json.items()) {
        if (key == format::text::UNIQUEID || !takeItemValue(key, value, call.party)) {
            throw ValueError(key + ": a call-back has no such element");
        }
    }
    if (call.party.getNumber().empty()) {
        throw ValueError("a call-back needs a number");
    }
    return call;
}

Json withoutKind(Json json) {
    json.erase(kindKey);
    return json;
}

/// Returns what `read` returns; a refusal says at which place of a file: "line 3: ...", "line 3, column 7: ...".
template <class Read>
Json readAt(const std::string& place, Read read) {
    try {
        return read();
    } catch (const ValueError& error) {
        constexpr std::string_view onlyLine = "line 1, ";
        const std::string_view sentence = error.what();
        const bool hasColumn = sentence.substr(0, onlyLine.size()) == onlyLine;
        throw ValueError((place + (hasColumn ? ", " : ": ")).append(sentence.substr(hasColumn ? onlyLine.size() : 0)));
    }
}

}  // namespace

Json checkedCall(Json json, const std::string& kind) {
    if (!json.is_object()) {
        throw ValueError("a call is a JSON object");
    }
    if (!json.contains(kindKey)) {
        json[kindKey] = kind;
    }
    const std::string word = jsonString(json[kindKey], kindKey);
    const std::vector<std::string> known = kindNames();
    if (std::find(known.begin(), known.end(), word) == known.end()) {
        throw ValueError("\"" + word + "\" is not one of " + joined(known));
    }
    withKind(word, [&](auto type) { newCallFromJson<typename decltype(type)::Item>(withoutKind(json)); });
    return json;
}

std::vector<Json> readCalls(const std::string& text, const std::string& kind) {
    std::vector<Json> calls;
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start != std::string::npos && text[start] == '[') {
        for (Json& call : parseJson(text)) {
            const std::string place = "call " + std::to_string(calls.size() + 1);
            calls.push_back(readAt(place, [&] { return checkedCall(std::move(call), kind); }));
        }
        return calls;
    }
    std::size_t lineNumber = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string line = text.substr(begin, end - begin);
        const std::string place = "line " + std::to_string(++lineNumber);
        begin = end + 1;
        if (line.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        calls.push_back(readAt(place, [&] { return checkedCall(parseJson(line), kind); }));
    }
    return calls;
}

template <class Item>
std::vector<NewCall<Item>> callsOfKind(const std::vector<Json>& calls) {
    std::vector<NewCall<Item>> ofKind;
    for (const Json& call : calls) {
        if (call.at(kindKey) == KindInterface<Item>::name) {
            ofKind.push_back(newCallFromJson<Item>(withoutKind(call)));
        }
    }
    return ofKind;
}

#define CALLJOURNAL_CALLS(Kind, word) \
    template std::vector<NewCall<Kind##CallItem>> callsOfKind(const std::vector<Json>& calls);

CALLJOURNAL_CALL_KINDS(CALLJOURNAL_CALLS)
template std::vector<NewCall<StoredCallBack>> callsOfKind(const std::vector<Json>& calls);

}  // namespace calljournal
