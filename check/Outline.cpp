#include "Outline.h"

#include <algorithm>
#include <map>

#include "Text.h"

namespace calljournal {

namespace {

bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isNamePart(char c) {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

/// The length of the predefined entity or character reference at `at`, or 0 if there is none.
std::size_t entityLength(std::string_view text, std::size_t at) {
    for (const std::string_view entity : {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"}) {
        if (text.substr(at, entity.size()) == entity) {
            return entity.size();
        }
    }
    if (text.substr(at, 2) != "&#") {
        return 0;
    }
    const bool isHex = text.substr(at, 3) == "&#x";
    const std::size_t begin = at + (isHex ? 3 : 2);
    const std::size_t end = text.find_first_not_of(isHex ? "0123456789abcdefABCDEF" : "0123456789", begin);
    return end != std::string_view::npos && end > begin && text[end] == ';' ? end + 1 - at : 0;
}

/// One tag of a text.
struct Tag {
    std::string_view name;
    std::string_view attribute;
    std::size_t length = 0;
    bool isEnd = false;
    bool isEmpty = false;  ///< "<Name/>"
    bool isPlain = true;   ///< Nothing but its name between the brackets.
};

/// Reads the tag that a text begins with.
class TagReader {
public:
    explicit TagReader(std::string_view text) : rest_(text) {}

    /// False if there is no tag; what may be its name is in `tag` then, too.
    bool read(Tag& tag) {
        const std::size_t size = rest_.size();
        tag.isEnd = rest_.substr(0, 2) == "</";
        rest_.remove_prefix(tag.isEnd ? 2 : 1);
        tag.name = takeName();
        tag.isPlain = rest_.substr(0, 1) == ">";
        if (tag.name.empty() || (!tag.isEnd && !takeAttributes(tag.attribute))) {
            return false;
        }
        tag.isEmpty = !tag.isEnd && take('/');
        skipBlanks();
        const bool isWhole = take('>');
        tag.length = size - rest_.size();
        return isWhole;
    }

private:
    bool take(char c) {
        const bool isThere = !rest_.empty() && rest_.front() == c;
        rest_.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    bool skipBlanks() {
        const std::size_t count = std::min(rest_.find_first_not_of(" \t\n\r"), rest_.size());
        rest_.remove_prefix(count);
        return count > 0;
    }

    std::string_view takeName() {
        const bool isThere = !rest_.empty() && isNameStart(rest_.front());
        const auto* const end = isThere ? std::find_if_not(rest_.begin(), rest_.end(), isNamePart) : rest_.begin();
        const std::string_view name = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
        rest_.remove_prefix(name.size());
        return name;
    }

    /// False if what follows the name is neither attributes nor the end of the tag. `value` is that of the first.
    bool takeAttributes(std::string_view& value) {
        while (skipBlanks() && !takeName().empty()) {
            skipBlanks();
            const bool hasValue = take('=');
            skipBlanks();
            const char quote = rest_.empty() ? ' ' : rest_.front();
            const std::size_t end = rest_.find_first_of(quote == '"' ? "\"<" : "'<", 1);
            if (!hasValue || (quote != '"' && quote != '\'') || end == std::string_view::npos || rest_[end] != quote) {
                return false;
            }
            value = value.data() == nullptr ? rest_.substr(1, end - 1) : value;
            rest_.remove_prefix(end + 1);
        }
        return true;
    }

    std::string_view rest_;
};

/// One walk over a text that keeps the open elements.
class Walk {
public:
    explicit Walk(std::string_view text) { outline_.text = text; }

    Outline outline() {
        const std::string_view text = outline_.text;
        const std::size_t declarationEnd = text.substr(0, 6) == "<?xml " ? text.find("?>") : std::string_view::npos;
        at_ = outline_.begin = declarationEnd == std::string_view::npos ? 0 : declarationEnd + 2;
        while (at_ < text.size()) {
            if (text[at_] == '<') {
                takeTag();
            } else {
                takeByte();
            }
        }
        closeDownTo(0, text.size());
        return std::move(outline_);
    }

private:
    void error(FindingKind kind, std::string_view what) {
        outline_.syntaxErrors.push_back({kind, at_, open_.empty() ? noElement : open_.back(), what});
    }

    void takeByte() {
        const char c = outline_.text[at_];
        const std::size_t length = c == '&' ? entityLength(outline_.text, at_) : 1;
        if (length == 0) {
            error(FindingKind::rawAmpersand, {});
        } else if (isForbiddenInXml(c)) {
            error(FindingKind::forbiddenByte, outline_.text.substr(at_, 1));
        }
        at_ += std::max<std::size_t>(length, 1);
    }

    void takeTag() {
        Tag tag;
        if (!TagReader(outline_.text.substr(at_)).read(tag)) {
            const std::size_t from = at_ + (tag.isEnd ? 2 : 1);
            const bool isCut = outline_.text.find_first_of("<>", from) == std::string_view::npos;
            error(isCut ? FindingKind::cutTag : FindingKind::rawLessThan, tag.name);
            ++at_;
            return;
        }
        if (!tag.isPlain) {
            error(tag.isEnd ? FindingKind::noPlainTag : FindingKind::attributes, tag.name);
        }
        if (tag.isEnd) {
            close(tag);
        } else {
            open(tag);
        }
        at_ += tag.length;
    }

    void open(const Tag& tag) {
        const std::size_t index = outline_.elements.size();
        const std::size_t parent = open_.empty() ? noElement : open_.back();
        const std::size_t behind = at_ + tag.length;
        outline_.elements.push_back({tag.name, tag.attribute, at_, behind, behind, behind, parent, {}, tag.isEmpty});
        (parent == noElement ? outline_.top : outline_.elements[parent].children).push_back(index);
        if (!tag.isEmpty) {
            open_.push_back(index);
            ++openOfName_[tag.name];
        }
    }

    void close(const Tag& tag) {
        const auto count = openOfName_.find(tag.name);
        if (count == openOfName_.end() || count->second == 0) {
            error(FindingKind::strayEndTag, tag.name);
            return;
        }
        std::size_t depth = open_.size();
        while (outline_.elements[open_[depth - 1]].name != tag.name) {
            --depth;
        }
        closeDownTo(depth, at_);
        Element& element = outline_.elements[open_.back()];
        element.textEnd = at_;
        element.end = at_ + tag.length;
        element.isClosed = true;
        pop();
    }

    void pop() {
        --openOfName_[outline_.elements[open_.back()].name];
        open_.pop_back();
    }

    /// Ends the elements above `depth` at `end`, as never closed.
    void closeDownTo(std::size_t depth, std::size_t end) {
        while (open_.size() > depth) {
            Element& element = outline_.elements[open_.back()];
            element.textEnd = end;
            element.end = end;
            outline_.syntaxErrors.push_back(
                {FindingKind::unclosedElement, element.begin, element.parent, element.name});
            pop();
        }
    }

    Outline outline_;
    std::size_t at_ = 0;
    std::vector<std::size_t> open_;
    std::map<std::string_view, std::size_t> openOfName_;
};

}  // namespace

Outline outlineOf(std::string_view text) {
    return Walk(text).outline();
}

std::size_t firstNamed(const Outline& outline, const std::vector<std::size_t>& elements, std::string_view name) {
    const auto found = std::find_if(elements.begin(), elements.end(),
                                    [&](std::size_t element) { return outline.elements[element].name == name; });
    return found == elements.end() ? noElement : *found;
}

}  // namespace calljournal
