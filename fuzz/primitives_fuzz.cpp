// getXMLValue2, getAndRemoveXMLValue and getMethodFromXMLMsg do what the literal rules do.

#include "CallListDatabaseAdapterHelper.h"
#include "TokenText.h"

using Helper = CallListDatabaseAdapterHelper;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TokenText toText(rules::missedFormat());
    static const std::vector<std::string> tags = {"Item",   "LogList", "Number", "NumberType",
                                                  "Method", "",        "It",     "Item>"};
    Input input(data, size);
    const unsigned choice = input.byte();
    const std::string& tag = tags[choice / 2 % tags.size()];
    const std::size_t from = input.byte();
    std::string text = choice & 1 ? toText(input) : input.rest();
    const std::size_t cursor = std::min(from, std::string(text.c_str()).size());

    std::string out = "before";
    std::string expected = out;
    const char* next = Helper::getXMLValue2(text.c_str() + cursor, tag.c_str(), out);
    FUZZ_CHECK(static_cast<std::size_t>(next - text.c_str()) == rules::value(text, cursor, tag, expected));
    FUZZ_CHECK(out == expected);

    bool flag = choice & 1;
    bool expectedFlag = flag;
    next = Helper::getXMLValue2(text.c_str() + cursor, tag.c_str(), flag);
    FUZZ_CHECK(static_cast<std::size_t>(next - text.c_str()) == rules::flag(text, cursor, tag, expectedFlag));
    FUZZ_CHECK(flag == expectedFlag);

    FUZZ_CHECK(Helper::getMethodFromXMLMsg(text) == rules::method(text));

    // A few times, since a text may grow for ever.
    std::string expectedText = text;
    for (int times = 0; times < 3; ++times) {
        FUZZ_CHECK(Helper::getAndRemoveXMLValue(text, tag.c_str(), out) == rules::cutOut(expectedText, tag, expected));
        FUZZ_CHECK(out == expected && text == expectedText);
    }
    return 0;
}
