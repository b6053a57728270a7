// The command's JSON input: any text is taken or refused with a sentence. An entry that is taken shows as JSON that
// means the same; calls that are taken read the same one a line and in an array; whatever is decoded shows as JSON.

#include <sstream>

#include "CallRecord.h"
#include "DecodeCommand.h"
#include "EncodeCommand.h"
#include "Fuzz.h"
#include "ItemJson.h"
#include "Kinds.h"

using calljournal::Json;
using calljournal::ValueError;

namespace {

template <class Item>
void checkEncoded(const std::string& text) {
    using Kind = calljournal::KindInterface<Item>;
    std::istringstream in(text);
    std::ostringstream body;
    try {
        calljournal::encodeEntry(Kind::name, in, body);
    } catch (const ValueError& error) {
        FUZZ_CHECK(*error.what() != '\0');
        return;
    }
    const Json shown = calljournal::toJson(calljournal::itemFromJson<Item>(calljournal::parseJson(text)));
    const Item again = calljournal::itemFromJson<Item>(calljournal::parseJson(calljournal::jsonText(shown, false)));
    FUZZ_CHECK(calljournal::toJson(again) == shown);
    FUZZ_CHECK(Kind::encode(again) + '\n' == body.str());
}

template <class Item>
void checkDecoded(const std::string& text) {
    std::istringstream in(text);
    std::ostringstream json;
    std::ostringstream problems;
    const auto code = calljournal::decodeEntry(calljournal::KindInterface<Item>::name, in, json, problems);
    FUZZ_CHECK((code == calljournal::exitDone) == problems.str().empty());
    FUZZ_CHECK(Json::accept(json.str()));
}

/// Writes the calls as they would be stored, but for their times: a call without one has that of its reading.
std::string textOf(const calljournal::NewCalls& calls) {
    std::string text;
    calljournal::forEachKind([&](auto type) {
        using Item = typename decltype(type)::Item;
        for (calljournal::NewCall<Item> one : calljournal::callsOfKind<Item>(calls)) {
            if constexpr (calljournal::KindInterface<Item>::isCallLog) {
                one.call.timeDate.clear();
                one.party.addCallInfoToList(one.call);
            } else {
                one.party.setTimeDate("");
            }
            text += calljournal::KindInterface<Item>::encode(one.party) + '\n';
        }
    });
    return text;
}

void checkRecorded(const std::string& text, const std::string& kind) {
    std::string calls;
    try {
        calls = textOf(calljournal::readCalls(text, kind));
    } catch (const ValueError& error) {
        FUZZ_CHECK(*error.what() != '\0');
        return;
    }
    Json array = Json::array();
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start != std::string::npos && text[start] == '[') {
        array = calljournal::parseJson(text);
    } else {
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) {
            if (line.find_first_not_of(" \t\r") != std::string::npos) {
                array.push_back(calljournal::parseJson(line));
            }
        }
    }
    std::string lines;
    for (const Json& call : array) {
        lines += calljournal::jsonText(call, false) + '\n';
    }
    FUZZ_CHECK(textOf(calljournal::readCalls(lines, kind)) == calls);
    FUZZ_CHECK(textOf(calljournal::readCalls(calljournal::jsonText(array, true), kind)) == calls);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<std::string> kinds = calljournal::kindNames();
    Input input(data, size);
    const std::string& kind = kinds[input.byte() % kinds.size()];
    const std::string text = input.rest();
    checkRecorded(text, kind);
    calljournal::withCallLog(kind, [&](auto type) {
        checkEncoded<typename decltype(type)::Item>(text);
        checkDecoded<typename decltype(type)::Item>(text);
    });
    return 0;
}
