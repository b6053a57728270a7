#include "Charset.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <istream>
#include <iterator>
#include <memory>
#include <set>
#include <uchardet/uchardet.h>
#include <unicode/ucnv.h>

#include "AddressReader.h"
#include "LineReader.h"
#include "Text.h"
#include "TextStream.h"
#include "Utf8.h"

namespace calljournal {

namespace {

/// How much of a file the judge sees, and how much of its foreign characters the guess is made from.
constexpr std::size_t beginningSize = std::size_t{64} << 10;
constexpr std::size_t sampleSize = std::size_t{256} << 10;
constexpr std::size_t pieceSize = std::size_t{64} << 10;

struct Mark {
    std::string_view bytes;
    const char* charset;
};

/// That of UTF-32 begins like that of UTF-16.
constexpr Mark marks[] = {
    {std::string_view("\xff\xfe\0\0", 4), "UTF-32LE"},
    {std::string_view("\0\0\xfe\xff", 4), "UTF-32BE"},
    {"\xef\xbb\xbf", "UTF-8"},
    {"\xff\xfe", "UTF-16LE"},
    {"\xfe\xff", "UTF-16BE"},
};

/// What programs write where they know no Unicode, by the language of the person before the screen. Programs in English
/// are used by everybody.
struct UsualCharset {
    const char* charset;
    const char* languages;
};
constexpr UsualCharset usualCharsets[] = {
    {"windows-1252", " de fr it es nl pt sv da nb nn fi is ca eu gl ga gd "},
    {"windows-1250", " cs pl sk hu hr sl ro bs sq hsb dsb "},
    {"windows-1251", " ru uk be bg mk sr kk "},
    {"windows-31j", " ja "},
    {"GB18030", " zh "},
    {"Big5", " zh-TW zh-HK "},
    {"windows-949", " ko "},
    {"windows-1254", " tr "},
    {"windows-1253", " el "},
    {"windows-1255", " he "},
    {"windows-1256", " ar "},
    {"windows-1257", " lt lv et "},
    {"windows-1258", " vi "},
    {"windows-874", " th "},
    {"KOI8-R", ""},
    {"EUC-JP", ""},
    {"macintosh", ""},
};

/// The detector names what it recognises; the character set that contains it covers more.
struct Wider {
    const char* guessed;
    const char* charset;
};
constexpr Wider widerCharsets[] = {
    {"ISO-8859-1", "windows-1252"}, {"ISO-8859-9", "windows-1254"}, {"SHIFT_JIS", "windows-31j"},
    {"EUC-KR", "windows-949"},      {"UHC", "windows-949"},         {"TIS-620", "windows-874"},
    {"GB2312", "GB18030"},          {"ASCII", "windows-1252"},
};

std::string readAt(std::istream& bytes, std::istream::pos_type begin, std::size_t size) {
    bytes.clear();
    bytes.seekg(begin);
    std::string text(size, '\0');
    bytes.read(text.data(), static_cast<std::streamsize>(size));
    text.resize(static_cast<std::size_t>(bytes.gcount()));
    bytes.clear();
    bytes.seekg(begin);
    return text;
}

const Mark* markOf(std::string_view beginning) {
    const auto* const found = std::find_if(std::begin(marks), std::end(marks), [&](const Mark& mark) {
        return beginning.substr(0, mark.bytes.size()) == mark.bytes;
    });
    return found == std::end(marks) ? nullptr : found;
}

/// Texts in UTF-16 hold delimiters, digits and line ends, each with a zero byte on the same side.
const char* unmarkedUtf16(std::string_view beginning) {
    std::size_t zeros[2] = {};
    for (std::size_t i = 0; i < beginning.size(); ++i) {
        zeros[i % 2] += beginning[i] == '\0' ? 1 : 0;
    }
    const std::size_t enough = beginning.size() / 50;
    if (zeros[0] == 0 && zeros[1] > enough) {
        return "UTF-16LE";
    }
    return zeros[1] == 0 && zeros[0] > enough ? "UTF-16BE" : nullptr;
}

bool isForeign(char c) {
    return (static_cast<unsigned char>(c) & 0x80u) != 0;
}

/// The lines with foreign characters; cutting at line ends cuts no character in any character set that is guessed.
std::string foreignLines(std::istream& bytes) {
    LineReader lines(TextStream(bytes, ""));
    std::string sample;
    for (Line line; sample.size() < sampleSize && lines.next(line);) {
        if (!isAscii(line.text)) {
            sample.append(line.text).append("\n");
        }
    }
    return sample;
}

/// Control characters that nobody types show that the bytes are something else.
bool isClean(const std::string& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
        const bool isControl = text[i] == '\0' || text[i] == '\x1a' || (text[i] == '\xc2' && next < 0xa0);
        if (isControl || text.compare(i, 3, "\ufffd") == 0) {
            return false;
        }
    }
    return true;
}

bool canRead(const std::string& sample, const std::string& charset) {
    return isCharset(charset) && isClean(decoded(sample, charset));
}

/// What the frequency of bytes speaks for; empty if nothing does.
std::string guessedCharset(const std::string& sample) {
    const std::unique_ptr<uchardet, void (*)(uchardet_t)> detector(uchardet_new(), uchardet_delete);
    uchardet_handle_data(detector.get(), sample.data(), sample.size());
    uchardet_data_end(detector.get());
    const std::string guessed = upperCase(uchardet_get_charset(detector.get()));
    const auto* const wider = std::find_if(std::begin(widerCharsets), std::end(widerCharsets),
                                           [&](const Wider& w) { return w.guessed == guessed; });
    return wider == std::end(widerCharsets) ? guessed : wider->charset;
}

bool isUsualFor(const UsualCharset& usual, const std::string& language) {
    const std::string_view languages = usual.languages;
    return !language.empty() &&
           (languages.find(' ' + language + ' ') != std::string_view::npos ||
            languages.find(' ' + language.substr(0, language.find('-')) + ' ') != std::string_view::npos);
}

/// A vCard of the old kind may say it itself.
std::string namedInside(const std::string& beginning) {
    const std::string text = upperCase(beginning.substr(0, beginning.find('\0')));
    const std::size_t found = text.find(";CHARSET=");
    if (found == std::string::npos) {
        return {};
    }
    const std::size_t begin = found + std::strlen(";CHARSET=");
    return text.substr(begin, text.find_first_of(";:\"\r\n", begin) - begin);
}

struct Candidate {
    std::string charset;
    CharsetEvidence evidence;
};

/// What speaks from the frequency of bytes.
struct Guess {
    std::string charset;
    bool isFirm;  ///< There were enough bytes, or it is what programs write.
};

Guess guessFrom(const std::string& sample) {
    constexpr std::ptrdiff_t enough = 32;
    const std::string charset = guessedCharset(sample);
    const bool isUsual = std::any_of(std::begin(usualCharsets), std::end(usualCharsets),
                                     [&](const UsualCharset& usual) { return usual.charset == charset; });
    return {charset, isUsual || std::count_if(sample.begin(), sample.end(), isForeign) >= enough};
}

/// How a candidate compares with others of the same score: what people of that language use, then what was guessed,
/// then what is used most.
int likelihood(const Candidate& candidate, const Guess& guess) {
    const std::string& language = candidate.evidence.language;
    const auto isItsUsual = [&](const UsualCharset& usual) {
        return isUsualFor(usual, language) && usual.charset == candidate.charset;
    };
    if (std::any_of(std::begin(usualCharsets), std::end(usualCharsets), isItsUsual)) {
        return candidate.charset == guess.charset ? 4 : 3;
    }
    if (candidate.charset == guess.charset && guess.isFirm) {
        return 2;
    }
    const bool isForEverybody = language.empty() || language.substr(0, 2) == "en";
    return candidate.charset == "windows-1252" && isForEverybody ? 1 : 0;
}

/// The character sets that read all of the sample, each with what the judge says.
std::vector<Candidate> candidates(const std::string& beginning, const std::string& sample, const std::string& guess,
                                  const CharsetJudge& judge) {
    std::vector<Candidate> all;
    const auto consider = [&](const std::string& charset) {
        if (canRead(sample, charset)) {
            all.push_back({charset, judge(decoded(beginning, charset))});
        }
    };
    if (!guess.empty()) {
        consider(guess);
    }
    for (const UsualCharset& usual : usualCharsets) {
        if (usual.charset != guess) {
            consider(usual.charset);
        }
    }
    return all;
}

/// The part of the first foreign line that has the foreign characters.
std::string samplePart(const std::string& sample) {
    const std::string line = sample.substr(0, sample.find('\n'));
    const auto foreign = std::find_if(line.begin(), line.end(), isForeign);
    const auto at = static_cast<std::size_t>(foreign - line.begin());
    constexpr std::size_t before = 20;
    constexpr std::size_t behind = 60;
    const std::size_t begin = at > before ? at - before : 0;
    return line.substr(begin, at + behind - begin);
}

/// Texts that differ are shown first: the same text twice helps nobody to choose.
[[noreturn]] void askForCharset(const std::string& sample) {
    constexpr std::size_t wanted = 3;
    constexpr std::size_t longestShown = 70;
    const std::string part = samplePart(sample);
    std::set<std::string> seen;
    std::string shown;
    for (const UsualCharset& usual : usualCharsets) {
        const std::string text = inOneLine(decoded(part, usual.charset));
        if (seen.size() < wanted && seen.insert(text).second) {
            shown += "\n  " + std::string(usual.charset) + ": " + shortened(text, longestShown);
        }
    }
    throw AddressBookError(
        AddressBookError::Reason::charset,
        "the character set of the file is not clear; say it with --from-charset. Some of the file in " +
            std::to_string(seen.size()) + " of them:" + shown);
}

FoundCharset mostLikely(std::istream& bytes, std::istream::pos_type begin, const std::string& beginning,
                        const CharsetJudge& judge) {
    const std::string sample = foreignLines(bytes);
    bytes.clear();
    bytes.seekg(begin);
    const std::string named = namedInside(beginning);
    if (!named.empty() && canRead(sample, named)) {
        return {named, "the file names it", 0, false};
    }
    const Guess guess = guessFrom(sample);
    const std::vector<Candidate> all = candidates(beginning, sample, guess.charset, judge);
    const auto best = std::max_element(all.begin(), all.end(), [&](const Candidate& a, const Candidate& b) {
        return a.evidence.score != b.evidence.score ? a.evidence.score < b.evidence.score
                                                    : likelihood(a, guess) < likelihood(b, guess);
    });
    if (best == all.end()) {
        askForCharset(sample);
    }
    if (best->charset == guess.charset && guess.isFirm) {
        return {best->charset, "the frequency of its bytes", 0, false};
    }
    const bool isBetter = std::any_of(
        all.begin(), all.end(), [&](const Candidate& other) { return other.evidence.score < best->evidence.score; });
    const int reason = likelihood(*best, guess);
    if (!isBetter && reason == 0) {
        askForCharset(sample);
    }
    return {best->charset, isBetter || reason > 1 ? "the names of the columns" : "it is used most", 0, false};
}

std::istream::pos_type placeOf(std::istream& bytes) {
    const std::istream::pos_type place = bytes.tellg();
    if (place == std::istream::pos_type(-1)) {
        throw AddressBookError(AddressBookError::Reason::file,
                               "it cannot be read more than once; save it as a file first");
    }
    return place;
}

bool isUtf8ToTheEnd(std::istream& bytes) {
    Utf8Check check;
    std::string piece(pieceSize, '\0');
    do {
        bytes.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        check.add(std::string_view(piece).substr(0, static_cast<std::size_t>(bytes.gcount())));
    } while (bytes);
    return check.isValid();
}

}  // namespace

void Utf8Check::add(std::string_view piece) {
    constexpr std::size_t longestCharacter = 4;
    while (isValid_ && !rest_.empty() && !piece.empty()) {
        rest_ += piece.front();
        piece.remove_prefix(1);
        if (characterAt(rest_).isValid) {
            rest_.clear();
        }
        isValid_ = rest_.size() < longestCharacter;
    }
    const char* at = piece.data();
    const char* const end = at + piece.size();
    while (isValid_ && at != end) {
        uint64_t block = 0;
        while (end - at >= 8 && (std::memcpy(&block, at, 8), (block & 0x8080808080808080u) == 0)) {
            at += 8;
        }
        if (at == end) {
            break;
        }
        const std::string_view text(at, static_cast<std::size_t>(end - at));
        const Utf8Character c = characterAt(text);
        if (!c.isValid && text.size() < longestCharacter) {
            rest_ = text;
            return;
        }
        isValid_ = c.isValid;
        at += c.length;
    }
}

FoundCharset findCharset(std::istream& bytes, const CharsetJudge& judge) {
    const std::istream::pos_type begin = placeOf(bytes);
    const std::string beginning = readAt(bytes, begin, beginningSize);
    const Mark* const mark = markOf(beginning);
    if (mark != nullptr) {
        bytes.seekg(begin + static_cast<std::streamoff>(mark->bytes.size()));
        const bool isUtf8 = mark->charset == std::string_view("UTF-8") && isUtf8ToTheEnd(bytes);
        return {mark->charset, "byte-order mark", mark->bytes.size(), isUtf8};
    }
    const char* const utf16 = unmarkedUtf16(beginning);
    if (utf16 != nullptr) {
        return {utf16, "zero bytes at every second place", 0, false};
    }
    if (isUtf8ToTheEnd(bytes)) {
        return {"UTF-8", isAscii(beginning) ? "nothing speaks against it" : "all bytes are valid", 0, true};
    }
    bytes.clear();
    bytes.seekg(begin);
    return mostLikely(bytes, begin, beginning, judge);
}

FoundCharset statedCharset(std::istream& bytes, const std::string& name) {
    const std::istream::pos_type begin = placeOf(bytes);
    if (!isCharset(name)) {
        throw AddressBookError(AddressBookError::Reason::charset, '"' + name + "\" is no character set known here");
    }
    const std::string beginning = readAt(bytes, begin, 4);
    const Mark* const mark = markOf(beginning);
    const auto isNamed = [&](const std::string& other) { return ucnv_compareNames(other.c_str(), mark->charset) == 0; };
    if (mark != nullptr && (isNamed(name) || isNamed(name + "LE") || isNamed(name + "BE"))) {
        return {mark->charset, "asked for", mark->bytes.size(), false};
    }
    return {name, "asked for", 0, false};
}

}  // namespace calljournal
