#include "XmlParser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t none = std::string_view::npos;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

constexpr bool isNameStart(int byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' || byte == ':' || byte >= 0x80;
}

constexpr bool isNamePart(int byte) {
    return isNameStart(byte) || (byte >= '0' && byte <= '9') || byte == '-' || byte == '.';
}

struct NameTable {
    std::array<bool, 256> start{};
    std::array<bool, 256> part{};
};

constexpr NameTable makeNameTable() {
    NameTable table;
    for (int byte = 0; byte < 256; ++byte) {
        table.start[static_cast<std::size_t>(byte)] = isNameStart(byte);
        table.part[static_cast<std::size_t>(byte)] = isNamePart(byte);
    }
    return table;
}

/// Names are most of a message's bytes, so their characters are recognised by one look.
constexpr NameTable names = makeNameTable();

bool startsName(char c) {
    return names.start[static_cast<unsigned char>(c)];
}

bool continuesName(char c) {
    return names.part[static_cast<unsigned char>(c)];
}

/// The zero-terminated copies that callbacks get of a tag's name and attributes. The memory is kept from tag to tag.
class TagTexts {
public:
    void clear() {
        text_.clear();
        starts_.clear();
    }

    void add(std::string_view piece) {
        starts_.push_back(text_.size());
        text_ += piece;
        text_ += '\0';
    }

    /// The first text that was added.
    const char* name() const { return text_.c_str(); }

    /// The texts after the first, and a null pointer.
    const char** attributes() {
        // Only now, since text_ may have moved while it grew.
        pointers_.clear();
        for (std::size_t i = 1; i < starts_.size(); ++i) {
            pointers_.push_back(text_.data() + starts_[i]);
        }
        pointers_.push_back(nullptr);
        return pointers_.data();
    }

private:
    std::string text_;
    std::vector<std::size_t> starts_;
    std::vector<const char*> pointers_;
};

/// The names of the open elements, outermost first, zero-terminated. On the heap, so that no depth is too deep.
class OpenElements {
public:
    bool empty() const { return starts_.empty(); }
    const char* innermost() const { return names_.data() + starts_.back(); }
    std::size_t innermostLength() const { return used_ - starts_.back() - 1; }

    void push(std::string_view name) {
        if (names_.size() - used_ <= name.size()) {
            names_.resize(2 * (used_ + name.size()) + 1);
        }
        std::memcpy(&names_[used_], name.data(), name.size());
        names_[used_ + name.size()] = '\0';
        starts_.push_back(used_);
        used_ += name.size() + 1;
    }

    void pop() {
        used_ = starts_.back();
        starts_.pop_back();
    }

private:
    std::string names_;
    std::size_t used_ = 0;
    std::vector<std::size_t> starts_;
};

/// Bytes that are looked at together where names are compared.
constexpr std::size_t blockSize = 32;

constexpr std::array<char, 2 * blockSize> makeFrontMasks() {
    std::array<char, 2 * blockSize> masks{};
    for (std::size_t i = 0; i < blockSize; ++i) {
        masks[i] = '\xFF';
    }
    return masks;
}

/// Read from `blockSize - length` on, a mask of the first `length` bytes of a block.
constexpr auto frontMasks = makeFrontMasks();

/// Whether the first `length` bytes of two blocks are the same. Without a branch, and so without a call.
bool haveSameFront(const char* first, const char* second, std::size_t length) {
    const char* const mask = frontMasks.data() + blockSize - length;
    std::uint64_t difference = 0;
    for (std::size_t i = 0; i < blockSize; i += sizeof difference) {
        std::uint64_t a;
        std::uint64_t b;
        std::uint64_t kept;
        std::memcpy(&a, first + i, sizeof a);
        std::memcpy(&b, second + i, sizeof b);
        std::memcpy(&kept, mask + i, sizeof kept);
        difference |= (a ^ b) & kept;
    }
    return difference == 0;
}

/// An element's name in a block of its own, zero-terminated.
struct Name {
    std::array<char, blockSize> block{};
    std::size_t length = 0;
    Name* next = nullptr;   ///< The name that came next the last time, or null,
    Name* other = nullptr;  ///< and the last one before that was another.

    const char* text() const { return block.data(); }

    /// Whether this name and a `>` are at `at`, where a block can be read.
    bool isAt(const char* at) const { return at[length] == '>' && haveSameFront(at, text(), length); }
};

/// A message of fewer bytes is no list: it has each name once or twice, which takes less than to know it.
constexpr std::size_t listSize = 2000;

/// The names that a message uses. Messages are lists of the same elements in nearly the same order, so mostly the name
/// that came after another one comes after it again: then a comparison takes the place of reading it byte by byte.
class KnownNames {
public:
    KnownNames() = default;
    KnownNames(const KnownNames&) = delete;
    KnownNames& operator=(const KnownNames&) = delete;

    /// Returns the name at `at`, where a block can be read, with a `>`, if it is one that was expected.
    const Name* expectedAt(const char* at) {
        if (last_->next != nullptr && last_->next->isAt(at)) {
            return last_->next;
        }
        if (last_->other != nullptr && last_->other->isAt(at)) {
            std::swap(last_->next, last_->other);
            return last_->next;
        }
        return nullptr;
    }

    /// Goes on with the expected name.
    void goOn() { last_ = last_->next; }

    /// Goes on with the name that came.
    void goOn(std::string_view text) {
        if (Name* const name = find(text)) {
            if (last_->next != name) {
                last_->other = std::exchange(last_->next, name);
            }
            last_ = name;
        }
    }

private:
    static constexpr std::size_t mostNames = 64;

    /// Returns the name, which is kept if it is new and there is room for it, or null.
    Name* find(std::string_view text) {
        const auto found = std::find_if(names_.begin(), names_.end(), [&](const Name& name) {
            return name.length == text.size() && name.text() == text;
        });
        if (found != names_.end()) {
            return &*found;
        }
        if (names_.size() == mostNames || text.size() >= blockSize) {
            return nullptr;
        }
        Name& name = names_.emplace_back();
        std::memcpy(name.block.data(), text.data(), text.size());
        name.length = text.size();
        return &name;
    }

    std::deque<Name> names_;  ///< They stay where they are.
    Name none_{};             ///< What a message begins with.
    Name* last_ = &none_;
};

/// A mark that ends something. Where a search for it failed, any later one would: so it is not tried again, or a
/// message of nothing but begins would take quadratic time.
struct EndMark {
    std::string_view text;
    bool isMissing = false;
};

/// One walk over one message.
///
/// What is no markup is text. That holds for markup without an end, too, since a name is written raw into the stored
/// format: a caller who calls himself `<!--` must not hide the calls of others. So after a failed try the walk goes
/// on behind the `<`. Tries do not add up: a try gives up at a `<` that is not in a quoted value, so each that is
/// under way there goes on in quotes or in apostrophes, while a new one starts outside of both. From any byte on,
/// tries in different ones of these three states stay in different ones. So no byte is read by more than three.
class Walk {
public:
    Walk(std::string_view message, void* userData, XmlParser::TagBegin tagBegin, XmlParser::TagEnd tagEnd,
         XmlParser::Data data)
        : message_(message), userData_(userData), tagBegin_(tagBegin), tagEnd_(tagEnd), data_(data) {}

    /// Returns whether every element has its end at the right place and nothing is cut off.
    bool run() {
        std::size_t place = 0;
        while ((place = findMarkup(place)) != none) {
            std::size_t behind = takeExpected(place);
            behind = behind != none ? behind : takeMarkup(place);
            if (behind == none) {
                ++place;
            } else {
                place = textStart_ = behind;
                // Whatever seemed cut off before is text, for something came after it.
                endsInside_ = false;
            }
        }
        // Text behind the last tag is not handed over: it is text between two tags only if a tag follows, and a piece
        // of a number that was cut off is worse than none.
        return isSound_ && !endsInside_ && openElements_.empty();
    }

private:
    /// Mostly a tag follows right behind another one, where a search would only cost.
    std::size_t findMarkup(std::size_t place) const {
        return place < message_.size() && message_[place] == '<' ? place : message_.find('<', place);
    }

    /// Takes the element at `place`, which holds a `<`, if it has the expected name, no attributes, and nothing but
    /// text in it. Returns the place behind it, or `none`: then nothing is taken. This is what lists consist of; it
    /// does nothing that the other functions would not do as well, in more steps.
    std::size_t takeExpected(std::size_t place) {
        const char* const begin = message_.data() + place + 1;
        const Name* const name = room(begin) < blockSize ? nullptr : knownNames_.expectedAt(begin);
        if (name == nullptr) {
            return none;
        }
        const char* const text = begin + name->length + 1;
        const char* const close = static_cast<const char*>(std::memchr(text, '<', room(text)));
        if (close == nullptr || room(close) < blockSize + 2 || close[1] != '/' || !name->isAt(close + 2)) {
            return none;
        }
        reportText(place);
        knownNames_.goOn();
        const char* noAttributes = nullptr;
        tagBegin_(userData_, name->text(), &noAttributes);
        if (text != close) {
            data_(userData_, text, static_cast<int>(close - text));
        }
        tagEnd_(userData_, name->text());
        return static_cast<std::size_t>(close - message_.data()) + name->length + 3;
    }

    std::size_t room(const char* at) const { return static_cast<std::size_t>(message_.data() + message_.size() - at); }

    /// Takes the markup at `place`, which holds a `<`. Returns the place behind it, or `none` if it is none.
    std::size_t takeMarkup(std::size_t place) {
        const char next = at(place + 1);
        if (startsName(next)) {
            return takeBeginTag(place);
        }
        switch (next) {
            case '/':
                return takeEndTag(place);
            case '?':
                return takeInstruction(place);
            case '!':
                return takeDeclaration(place);
            default:
                return none;
        }
    }

    std::size_t takeBeginTag(std::size_t place) {
        const std::size_t nameEnd = behindName(place + 1);
        if (nameEnd < message_.size() && message_[nameEnd] == '>') {
            const char* noAttributes = nullptr;
            reportBegin(place, nameEnd, &noAttributes);
            return nameEnd + 1;
        }
        tag_.clear();
        tag_.add(message_.substr(place + 1, nameEnd - place - 1));
        std::size_t end = nameEnd;
        for (;;) {
            const std::size_t next = skipBlanks(end);
            const char c = at(next);
            if (c == '>') {
                reportBegin(place, nameEnd, tag_.attributes());
                return next + 1;
            }
            if (c == '/' && at(next + 1) == '>') {
                reportBegin(place, nameEnd, tag_.attributes());
                reportInnermostEnd();
                return next + 2;
            }
            if (next == end || !startsName(c)) {
                return none;
            }
            end = takeAttribute(next);
            if (end == none) {
                return none;
            }
        }
    }

    std::size_t takeEndTag(std::size_t place) {
        const std::size_t nameStart = place + 2;
        if (isInnermostAt(nameStart)) {
            const std::size_t end = nameStart + openElements_.innermostLength();
            reportText(place);
            reportInnermostEnd();
            return end + 1;
        }
        if (!startsName(at(nameStart))) {
            return none;
        }
        tag_.clear();
        const std::size_t nameEnd = takeName(nameStart);
        const std::size_t end = skipBlanks(nameEnd);
        if (at(end) != '>') {
            return none;
        }
        reportText(place);
        reportEnd(message_.substr(nameStart, nameEnd - nameStart));
        return end + 1;
    }

    /// The XML declaration looks like a processing instruction, and goes the same way.
    std::size_t takeInstruction(std::size_t place) {
        return startsName(at(place + 2)) ? joinAcross(place, findBehind(place + 2, instructionEnd_)) : none;
    }

    std::size_t takeDeclaration(std::size_t place) {
        if (isAt(commentStart, place)) {
            return joinAcross(place, findBehind(place + commentStart.size(), commentEnd_));
        }
        if (isAt(cdataStart, place)) {
            return takeCdata(place);
        }
        // Within an element it is what somebody wrote there.
        if (openElements_.empty() && isAt(doctypeStart, place)) {
            return findBehindDoctype(place + doctypeStart.size());
        }
        return none;
    }

    std::size_t takeCdata(std::size_t place) {
        const std::size_t start = place + cdataStart.size();
        const std::size_t behind = findBehind(start, cdataEnd_);
        if (behind != none) {
            joinAcross(place, behind);
            keep(start, behind - cdataEnd_.text.size());
        }
        return behind;
    }

    /// The texts before `place` and from `behind` on belong together.
    std::size_t joinAcross(std::size_t place, std::size_t behind) {
        if (behind != none) {
            keep(textStart_, place);
        }
        return behind;
    }

    void keep(std::size_t start, std::size_t end) {
        if (!openElements_.empty()) {
            joined_ += message_.substr(start, end - start);
        }
    }

    /// Hands over the text that ends at `end`, if it is in an element.
    void reportText(std::size_t end) {
        std::string_view text = message_.substr(textStart_, end - textStart_);
        if (!joined_.empty()) {
            joined_ += text;
            text = joined_;
        }
        if (!openElements_.empty() && !text.empty()) {
            data_(userData_, text.data(), static_cast<int>(text.size()));
        }
        joined_.clear();
    }

    void reportBegin(std::size_t place, std::size_t nameEnd, const char** attributes) {
        reportText(place);
        const std::string_view name = message_.substr(place + 1, nameEnd - place - 1);
        if (message_.size() >= listSize) {
            knownNames_.goOn(name);
        }
        openElements_.push(name);
        tagBegin_(userData_, openElements_.innermost(), attributes);
    }

    /// Whether the name of the innermost element and a `>` are at `place`.
    bool isInnermostAt(std::size_t place) const {
        if (openElements_.empty()) {
            return false;
        }
        const std::size_t length = openElements_.innermostLength();
        return message_.size() - place > length && message_[place + length] == '>' &&
               std::memcmp(message_.data() + place, openElements_.innermost(), length) == 0;
    }

    void reportInnermostEnd() {
        tagEnd_(userData_, openElements_.innermost());
        openElements_.pop();
    }

    /// An end tag that does not fit the innermost element closes nothing, so that a stray one in a raw name does not
    /// put the rest of the message outside of its elements.
    void reportEnd(std::string_view name) {
        if (!openElements_.empty() && openElements_.innermost() == name) {
            reportInnermostEnd();
            return;
        }
        isSound_ = false;
        tagEnd_(userData_, tag_.name());
    }

    std::size_t behindName(std::size_t place) const {
        const char* at = message_.data() + place;
        const char* const end = message_.data() + message_.size();
        while (at != end && continuesName(*at)) {
            ++at;
        }
        return static_cast<std::size_t>(at - message_.data());
    }

    /// Takes over the name at `place` and returns the place behind it.
    std::size_t takeName(std::size_t place) {
        const std::size_t end = behindName(place);
        tag_.add(message_.substr(place, end - place));
        return end;
    }

    /// Takes over the attribute at `place` and returns the place behind it, or `none` if it is none.
    std::size_t takeAttribute(std::size_t place) {
        const std::size_t equals = skipBlanks(takeName(place));
        if (at(equals) != '=') {
            return none;
        }
        const std::size_t open = skipBlanks(equals + 1);
        const char quote = at(open);
        if (quote != '"' && quote != '\'') {
            return none;
        }
        const std::size_t close = message_.find(quote, open + 1);
        if (close == none) {
            endsInside_ = true;
            return none;
        }
        tag_.add(message_.substr(open + 1, close - open - 1));
        return close + 1;
    }

    /// Returns the place behind a document type declaration whose inside starts at `place`, or `none`. Brackets nest in
    /// it; in a quoted text, a comment or an instruction they mean nothing, nor does a `>`.
    std::size_t findBehindDoctype(std::size_t place) {
        std::size_t depth = 0;
        while (!doctypeEndIsMissing_ && place < message_.size()) {
            const char c = message_[place];
            if (c == '>' && depth == 0) {
                return place + 1;
            }
            depth += c == '[' ? 1 : 0;
            depth -= c == ']' && depth > 0 ? 1 : 0;
            place = behindDoctypePiece(place);
        }
        doctypeEndIsMissing_ = true;
        isSound_ = false;
        return none;
    }

    /// Returns the place behind the quoted text, comment, instruction or else the one character at `place`.
    std::size_t behindDoctypePiece(std::size_t place) {
        const char c = message_[place];
        if (c == '"' || c == '\'') {
            const std::size_t close = message_.find(c, place + 1);
            return close == none ? none : close + 1;
        }
        if (isAt(commentStart, place)) {
            return findBehind(place + commentStart.size(), commentEnd_);
        }
        return isAt(instructionStart, place) ? findBehind(place + instructionStart.size(), instructionEnd_) : place + 1;
    }

    /// Returns the place behind the next `end`, or `none` if the message ends before.
    std::size_t findBehind(std::size_t place, EndMark& end) {
        const std::size_t found = end.isMissing ? none : message_.find(end.text, place);
        if (found == none) {
            end.isMissing = true;
            isSound_ = false;
            return none;
        }
        return found + end.text.size();
    }

    std::size_t skipBlanks(std::size_t place) const {
        while (place < message_.size() && isBlank(message_[place])) {
            ++place;
        }
        return place;
    }

    /// Returns the byte at `place`. Behind the end, where markup would have gone on, it is a zero, which is part of
    /// none.
    char at(std::size_t place) {
        if (place < message_.size()) {
            return message_[place];
        }
        endsInside_ = true;
        return '\0';
    }

    /// Returns whether `mark` is at `place`.
    bool isAt(std::string_view mark, std::size_t place) {
        const std::string_view found = message_.substr(place, mark.size());
        if (found.size() < mark.size() && found == mark.substr(0, found.size())) {
            endsInside_ = true;
        }
        return found == mark;
    }

    static constexpr std::string_view commentStart = "<!--";
    static constexpr std::string_view cdataStart = "<![CDATA[";
    static constexpr std::string_view doctypeStart = "<!DOCTYPE";
    static constexpr std::string_view instructionStart = "<?";

    const std::string_view message_;
    void* const userData_;
    const XmlParser::TagBegin tagBegin_;
    const XmlParser::TagEnd tagEnd_;
    const XmlParser::Data data_;

    bool isSound_ = true;
    bool endsInside_ = false;  ///< The message ends in what may have become markup.
    OpenElements openElements_;
    KnownNames knownNames_;
    std::size_t textStart_ = 0;  ///< Where the last piece of the current text starts.
    std::string joined_;         ///< The pieces of the current text before that.
    TagTexts tag_;               ///< The tag that is being read.

    EndMark commentEnd_{"-->"};
    EndMark instructionEnd_{"?>"};
    EndMark cdataEnd_{"]]>"};
    bool doctypeEndIsMissing_ = false;
};

}  // namespace

XmlParser::XmlParser(void* aUserData, TagBegin aTagBegin, TagEnd aTagEnd, Data aData)
    : userData(aUserData), tagBegin(aTagBegin), tagEnd(aTagEnd), data(aData) {}

XmlParser::~XmlParser() {}

bool XmlParser::parseMessage(const char* text, int length) {
    const std::string_view message = length > 0 ? std::string_view(text, static_cast<std::size_t>(length)) : "";
    return Walk(message, userData, tagBegin, tagEnd, data).run();
}
