// The importer's work on texts: what is UTF-8 is decided as the grammar of RFC 3629 does, what is converted is UTF-8,
// and what is cut is the longest prefix that fits.

#include "FakePlatform.h"
#include "Fuzz.h"
#include "Probe.h"
#include "ReferenceImporter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fakePlatform().reset();
    static Probe importer;
    std::string text = textOf(data, size);
    FUZZ_CHECK(importer.is_valid_utf8(text.c_str()) == matchesUtf8Grammar(text.c_str()));
    const std::string converted =
        importer.convertUnicodeANSIToUTF8(reinterpret_cast<unsigned char*>(&text[0]), static_cast<int>(text.size()));
    FUZZ_CHECK(importer.is_valid_utf8(converted.c_str()));
    FUZZ_CHECK(converted.size() >= text.size() && converted.size() <= 2 * text.size());
    const std::string cut = importer.trimFieldLength(text);
    FUZZ_CHECK(cut == longestFittingPrefix(text));
    FUZZ_CHECK(importer.trimFieldLength(cut) == cut);
    return 0;
}
