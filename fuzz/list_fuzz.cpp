// The missed call list, read through the host's XML parser: on any reply what the literal reader gives, and on replies
// as they are written what the decoder gives.

#include <deque>

#include "FakePlatform.h"
#include "Kinds.h"
#include "LiteralReading.h"
#include "ScriptedDataAccessService.h"
#include "TokenText.h"

namespace {

/// Normalises what was read; the service takes every deletion.
void checkNormalised(const std::string& reply, const std::vector<rules::Entry>& entries) {
    calljournal::ScriptedDataAccessService service;
    CallListDatabaseAdapter adapter;
    adapter.init(&service);
    std::deque<MissedCallItem> list;
    adapter.processMissedCallDbXml(reply, list);
    const rules::Normalised expected = rules::normalise(entries);
    FUZZ_CHECK(std::is_sorted(list.begin(), list.end(), isMissedCallOrdered));
    FUZZ_CHECK(list.size() == expected.list.size());
    FUZZ_CHECK(service.requests().size() == expected.requests.size());
    if (hasOneOrder(entries)) {
        FUZZ_CHECK(describeList(list) == expected.list);
        FUZZ_CHECK(service.requests() == expected.requests);
    }
}

void checkAnyReply(const std::string& reply) {
    std::deque<MissedCallItem> list(1);
    FUZZ_CHECK(Helper::parseXMLMissedCallList(reply, list));
    const std::vector<rules::Entry> entries = describeList(list);
    FUZZ_CHECK(entries == readLiterally(reply));
    for (const rules::Entry& entry : entries) {
        FUZZ_CHECK(entry.calls.size() <= 10);
    }
    checkNormalised(reply, entries);
}

/// A text without markup, entities or what XML forbids.
std::string plainText(Input& input) {
    std::string text;
    for (unsigned length = input.byte() % 20; length > 0; --length) {
        text += static_cast<char>('A' + input.byte() % 58);
    }
    return text;
}

void checkWrittenReply(Input& input) {
    MissedCallItem item;
    for (const auto& row : Missed::itemMembers()) {
        row.set(item, row.form == rules::Form::text ? plainText(input) : std::to_string(input.byte() % 2));
    }
    for (unsigned count = 1 + input.byte() % 10; count > 0; --count) {
        MissedCallItem::MissedCallInfo call;
        for (const auto& row : Missed::infoMembers()) {
            row.set(call, row.form == rules::Form::text   ? plainText(input)
                          : row.form == rules::Form::flag ? std::to_string(input.byte() % 2)
                                                          : std::to_string(input.byte() % 9));
        }
        item.appendCallInfoToList(call);
    }
    const std::string body = Helper::createXMLMissedCallItemBody(item, false);
    MissedCallItem decoded;
    Helper::parseXMLMissedCallItem(body.c_str(), decoded);
    std::deque<MissedCallItem> list;
    Helper::parseXMLMissedCallList("<Schema name=\"CallLogMissedCalls\"><Entry>" + body + "</Entry></Schema>", list);
    FUZZ_CHECK(list.size() == 1 && list.front() == decoded);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TokenText toText(rules::missedFormat());
    fakePlatform().reset();
    Helper::init();
    Input input(data, size);
    const unsigned choice = input.byte();
    if (choice % 4 == 0) {
        checkWrittenReply(input);
        return 0;
    }
    std::string text = choice & 1 ? toText(input) : input.rest();
    if (choice & 4) {
        text = "<Schema name=\"CallLogMissedCalls\"><Entry>" + text + "</Entry></Schema>";
    }
    checkAnyReply(text);
    return 0;
}
