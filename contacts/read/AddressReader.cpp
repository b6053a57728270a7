#include "AddressReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <system_error>
#include <utility>

#include "Charset.h"
#include "ColumnFinder.h"
#include "CsvReader.h"
#include "Files.h"
#include "LineReader.h"
#include "Text.h"
#include "TextStream.h"
#include "Utf8.h"
#include "VCardReader.h"

namespace calljournal {

namespace {

/// How much of the text is looked at for its format and its header.
constexpr std::size_t beginningSize = longestRecord;

void seek(std::istream& bytes, std::istream::pos_type place) {
    bytes.clear();
    bytes.seekg(place);
}

std::string beginningOf(std::istream& bytes, const std::string& charset) {
    TextStream stream(bytes, charset);
    std::string text;
    while (text.size() < beginningSize && stream.read(text)) {
    }
    return text;
}

/// A reader with the file that it reads.
class FileReader : public AddressReader {
public:
    FileReader(std::unique_ptr<std::ifstream> file, std::unique_ptr<AddressReader> reader)
        : file_(std::move(file)), reader_(std::move(reader)) {
        recognition_ = reader_->recognition();
    }

    bool next(AddressRecord& record) override { return reader_->next(record); }
    std::size_t bytesRead() const override { return reader_->bytesRead(); }

private:
    std::unique_ptr<std::ifstream> file_;
    std::unique_ptr<AddressReader> reader_;
};

template <class Reader>
std::unique_ptr<AddressReader> openAs(TextStream stream, std::shared_ptr<const ColumnFinder> finder,
                                      Recognition recognition) {
    return std::make_unique<Reader>(std::move(stream), std::move(finder), std::move(recognition));
}

/// A format that the beginning of a text shows. A text in none of them is read as CSV.
struct Format {
    bool (*isIn)(std::string_view beginning);
    std::unique_ptr<AddressReader> (*open)(TextStream, std::shared_ptr<const ColumnFinder>, Recognition);
};

constexpr Format formats[] = {
    {isVCard, openAs<VCardReader>},
};

std::size_t characters(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return !isContinuation(c); }));
}

std::string kindText(const RecognisedColumn& column) {
    if (!column.isKnown) {
        return "not recognised";
    }
    if (column.kind == FieldKind::other) {
        return "known, not taken over";
    }
    return std::string(fieldKindName(column.kind)) + (column.isMapped ? " (--map)" : "");
}

/// A name for a table: in one line, and not all of it if it is long.
std::string shownName(std::string_view name) {
    constexpr std::size_t longest = 60;
    return inOneLine(shortened(name, longest));
}

/// The columns that are shown; the others are counted.
constexpr std::size_t mostShown = 100;

std::string columnLines(const std::vector<RecognisedColumn>& columns) {
    constexpr std::size_t widest = 40;
    const std::size_t count = std::min(columns.size(), mostShown);
    std::size_t width = 0;
    for (std::size_t i = 0; i < count; ++i) {
        width = std::max(width, characters(shownName(columns[i].name)));
    }
    width = std::min(width, widest);
    std::string lines;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name = shownName(columns[i].name);
        const std::size_t length = characters(name);
        lines +=
            "  " + name + std::string(length < width ? width - length : 0, ' ') + "  " + kindText(columns[i]) + '\n';
    }
    return count < columns.size() ? lines + "  and " + std::to_string(columns.size() - count) + " more\n" : lines;
}

/// Throws AddressBookError if a device has no end that is worth waiting for. Files have one, and records come and go.
void refuseEndless(const std::string& path, std::istream& bytes) {
    std::error_code ignored;
    if (std::filesystem::is_character_file(path, ignored) && bytes.tellg() != std::istream::pos_type(-1) &&
        !bytes.ignore(static_cast<std::streamsize>(mostInput) + 1).eof()) {
        throw AddressBookError(AddressBookError::Reason::file, path + ": " + tooMuchInput());
    }
}

}  // namespace

std::string columnTable(const Recognition& recognition) {
    const std::vector<RecognisedColumn>& columns = recognition.columns;
    if (columns.empty()) {
        return "the file has no line with the names of its columns";
    }
    const auto useful = std::count_if(columns.begin(), columns.end(),
                                      [](const RecognisedColumn& c) { return c.kind != FieldKind::other; });
    std::string table = std::to_string(useful) + " of " + std::to_string(columns.size()) +
                        " columns mean something:\n" + columnLines(columns);
    const auto unknown =
        std::find_if(columns.begin(), columns.end(), [](const RecognisedColumn& c) { return !c.isKnown; });
    if (unknown != columns.end()) {
        table += "Say what a column means with --map \"" + shownName(unknown->name) +
                 "=Mobile1\". The phone's own names are LastName, FirstName, Business1, Business2, Mobile1, Private1, "
                 "Company1, Address1, Address2, Position and Email1; \"-\" leaves a column out.\n";
    }
    return table;
}

ColumnMapping columnMapping(std::string_view pair) {
    const std::size_t sign = pair.rfind('=');
    const std::string_view word = sign == std::string_view::npos ? "" : pair.substr(sign + 1);
    const std::optional<FieldKind> kind = word == "-" ? FieldKind::other : fieldKindOf(word);
    if (!kind || sign == 0) {
        std::string words;
        for (std::size_t i = 0; i < static_cast<std::size_t>(FieldKind::other); ++i) {
            words += (i == 0 ? "" : ", ") + std::string(fieldKindName(static_cast<FieldKind>(i)));
        }
        throw AddressBookError(
            AddressBookError::Reason::option,
            "--map \"" + std::string(pair) +
                "\" has to be a column's name, \"=\" and a name of the phone's own columns, \"-\", or "
                "one of " +
                words);
    }
    return {std::string(pair.substr(0, sign)), *kind};
}

std::unique_ptr<AddressReader> openAddressBook(std::istream& bytes, const ReadingOptions& options) {
    const auto finder = std::make_shared<const ColumnFinder>(options);
    const std::istream::pos_type begin = bytes.tellg();
    const auto judge = [&](const std::string& beginning) {
        const FoundColumns header = csvLayout(beginning, *finder).header;
        return CharsetEvidence{header.known, header.language};
    };
    const FoundCharset found =
        options.charset.empty() ? findCharset(bytes, judge) : statedCharset(bytes, options.charset);
    const std::istream::pos_type textBegin = begin + static_cast<std::streamoff>(found.skip);
    const std::string charset = found.isValidUtf8 ? "" : found.name;
    seek(bytes, textBegin);
    const std::string beginning = beginningOf(bytes, charset);
    seek(bytes, textBegin);

    Recognition recognition;
    recognition.charset = found.name;
    recognition.charsetWhy = found.why;
    for (const Format& format : formats) {
        if (format.isIn(beginning)) {
            return format.open(TextStream(bytes, charset), finder, std::move(recognition));
        }
    }
    return std::make_unique<CsvReader>(TextStream(bytes, charset), csvLayout(beginning, *finder), finder,
                                       std::move(recognition));
}

std::unique_ptr<AddressReader> openAddressBook(const std::string& path, const ReadingOptions& options) {
    auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
    // A folder opens like a file and then cannot be read.
    file->peek();
    if (!file->is_open() || file->bad()) {
        throw AddressBookError(AddressBookError::Reason::file, path + ": " + std::generic_category().message(errno));
    }
    refuseEndless(path, *file);
    seek(*file, 0);
    try {
        std::unique_ptr<AddressReader> reader = openAddressBook(*file, options);
        return std::make_unique<FileReader>(std::move(file), std::move(reader));
    } catch (const AddressBookError& error) {
        throw AddressBookError(error.reason(), path + ": " + error.what());
    }
}

}  // namespace calljournal
