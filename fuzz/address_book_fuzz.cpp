// The readers of address books: any bytes end, with records or with a sentence; lines go forward, what cannot be used
// has no values, texts are UTF-8 without control characters, and a second reading gives the same.

#include <sstream>
#include <vector>

#include "AddressReader.h"
#include "Charset.h"
#include "Fuzz.h"

namespace {

using calljournal::AddressRecord;
using calljournal::AddressValue;

bool isText(const std::string& text) {
    calljournal::Utf8Check check;
    check.add(text);
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7f) {
            return false;
        }
    }
    return check.isValid() && !text.empty();
}

void checkRecord(const AddressRecord& record, std::size_t lineBefore) {
    FUZZ_CHECK(record.firstLine > lineBefore && record.lastLine >= record.firstLine);
    FUZZ_CHECK(record.fault.empty() || record.values.empty());
    for (const AddressValue& value : record.values) {
        FUZZ_CHECK(value.kind <= calljournal::FieldKind::other);
        FUZZ_CHECK(isText(value.text));
    }
}

/// All texts of an address book, or why there are none.
std::string readAll(const std::string& bytes, const calljournal::ReadingOptions& options) {
    std::istringstream stream(bytes);
    std::string all;
    try {
        const auto book = calljournal::openAddressBook(stream, options);
        std::size_t line = 0;
        for (AddressRecord record; book->next(record); line = record.lastLine) {
            checkRecord(record, line);
            all += std::to_string(record.number) + record.fault;
            for (const AddressValue& value : record.values) {
                all += value.text + '\n';
            }
        }
    } catch (const calljournal::AddressBookError& error) {
        FUZZ_CHECK(*error.what() != '\0');
        return error.what();
    }
    return all;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const charsets[] = {"",     "", "UTF-8", "UTF-16", "windows-1252", "Shift_JIS", "ISO-2022-JP",
                                           "UTF-7"};
    Input input(data, size);
    calljournal::ReadingOptions options;
    options.charset = charsets[input.byte() % 8];
    options.mappings = {{"x", calljournal::FieldKind::mobile}};
    const std::string bytes = input.rest();
    FUZZ_CHECK(readAll(bytes, options) == readAll(bytes, options));
    return 0;
}
