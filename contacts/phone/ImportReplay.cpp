#include "ImportReplay.h"

#include <algorithm>
#include <array>
#include <boost/tokenizer.hpp>
#include <exception>
#include <iterator>

#include "CSVType.h"
#include "ClientUtils.h"
#include "ContactColumns.h"
#include "HardwareVersion.h"
#include "Utf8.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr std::size_t outlookColumnCount = 92;

/// Programs whose exports are often offered, by the columns of their header.
struct OftenOffered {
    std::size_t count;
    const char* origin;
};
constexpr OftenOffered oftenOffered[] = {
    {81, "Google Contacts wrote 81 and more"},
    {89, "an Outlook export lost some on its way, or it is another program's"},
    {95, "Outlook 2003, and any with phonetic names, writes 95"},
};

const char* const convertHint = "\"calljournal convert\" turns other exports into a file that fits";

std::uint64_t positionIn(std::ifstream& file) {
    // Unlike tellg, the buffer answers at the end of the file, too.
    const std::streamoff position = file.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
    return position < 0 ? 0 : static_cast<std::uint64_t>(position);
}

/// Counts the physical lines of a file between two places that are asked for in ascending order.
class PhysicalLines {
public:
    explicit PhysicalLines(const std::string& path) : file_(path, std::ios::binary) {}

    /// Returns how many lines begin in the bytes from `begin` up to `end`.
    std::size_t between(std::uint64_t begin, std::uint64_t end) {
        if (begin >= end) {
            return 0;
        }
        std::size_t count = 0;
        char last = '\n';
        std::array<char, 8192> buffer;
        file_.clear();
        file_.seekg(static_cast<std::streamoff>(begin));
        while (begin < end) {
            const std::uint64_t wanted = std::min<std::uint64_t>(end - begin, buffer.size());
            file_.read(buffer.data(), static_cast<std::streamsize>(wanted));
            const std::streamsize got = file_.gcount();
            if (got <= 0) {
                break;
            }
            count += static_cast<std::size_t>(std::count(buffer.data(), buffer.data() + got, '\n'));
            last = buffer[static_cast<std::size_t>(got) - 1];
            begin += static_cast<std::uint64_t>(got);
        }
        return count + (last == '\n' ? 0 : 1);
    }

private:
    std::ifstream file_;
};

}  // namespace

Sentence quoted(const std::string& text) {
    return "\"" + Sentence::fromFile(text) + "\"";
}

// A file without a name cannot be opened, so the base class imports nothing and is at its start.
ImportReplay::ImportReplay(unsigned existingContacts)
    : ImportContactsCSVParser(std::string(), existingContacts), existingContacts_(existingContacts) {
    csvType = CSV_FILE_ERROR;
    headerPending = true;
}

unsigned ImportReplay::contactLimit() {
    return HardwareVersion::is_NQ() ? 1000 : 100;
}

void ImportReplay::replay(const std::string& path, const std::function<void(std::uint64_t)>& progress) {
    PhysicalLines physical(path);
    file.open(path);
    std::uint64_t end = 0;
    bool goesOn = true;
    while (goesOn && readLine()) {
        if (isOnlyCounted()) {
            ++records_;
            continue;
        }
        const std::uint64_t begin = positionIn(file);
        goesOn = takeLine();
        end = positionIn(file);
        lastLine_ += physical.between(begin, end);
        settle();
        if (progress) {
            progress(end);
        }
    }
    file.close();
    if (firstLine_ == 0 && faults_.empty()) {
        faults_.push_back({CSV_FILE_ERROR, "the file is empty"});
    }
    settleLimit();
}

bool ImportReplay::readLine() try {
    if (!std::getline(file, line)) {
        return false;
    }
    firstLine_ = ++lastLine_;
    ClientUtils::handleCRatEnd(line);
    firstLength_ = line.size();
    return true;
} catch (const std::exception&) {
    // Only a line beyond all bounds comes here.
    faults_.push_back({CSV_FILE_ERROR, "line " + std::to_string(lastLine_ + 1) + ": is too long for the memory"});
    return false;
}

/// Beyond the limit lines are only counted; but Outlook's records may have several.
bool ImportReplay::isOnlyCounted() const {
    return limitLine_ != 0 && csvType != CSV_OUTLOOK;
}

bool ImportReplay::takeLine() try {
    isHeader_ = headerPending;
    exception_.clear();
    layout_ = csvType;
    if (isHeader_) {
        headerLineParser();
        headers_ = tokens;
        std::for_each(headers_.begin(), headers_.end(), [this](std::string& name) { makeUtf8(name); });
    } else {
        ++records_;
    }
    // The contacts that the phonebook has count as lines, too.
    if (limitLine_ == 0 && existingContacts_ + records_ > contactLimit()) {
        limitLine_ = firstLine_;
    }
    if (!isHeader_ && !isOnlyCounted()) {
        contacts.clear();
        lineContentParser();
    }
    return true;
} catch (const std::exception& failure) {
    exception_ = failure.what();
    return false;
}

void ImportReplay::settle() {
    if (limitLine_ != 0) {
        csvType = isHeader_ ? csvType : layout_;
        return;
    }
    if (!exception_.empty()) {
        const Sentence place = describeEscapeFault();
        faults_.push_back({CSV_FILE_ERROR, place.empty() ? lines() + ": cannot be read: " + exception_ : place});
    } else if (isHeader_ && csvType != CSV_TAMBER && csvType != CSV_OUTLOOK) {
        faults_.push_back({csvType, describeHeaderFault()});
    } else if (csvType == CSV_TAMBER || csvType == CSV_OUTLOOK) {
        recordTaken(contacts.empty() ? nullptr : &contacts.back());
    } else if (csvType != layout_) {
        faults_.push_back(
            {csvType, csvType == CSV_COLUMN_MISMATCH ? describeColumnFault() : describeDefaultDialFault()});
    }
}

void ImportReplay::settleLimit() {
    if (limitLine_ == 0) {
        return;
    }
    const std::size_t limit = contactLimit();
    std::string sentence = "the phonebook takes " + counted(limit, "contact");
    if (existingContacts_ > limit) {
        sentence += " and is full with " + std::to_string(existingContacts_);
    } else {
        const std::size_t tooMany = existingContacts_ + records_ - limit;
        sentence += ": " + std::to_string(existingContacts_) + " used, " + (exception_.empty() ? "" : "at least ") +
                    std::to_string(records_) + " in the file, " + std::to_string(tooMany) +
                    " too many; the first that does not fit is on line " + std::to_string(limitLine_);
    }
    faults_.push_back({CSV_NO_CAPACITY, sentence});
}

std::string ImportReplay::lines() const {
    return firstLine_ == lastLine_ ? "line " + std::to_string(firstLine_)
                                   : "lines " + std::to_string(firstLine_) + " to " + std::to_string(lastLine_);
}

Sentence ImportReplay::columnName(std::size_t index) const {
    const std::string name = index < headers_.size() ? headers_[index] : std::string();
    const std::string column = "column " + std::to_string(index + 1);
    return name.empty() ? column : column + ' ' + Sentence::fromFile(name);
}

/// Names are read as the importer reads texts: what is not UTF-8 is ISO 8859-1.
void ImportReplay::makeUtf8(std::string& name) const {
    if (!is_valid_utf8(name.c_str())) {
        name = convertUnicodeANSIToUTF8(reinterpret_cast<unsigned char*>(name.data()), static_cast<int>(name.size()));
    }
}

std::size_t ImportReplay::countColumns(const std::string& text) {
    const std::vector<std::string> kept = tokens;
    tokenizeLine(text);
    const std::size_t count = tokens.size();
    tokens = kept;
    return count;
}

bool ImportReplay::endsInsideQuotes(const std::string& text) {
    return !text.empty() && countColumns(text + (isCommaSeparated() ? ',' : ';')) == countColumns(text);
}

Sentence ImportReplay::describeHeaderFault() {
    const std::size_t count = tokens.size();
    switch (csvType) {
        case CSV_INVALID_DELIMITERS:
            return "line 1: one column, " + quoted(line) +
                   "; the names of a header are separated by semicolons or commas" +
                   (line.find('\t') == std::string::npos ? "" : ", not by tabs");
        case CSV_TOO_MANY_HEADERS:
            return "line 1: " + counted(count, "column") + "; a header has at most 100";
        default:
            return count == 0 ? Sentence("line 1: is empty where the names of the columns are expected")
                   : count == static_cast<std::size_t>(TAMBER_HEADERS_SIZE) ? describeHeaderNames()
                                                                            : describeHeaderCount();
    }
}

Sentence ImportReplay::describeHeaderNames() {
    // The check fills this map up to the first name that differs.
    const auto differing =
        static_cast<std::size_t>(std::find(columnMap.begin(), columnMap.end(), -1) - columnMap.begin());
    std::vector<std::string> expected = format::tamberNames();
    const std::string name = expected[differing];
    std::vector<std::string> sorted(tokens);
    std::sort(sorted.begin(), sorted.end());
    std::sort(expected.begin(), expected.end());
    return "line 1, column " + std::to_string(differing + 1) + ": " + quoted(tokens[differing]) +
           " where the Tamber layout has " + quoted(name) +
           (sorted == expected ? "; the names are right, but their order is fixed" : "");
}

Sentence ImportReplay::describeHeaderCount() {
    std::string sentence = "line 1: " + counted(tokens.size(), "column") + "; an Outlook export needs " +
                           std::to_string(outlookColumnCount) + ", the Tamber layout " +
                           std::to_string(TAMBER_HEADERS_SIZE);
    for (const OftenOffered& known : oftenOffered) {
        if (known.count == tokens.size()) {
            sentence += std::string(" (") + known.origin + ')';
        }
    }
    return sentence + "; " + convertHint;
}

Sentence ImportReplay::describeDefaultDialFault() {
    return lines() + ", " + columnName(format::defaultDialField) + ": " + quoted(tokens[format::defaultDialField]) +
           " is not a number from 0 to 4" +
           (tokens[format::defaultDialField] == loneQuote ? "; the format reads an empty quoted field that way" : "");
}

std::string ImportReplay::columnsFound(std::size_t count) const {
    return counted(count, "column") + " where the header has " + std::to_string(headerCount);
}

Sentence ImportReplay::describeColumnFault() {
    if (line.empty()) {
        return lines() + ": is empty; take it out";
    }
    if (layout_ == CSV_TAMBER) {
        return lines() + ": " + columnsFound(tokens.size()) +
               (endsInsideQuotes(line) ? "; a quoted text is not closed, and here it cannot go on in the next line"
                                       : "");
    }
    const bool isJoined = lastLine_ > firstLine_;
    const std::string first = line.substr(0, firstLength_);
    if (isJoined && !endsInsideQuotes(first)) {
        return "line " + std::to_string(firstLine_) + ": " + columnsFound(countColumns(first)) +
               "; it ends in a text without quotes, so line " + std::to_string(firstLine_ + 1) +
               " was taken for its continuation";
    }
    if (tokens.size() > headerCount) {
        return lines() + ": together " + columnsFound(tokens.size());
    }
    const std::size_t quote = isJoined ? nextLine.find('"') : std::string::npos;
    if (quote != std::string::npos && nextLine.compare(quote, 2, "\",") != 0) {
        return "line " + std::to_string(lastLine_) + ": a double quote inside the text that line " +
               std::to_string(firstLine_) + " began; the quote that ends such a text has a comma behind it";
    }
    return describeShortRecord(first, isJoined);
}

Sentence ImportReplay::describeShortRecord(const std::string& first, bool isJoined) {
    // The importer tried to fill the record up with commas; what was there before says more.
    const std::string sentence = lines() + ": " + columnsFound(isJoined ? tokens.size() : countColumns(first));
    if (!endsInsideQuotes(line)) {
        return sentence + "; a row that is short is filled up only where commas separate the columns";
    }
    return sentence + (!isJoined && !first.empty() && first.back() == ','
                           ? "; it ends in a comma inside a quoted text, which is not carried on to the next line"
                           : "; a quoted text is not closed before the file ends");
}

Sentence ImportReplay::describeEscapeFault() {
    const std::size_t start = startOfRefusedColumn();
    const std::string text = line.substr(start);
    const Sentence place =
        isHeader_ ? "line 1" : "line " + std::to_string(lastLine_) + ", " + columnName(refusedColumn_);
    // A backslash takes the character behind it, wherever it is; the splitter says which ones it may take.
    for (std::size_t at = text.find('\\'); at != std::string::npos; at = text.find('\\', at + 2)) {
        if (!isRefused(text.substr(at, 2))) {
            continue;
        }
        return place +
               (at + 1 == text.size()
                    ? Sentence(": the backslash at the end of the line has nothing to escape; write two for one")
                    : ": the backslash before " + quoted(text.substr(at + 1, characterAt(text.substr(at + 1)).length)) +
                          " is not an escape the format knows; write two backslashes for one");
    }
    return Sentence();
}

std::size_t ImportReplay::startOfRefusedColumn() {
    std::size_t start = 0;
    refusedColumn_ = 0;
    try {
        const boost::tokenizer<Separator> pieces(line, separator);
        const auto end = pieces.end();
        for (auto piece = pieces.begin(); piece != end; ++piece) {
            start = static_cast<std::size_t>(piece.base() - line.cbegin());
            ++refusedColumn_;
        }
    } catch (const std::exception&) {
        // The column behind the last one that came through.
    }
    return start;
}

bool ImportReplay::isRefused(const std::string& text) {
    try {
        tokenizeLine(text);
        return false;
    } catch (const boost::escaped_list_error&) {
        return true;
    }
}

}  // namespace calljournal
