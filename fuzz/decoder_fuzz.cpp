// The decoders of one kind of entry, FUZZ_KIND: on any text they give what the literal rules give, and what was read,
// written and read again stays what it was.

#include "FakePlatform.h"
#include "Kinds.h"
#include "TokenText.h"

namespace {

using Kind = FUZZ_KIND;

/// Whether reading changes nothing of what writing wrote: no text holds markup or an entity, but for the two names that
/// are escaped.
bool isPlain(const rules::Members& members) {
    for (const auto& [name, value] : members) {
        const bool isEscaped = name == "Surname" || name == "Firstname";
        if (!isEscaped && value.find_first_of("<&") != std::string::npos) {
            return false;
        }
    }
    return true;
}

bool isPlain(const rules::Entry& entry) {
    bool plain = isPlain(entry.item) && entry.item.at("UniqueId").find(':') == std::string::npos;
    for (const rules::Members& call : entry.calls) {
        plain = plain && isPlain(call);
    }
    return plain;
}

void checkItem(const std::string& text) {
    static const rules::Members freshCall = describeCall<Kind>(Kind::Info());
    Kind::Item item = filledItem<Kind>();
    rules::Entry expected = describeEntry<Kind>(item);
    Kind::decode(text.c_str(), item);
    rules::decodeItem(Kind::format(), text, freshCall, expected);
    FUZZ_CHECK(describeEntry<Kind>(item) == expected);

    const std::string body = Kind::encode(item, false);
    FUZZ_CHECK(body == rules::encodeItem(Kind::format(), expected, false));
    if (isPlain(expected)) {
        Kind::Item again;
        Kind::decode(body.c_str(), again);
        again.setPictureClip(item.getPictureClip());  // a missed entry's is written under another name
        FUZZ_CHECK(Kind::encode(again, false) == body);
    }
}

void checkCalls(const std::string& text) {
    static const rules::Members freshCall = describeCall<Kind>(Kind::Info());
    std::list<Kind::Info> calls(1);
    std::vector<rules::Members> expected;
    FUZZ_CHECK(Kind::decodeCalls(text.c_str(), calls) == rules::decodeCalls(Kind::format(), text, freshCall, expected));
    FUZZ_CHECK(describeCalls<Kind>(calls) == expected);
}

void checkCall(const std::string& text) {
    Kind::Info call = filledCall<Kind>();
    rules::Members expected = describeCall<Kind>(call);
    Kind::decodeCall(text.c_str(), call);
    rules::decodeCall(Kind::format(), text, expected);
    FUZZ_CHECK(describeCall<Kind>(call) == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TokenText toText(Kind::format());
    fakePlatform().reset();
    Input input(data, size);
    const unsigned choice = input.byte();
    std::string text = choice & 1 ? toText(input) : input.rest();
    if (choice & 2) {
        text = "<LogList>" + text + "</LogList>";
    }
    if (choice & 4) {
        text = Kind::encode(filledItem<Kind>(), false) + text;
    }
    // The literal rules copy what is left for each call that they cut out.
    text.resize(std::min<std::size_t>(text.size(), 4000));
    checkItem(text);
    checkCalls(text);
    checkCall(text);
    return 0;
}
