// A whole import comes to what the slow reference comes to, log included, under both limits and on every hardware.

#include "Fuzz.h"
#include "ImportFixture.h"
#include "ImportState.h"
#include "Probe.h"
#include "ReferenceImporter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const unsigned choice = input.byte();
    fakePlatform().reset();
    fakePlatform().switchOn("ImportContactscSVParser", 2);
    fakePlatform().freeSpace = 0xFFFFFFFFU;
    fakePlatform().isNq = choice & 8;
    fakePlatform().hardwareVariant = choice & 16 ? 1 : 0;
    // An empty phonebook, or one that is nearly full.
    const unsigned existing = choice & 1 ? (fakePlatform().isNq ? 990 : 90) + input.byte() % 20 : 0;
    std::string content = input.rest();
    if (choice & 2) {
        content = outlookHeader() + content;
    } else if (choice & 4) {
        content = tamberHeader() + content;
    }

    ReferenceImporter reference(content, existing);
    reference.isTq2 = choice & 16;
    reference.parseFile(fakePlatform().isNq);
    const TemporaryFile file(content);
    const Probe importer(file.path(), existing);

    FUZZ_CHECK(importer.getCSVType() >= 0 && importer.getCSVType() <= 8);
    FUZZ_CHECK(stateOf(importer) == stateOf(reference));
    FUZZ_CHECK(fakePlatform().logTexts() == reference.log);
    FUZZ_CHECK(importer.file.is_open() == reference.fileOpen);
    FUZZ_CHECK(fits(importer.tokens));
    FUZZ_CHECK(importer.getContacts().size() <= (fakePlatform().isNq ? 1000U : 100U));
    FUZZ_CHECK(!file.exists());
    return 0;
}
