#include <boost/algorithm/string/replace.hpp>
#include <cstddef>
#include <istream>
#include <string_view>
#include <utility>

#include "ClientUtils.h"
#include "ImportContactsCSVParser.h"
#include "detail/Bytes.h"
#include "detail/Columns.h"
#include "detail/Log.h"
#include "format/ContactColumns.h"

const int TAMBER_HEADERS_SIZE = 12;

namespace {

using calljournal::detail::columnOf;
using calljournal::format::defaultDialField;
using calljournal::format::storedLength;

constexpr char module[] = "ImportContactscSVParser";
constexpr char source[] = "ImportContactsCSVParser";

const std::vector<std::string> TAMBER_HEADERS = calljournal::format::tamberNames();

// Names that the import shares with its surroundings; nothing here reads them.
[[maybe_unused]] const std::string TMP_LDAP_PIC_PATH = "/tmp/ldappic";
[[maybe_unused]] const std::string IMPORT_CONTACTS_STATUS = "import-contacts-status";

constexpr std::size_t outlookHeaderCount = 92;
constexpr std::size_t mostHeaders = 100;
constexpr int highestDefaultDial = 4;

typedef boost::escaped_list_separator<char> Separator;
typedef boost::tokenizer<Separator> Tokenizer;

/// What Boost's separator takes for one character: a character that may mean something to it, or a run of others, which
/// it takes for their first one and writes whole.
struct Piece {
    const char* begin;
    const char* end;

    operator char() const { return *begin; }
    std::size_t size() const { return static_cast<std::size_t>(end - begin); }
};

/// The pieces of a text, as an iterator for Boost's separator.
class Pieces {
public:
    Pieces(const char* begin, const char* end) : piece_{begin, begin}, end_(end) { piece_.end = endOfPiece(); }

    const Piece& operator*() const { return piece_; }

    Pieces& operator++() {
        const bool isEscape = *piece_.begin == '\\';
        piece_.begin = piece_.end;
        // Of what follows an escape character only the first one is escaped.
        piece_.end = isEscape && piece_.begin != end_ ? piece_.begin + 1 : endOfPiece();
        return *this;
    }

    friend bool operator==(const Pieces& one, const Pieces& other) { return one.place() == other.place(); }
    friend bool operator!=(const Pieces& one, const Pieces& other) { return !(one == other); }

    const char* place() const { return piece_.begin; }

private:
    // Both separators are known, whichever the file has: to cut a run in two changes nothing.
    static bool isPlain(char c) { return c != ',' && c != ';' && c != '"' && c != '\\'; }

    const char* endOfPiece() const {
        if (piece_.begin == end_) {
            return end_;
        }
        const char* const behind = piece_.begin + 1;
        return isPlain(*piece_.begin) ? calljournal::detail::findAny(behind, end_, ',', ';', '"', '\\') : behind;
    }

    Piece piece_;
    const char* end_;
};

/// What Boost's separator writes a column to: memory that is as large as the text, so that a character is stored
/// without a look at the room.
class ColumnText {
public:
    /// What the separator assigns to begin the next column.
    ColumnText() = default;

    explicit ColumnText(char* room) : begin_(room), end_(room) {}
    ColumnText(const ColumnText&) = delete;

    ColumnText& operator=(ColumnText&&) noexcept {
        end_ = begin_;
        return *this;
    }

    void operator+=(char c) { *end_++ = c; }
    void operator+=(const Piece& piece) {
        calljournal::detail::copyBytes(end_, piece.begin, piece.size());
        end_ += piece.size();
    }

    std::string_view view() const { return std::string_view(begin_, static_cast<std::size_t>(end_ - begin_)); }

private:
    char* begin_ = nullptr;
    char* end_ = nullptr;
};

/// Returns whether `piece`, which starts outside quotes, ends inside: each quote that is not escaped changes sides.
bool endsInQuotes(const char* piece, const char* end) {
    bool inside = false;
    for (; piece != end; ++piece) {
        if (*piece == '\\') {
            ++piece;
        } else if (*piece == '"') {
            inside = !inside;
        }
    }
    return inside;
}

/// Splits a text into columns, and splits it on when its end has changed.
///
/// A record of many lines is split once per line, which would cost quadratic time if each split began at the front. So
/// only what is new goes through Boost. The separator in front of the last column has been passed for good; of the last
/// column itself it takes the whole text, since the stored one is cut, and the side of the quotes on which it ended.
class Splitter {
public:
    Splitter(Tokenizer& tokenizer, const Separator& separator, std::vector<std::string>& columns)
        : tokenizer_(tokenizer), separator_(separator), columns_(columns) {}

    /// Splits the first text of this splitter.
    void split(const std::string& text) {
        tokenizer_.assign(text, separator_);
        walk(text, 0);
    }

    /// Brings the columns up to date with `text`, which was `splitSize` bytes long when it was split last: since then
    /// it grew, or lost carriage returns, at its end. An escape error strikes where splitting the whole would meet it.
    void splitOn(const std::string& text, std::size_t splitSize) {
        tokenizer_.assign(text, separator_);
        if (text.size() < splitSize) {
            lastColumn_.resize(lastColumn_.size() - (splitSize - text.size()));
            splitSize = text.size();
        }
        columns_.pop_back();
        // Boost starts outside quotes; a quote of our own, which it drops, takes it inside.
        std::string rest(inQuotes_ ? "\"" : "");
        rest.append(text, splitSize, std::string::npos);
        if (!rest.empty()) {
            walk(rest, columns_.size());
        } else if (!text.empty()) {
            columns_.emplace_back(stored(lastColumn_));
        }
    }

private:
    /// Puts columns over those from an index on, whose memory they take, and lets go of what is left of the old ones at
    /// the end, also when the walk is left by an exception.
    class Filling {
    public:
        Filling(std::vector<std::string>& columns, std::size_t from) : columns_(columns), count_(from) {}
        Filling(const Filling&) = delete;
        Filling& operator=(const Filling&) = delete;
        ~Filling() { columns_.resize(count_); }

        void add(std::string_view column) {
            if (count_ == columns_.size()) {
                columns_.emplace_back(column);
            } else if (!column.empty()) {
                columns_[count_].clear();
                columns_[count_].append(column);  // less work than an assignment
            } else if (!columns_[count_].empty()) {
                columns_[count_].clear();
            }
            ++count_;
        }

    private:
        std::vector<std::string>& columns_;
        std::size_t count_;
    };

    /// Walks the columns of `text` and stores them from an index on; the first one goes on with the last column. A line
    /// has so many, most of them empty, that calls of Boost's separator would be a good part of all work.
    CALLJOURNAL_FLAT void walk(const std::string& text, std::size_t from) {
        Filling filling(columns_, from);
        if (text.empty()) {
            return;
        }
        char room[512];
        ColumnText column(text.size() <= sizeof room ? room : largeRoom(text.size()));
        Separator separator = separator_;
        separator.reset();
        const char* begin = text.data();
        const char* const textEnd = begin + text.size();
        const Pieces end(textEnd, textEnd);
        Pieces next(begin, textEnd);
        std::string_view last;
        for (const char* place = begin; separator(next, end, column); place = next.place()) {
            begin = place;
            last = column.view();
            if (begin == text.data()) {
                lastColumn_ += last;
                last = lastColumn_;
            }
            filling.add(stored(last));
        }
        // One that has only gone on is there already; copied onto itself, it would cost its length at each line.
        if (begin != text.data()) {
            lastColumn_.assign(last.data(), last.size());
        }
        inQuotes_ = endsInQuotes(begin, textEnd);
    }

    static std::string_view stored(std::string_view column) { return column.substr(0, storedLength(column)); }

    char* largeRoom(std::size_t size) {
        room_.resize(size);
        return &room_[0];
    }

    Tokenizer& tokenizer_;
    const Separator& separator_;
    std::vector<std::string>& columns_;
    std::string room_;        ///< For one column of a long text.
    std::string lastColumn_;  ///< The last column, not cut.
    bool inQuotes_ = false;   ///< Whether the text ends inside quotes.
};

/// Returns whether `line` stops where no field ends: behind a quote that has just opened one, or behind plain text.
bool stopsInsideField(const std::string& line) {
    const char last = line.back();
    if (last == '"') {
        return line.size() > 1 && line[line.size() - 2] == ',';
    }
    return last != ',';
}

/// The record of the Outlook layout that starts with the current line, while it is put together from further lines.
class OutlookRecord {
public:
    /// The importer's members that an assembly works on.
    struct Parts {
        std::string& line;
        std::string& nextLine;
        const std::vector<std::string>& columns;
        std::istream& file;
        std::size_t headerCount;
    };

    OutlookRecord(ImportContactsCSVParser& importer, Splitter& splitter, const Parts& parts)
        : importer_(importer), splitter_(splitter), parts_(parts) {}

    /// Reads and joins lines, or fills up with empty columns, until there are as many columns as headers. Returns false
    /// if the lines do not come to such a record.
    bool assemble() {
        while (!parts_.columns.empty()) {
            if (parts_.columns.size() >= parts_.headerCount) {
                return true;
            }
            const bool unfinished = continuation_ || stopsInsideField(parts_.line);
            const bool extended = unfinished && std::getline(parts_.file, parts_.nextLine) ? join() : fillUp();
            if (!extended) {
                return false;
            }
        }
        return false;
    }

private:
    bool join() {
        // Not the escaped quote of a first line: in a continued field a doubled quote vanishes.
        importer_.replaceAllInternal(parts_.nextLine, "\"\"", "");
        const std::size_t quote = parts_.nextLine.find('"');
        continuation_ = quote == std::string::npos;
        if (!continuation_ && parts_.nextLine.compare(quote, 2, "\",") != 0) {
            return false;
        }
        const std::size_t splitSize = parts_.line.size();
        parts_.line += parts_.nextLine;
        ClientUtils::handleCRatEnd(parts_.line);
        splitter_.splitOn(parts_.line, splitSize);
        return parts_.columns.size() <= parts_.headerCount;
    }

    /// Each comma adds a column, or none does: inside quotes, or where it is not the separator. More would not help
    /// then.
    bool fillUp() {
        const std::size_t splitSize = parts_.line.size();
        const std::size_t count = parts_.columns.size();
        parts_.line.append(parts_.headerCount - count, ',');
        splitter_.splitOn(parts_.line, splitSize);
        return parts_.columns.size() > count;
    }

    ImportContactsCSVParser& importer_;
    Splitter& splitter_;
    Parts parts_;
    bool continuation_ = false;  ///< The last line that was joined left its field open.
};

/// Returns whether a DefaultDial column, blanks around it aside, is a number from 0 to 4.
bool isDefaultDial(const std::string& column) {
    const std::string text = ClientUtils::trim(column);
    if (!ClientUtils::isAllDigits(text)) {
        return false;
    }
    const int number = ClientUtils::stoi(text);
    return number >= 0 && number <= highestDefaultDial;
}

}  // namespace

void ImportContactsCSVParser::tokenizeLine(const std::string& text) {
    Splitter(tokenizer, separator, tokens).split(text);
}

void ImportContactsCSVParser::replaceAllInternal(std::string& text, std::string search, std::string replacement) {
    if (!text.empty() && !search.empty()) {
        boost::algorithm::replace_all(text, search, replacement);
    }
}

void ImportContactsCSVParser::headerLineParser() {
    headerPending = false;
    replaceAllInternal(line, "\"", "");
    tokenizeLine(line);
    if (tokens.size() == 1) {
        separator = Separator('\\', ',', '"');
        tokenizeLine(line);
        if (tokens.size() == 1) {
            CALLJOURNAL_LOG(module, source, 2, "the csv file has invalid delimiters");
            csvType = CSV_INVALID_DELIMITERS;
            return;
        }
    }
    if (tokens.size() > mostHeaders) {
        CALLJOURNAL_LOG(module, source, 2, "too many headers, can't be a valid csv file");
        csvType = CSV_TOO_MANY_HEADERS;
        return;
    }
    headerCount = static_cast<unsigned>(tokens.size());
    if (isValidTamberHeader(tokens)) {
        csvType = CSV_TAMBER;
    } else if (isValidOutlookHeader(tokens)) {
        csvType = CSV_OUTLOOK;
    } else {
        CALLJOURNAL_LOG(module, source, 2, "the file has invalid headers, can't be a valid csv file");
        csvType = CSV_INVALID_HEADERS;
    }
}

bool ImportContactsCSVParser::isValidTamberHeader(const std::vector<std::string>& headers) {
    columnMap.assign(headers.size(), -1);
    if (headers.size() != static_cast<std::size_t>(TAMBER_HEADERS_SIZE)) {
        return false;
    }
    for (int field = 0; field < TAMBER_HEADERS_SIZE; ++field) {
        const auto column = static_cast<std::size_t>(field);
        if (headers[column] != TAMBER_HEADERS[column]) {
            return false;
        }
        columnMap[column] = field;
    }
    return true;
}

bool ImportContactsCSVParser::isValidOutlookHeader(const std::vector<std::string>& headers) {
    if (headers.size() == outlookHeaderCount) {
        return true;
    }
    CALLJOURNAL_LOG(module, source, 2, "Header count is not matched with valid Outlook CSV file.");
    return false;
}

void ImportContactsCSVParser::lineContentParser() {
    // CSV doubles a quote inside a quoted field; the splitter knows it escaped.
    if (line.find("\"\"") != std::string::npos) {
        replaceAllInternal(line, "\"\"", "\\\"");
    }
    Splitter splitter(tokenizer, separator, tokens);
    splitter.split(line);

    bool fits = true;
    if (csvType == CSV_OUTLOOK) {
        fits = OutlookRecord(*this, splitter, {line, nextLine, tokens, file, headerCount}).assemble();
    } else if (csvType == CSV_TAMBER) {
        fits = tokens.size() == headerCount;
    }
    if (!fits) {
        CALLJOURNAL_LOG(module, source, 2, "corrupt file: lines have different number of columns");
        csvType = CSV_COLUMN_MISMATCH;
        return;
    }
    if (csvType == CSV_TAMBER && !isDefaultDial(columnOf(tokens, defaultDialField))) {
        CALLJOURNAL_LOG(module, source, 2, "corrupt file: default dial has to be an integer between %d and %d", 0,
                        highestDefaultDial);
        csvType = CSV_INVALID_DEFAULT_DIAL;
        return;
    }
    Contact contact;
    initContact(contact);
    parseContact(contact);
    if (!isEmpty(contact)) {
        contacts.push_back(std::move(contact));
    }
}
