#include "AddressBooks.h"

#include <algorithm>
#include <memory>
#include <sstream>

namespace calljournal {

namespace {

std::string inBrackets(const std::string& text) {
    return text.empty() ? "" : " [" + text + "]";
}

std::string asText(const AddressRecord& record) {
    std::ostringstream text;
    text << record.number << " (" << record.firstLine << '-' << record.lastLine << ')'
         << (record.fault.empty() ? "" : " " + record.fault) << '\n';
    for (const AddressValue& value : record.values) {
        text << "  " << fieldKindName(value.kind) << ' ' << value.text << inBrackets(value.source) << '\n';
    }
    for (const Problem& problem : record.problems) {
        text << "  ! " << problem.line << inBrackets(problem.column) << ' ' << problem.text << '\n';
    }
    return text.str();
}

}  // namespace

std::vector<AddressRecord> recordsOf(const std::string& bytes, const ReadingOptions& options) {
    std::istringstream stream(bytes);
    const std::unique_ptr<AddressReader> book = openAddressBook(stream, options);
    std::vector<AddressRecord> records;
    for (AddressRecord record; book->next(record);) {
        records.push_back(record);
    }
    return records;
}

std::string read(const std::string& bytes, const ReadingOptions& options) {
    std::string text;
    for (const AddressRecord& record : recordsOf(bytes, options)) {
        text += asText(record);
    }
    return text;
}

std::string recognised(const std::string& bytes, const ReadingOptions& options) {
    std::istringstream stream(bytes);
    const std::unique_ptr<AddressReader> book = openAddressBook(stream, options);
    const Recognition& found = book->recognition();
    std::string text = found.charset + " (" + found.charsetWhy + ")";
    if (found.format == "vCard") {
        return text + ", vCard";
    }
    text += std::string(", ") + (found.delimiter == '\t' ? "tab" : std::string(1, found.delimiter));
    return text + ", " + found.program + ' ' + found.language;
}

std::string firstText(const AddressRecord& record, FieldKind kind) {
    const auto* const found = std::find_if(record.values.begin(), record.values.end(),
                                           [=](const AddressValue& value) { return value.kind == kind; });
    return found == record.values.end() ? std::string() : found->text;
}

std::string refusal(const std::string& bytes, const ReadingOptions& options) {
    try {
        recordsOf(bytes, options);
    } catch (const AddressBookError& error) {
        return error.what();
    }
    return {};
}

}  // namespace calljournal
