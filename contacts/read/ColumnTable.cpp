#include "ColumnTable.h"

#include <charconv>
#include <optional>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "AddressReader.h"
#include "BuiltInColumns.h"
#include "Text.h"

namespace calljournal {

namespace {

const std::string ownProgram = "your columns file";

/// Letters, digits, symbols and the marks of scripts that write vowels with them, but no accents.
bool counts(UChar32 c) {
    constexpr uint32_t blanks = U_GC_P_MASK | U_GC_Z_MASK | U_GC_C_MASK;
    return (c < 0x300 || c > 0x36f) && (U_GET_GC_MASK(c) & blanks) == 0;
}

std::string partOr(const std::vector<std::string_view>& parts, std::size_t index, std::string_view otherwise) {
    return std::string(index < parts.size() && !parts[index].empty() ? parts[index] : otherwise);
}

/// Reads the file line by line; rows go where the last line with a keyword said.
class TableReader {
public:
    explicit TableReader(std::string origin) : origin_(std::move(origin)) {}

    void readLine(std::string_view line) {
        ++number_;
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (line.empty() || line.front() == '#') {
            return;
        }
        const std::vector<std::string_view> parts = split(line, '\t');
        if (parts[0] == "header") {
            startHeader(parts);
        } else if (parts[0] == "phoneTypes") {
            rows_ = &table_.phoneTypes;
        } else if (parts[0] == "addressTypes") {
            rows_ = &table_.addressTypes;
        } else {
            readRow(parts);
        }
    }

    ColumnTable takeTable() { return std::move(table_); }

private:
    [[noreturn]] void refuse(const std::string& why) const {
        throw AddressBookError(AddressBookError::Reason::option,
                               origin_ + ", line " + std::to_string(number_) + ": " + why);
    }

    int priorityOf(const std::string& text) const {
        int priority = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), priority);
        if (error != std::errc() || end != text.data() + text.size()) {
            refuse("the priority \"" + text + "\" is not a number");
        }
        return priority;
    }

    void startHeader(const std::vector<std::string_view>& parts) {
        table_.headers.push_back({partOr(parts, 1, ownProgram),
                                  partOr(parts, 2, ""),
                                  partOr(parts, 3, ""),
                                  priorityOf(partOr(parts, 4, "1")),
                                  partOr(parts, 5, "export"),
                                  {}});
        rows_ = &table_.headers.back().columns;
    }

    void readRow(const std::vector<std::string_view>& parts) {
        const std::optional<FieldKind> kind = fieldKindOf(parts[0]);
        if (!kind) {
            refuse('"' + std::string(parts[0]) + "\" is no meaning; it is a word such as mobile, or Mobile1");
        }
        const std::string name = partOr(parts, 1, "");
        std::string key = nameKey(name);
        if (key.empty()) {
            refuse("there is no name behind the meaning and a tab");
        }
        if (rows_ == nullptr) {
            startHeader({});
        }
        rows_->push_back({name, std::move(key), *kind});
    }

    std::string origin_;
    ColumnTable table_;
    std::vector<NamedKind>* rows_ = nullptr;
    std::size_t number_ = 0;
};

}  // namespace

std::string nameKey(std::string_view name) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const fold = icu::Normalizer2::getNFKCCasefoldInstance(status);
    const icu::Normalizer2* const decompose = icu::Normalizer2::getNFDInstance(status);
    const icu::UnicodeString text =
        icu::UnicodeString::fromUTF8(icu::StringPiece(name.data(), static_cast<int32_t>(name.size())));
    const icu::UnicodeString folded = decompose->normalize(fold->normalize(text, status), status);
    icu::UnicodeString kept;
    for (int32_t i = 0; i < folded.length(); i = folded.moveIndex32(i, 1)) {
        const UChar32 c = folded.char32At(i);
        if (counts(c)) {
            kept.append(c);
        }
    }
    std::string key;
    return kept.toUTF8String(key);
}

ColumnTable readColumnTable(std::string_view text, const std::string& origin) {
    TableReader reader(origin);
    for (const std::string_view line : split(text, '\n')) {
        reader.readLine(line);
    }
    return reader.takeTable();
}

const ColumnTable& builtInColumnTable() {
    static const ColumnTable table = readColumnTable(builtInColumnsText(), "columns.tsv");
    return table;
}

}  // namespace calljournal
