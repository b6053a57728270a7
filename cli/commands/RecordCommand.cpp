#include "RecordCommand.h"

#include <algorithm>
#include <istream>
#include <iterator>
#include <ostream>

#include "CallBackJson.h"
#include "CallRecord.h"
#include "EntryView.h"
#include "Kinds.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr char kindKey[] = "Kind";

Json withoutKind(Json json) {
    json.erase(kindKey);
    return json;
}

/// Says what was written: each entry as JSON if asked for, a sentence on one, or the number of them.
template <class Entry>
void tellWritten(const std::vector<Entry>& written, std::size_t calls, const std::string& kind,
                 const GlobalOptions& globals, std::ostream& out) {
    if (globals.format == "json") {
        for (const Entry& entry : written) {
            out << jsonText(toJson(entry), false) << '\n';
        }
    } else if (calls == 1) {
        out << describe(viewOf(written.front())) << '\n';
    } else {
        out << calls << ' ' << kind << " calls recorded in " << written.size()
            << (written.size() == 1 ? " entry\n" : " entries\n");
    }
}

/// Returns what `read` returns; a refusal says at which place of a file.
template <class Read>
Json readAt(const std::string& place, Read read) {
    try {
        return read();
    } catch (const ValueError& error) {
        throw ValueError(place + error.what());
    }
}

template <class Item>
void recordKind(const std::vector<Json>& calls, Session& session, const GlobalOptions& globals, std::ostream& out) {
    std::vector<NewCall<Item>> newCalls;
    for (const Json& call : calls) {
        if (call[kindKey] == KindInterface<Item>::name) {
            newCalls.push_back(newCallFromJson<Item>(withoutKind(call)));
        }
    }
    if (!newCalls.empty()) {
        tellWritten(session.journal().record(newCalls), newCalls.size(), KindInterface<Item>::name, globals, out);
    }
}

void recordCallBacks(const std::vector<Json>& calls, Session& session, const GlobalOptions& globals,
                     std::ostream& out) {
    std::vector<CallBackItem> items;
    for (const Json& call : calls) {
        if (call[kindKey] == callBackKind) {
            items.push_back(callBackFromJson(withoutKind(call)));
        }
    }
    if (!items.empty()) {
        tellWritten(session.journal().recordCallBacks(items), items.size(), callBackKind, globals, out);
    }
}

}  // namespace

std::vector<std::string> recordableKinds() {
    std::vector<std::string> kinds = kindNames();
    kinds.emplace_back(callBackKind);
    return kinds;
}

Json checkedCall(Json json, const std::string& kind) {
    if (!json.is_object()) {
        throw ValueError("a call is a JSON object");
    }
    if (!json.contains(kindKey)) {
        json[kindKey] = kind;
    }
    const std::string word = jsonString(json[kindKey], kindKey);
    const std::vector<std::string> known = recordableKinds();
    if (std::find(known.begin(), known.end(), word) == known.end()) {
        throw ValueError("\"" + word + "\" is not one of " + joined(known));
    }
    const Json elements = withoutKind(json);
    if (word == callBackKind) {
        callBackFromJson(elements);
    }
    withKind(word, [&](auto type) { newCallFromJson<typename decltype(type)::Item>(elements); });
    return json;
}

std::vector<Json> readCallFile(std::istream& in, const std::string& kind) {
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    std::vector<Json> calls;
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start != std::string::npos && text[start] == '[') {
        for (Json& call : parseJson(text)) {
            const std::string place = "call " + std::to_string(calls.size() + 1) + ": ";
            calls.push_back(readAt(place, [&] { return checkedCall(std::move(call), kind); }));
        }
        return calls;
    }
    std::size_t lineNumber = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string line = text.substr(begin, end - begin);
        const std::string place = "line " + std::to_string(++lineNumber) + ": ";
        begin = end + 1;
        if (line.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        calls.push_back(readAt(place, [&] { return checkedCall(parseJson(line), kind); }));
    }
    return calls;
}

void recordCalls(const RecordOptions& options, const std::vector<Json>& calls, Session& session,
                 const GlobalOptions& globals, std::ostream& out) {
    PrintingObserver observer(out);
    if (options.notify) {
        session.journal().addObserver(observer);
    }
    forEachKind([&](auto type) { recordKind<typename decltype(type)::Item>(calls, session, globals, out); });
    recordCallBacks(calls, session, globals, out);
}

}  // namespace calljournal
