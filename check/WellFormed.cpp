#include "WellFormed.h"

#include <algorithm>
#include <vector>

#include "PrintableText.h"

namespace calljournal {

bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isNamePart(char c) {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool isForbidden(char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

std::size_t entityLength(std::string_view text, std::size_t at) {
    for (const char* entity : {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"}) {
        if (text.compare(at, std::char_traits<char>::length(entity), entity) == 0) {
            return std::char_traits<char>::length(entity);
        }
    }
    if (text.compare(at, 2, "&#") != 0) {
        return 0;
    }
    const bool isHex = text.compare(at, 3, "&#x") == 0;
    const std::size_t begin = at + (isHex ? 3 : 2);
    const std::size_t end = text.find_first_not_of(isHex ? "0123456789abcdefABCDEF" : "0123456789", begin);
    return end != std::string_view::npos && end > begin && text[end] == ';' ? end + 1 - at : 0;
}

namespace {

/// One walk over a text that keeps the open elements.
class Walk {
public:
    explicit Walk(const std::string& text) : text_(text) {}

    std::optional<Defect> firstDefect() {
        while (at_ < text_.size()) {
            const bool isFine = text_[at_] == '<' ? takeTag() : text_[at_] == '&' ? takeEntity() : takeByte();
            if (!isFine) {
                return defect_;
            }
        }
        if (!open_.empty()) {
            fail(open_.back().at, "<" + open_.back().name + "> is never closed");
        }
        return defect_;
    }

private:
    struct Open {
        std::string name;
        std::size_t at;
    };

    bool fail(std::size_t at, const std::string& what) {
        const std::size_t lineStart = at == 0 ? std::string::npos : text_.rfind('\n', at - 1);
        const auto line = std::count(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(at), '\n') + 1;
        defect_ =
            Defect{static_cast<std::size_t>(line), lineStart == std::string::npos ? at + 1 : at - lineStart, what};
        return false;
    }

    bool takeByte() {
        if (isForbidden(text_[at_])) {
            return fail(at_, "the byte " + printable(text_.substr(at_, 1)) + " is not allowed in XML");
        }
        ++at_;
        return true;
    }

    bool takeEntity() {
        const std::size_t length = entityLength(text_, at_);
        if (length == 0) {
            return fail(at_, "\"&\" starts no entity; a text's ampersand is written as &amp;");
        }
        at_ += length;
        return true;
    }

    bool takeTag() {
        const bool isEnd = text_.compare(at_, 2, "</") == 0;
        const std::size_t nameAt = at_ + (isEnd ? 2 : 1);
        std::size_t end = nameAt;
        while (end < text_.size() && isNamePart(text_[end])) {
            ++end;
        }
        if (end == nameAt || !isNameStart(text_[nameAt])) {
            return fail(at_, "\"<\" starts no tag; a text's less-than sign is written as &lt;");
        }
        const std::string name = text_.substr(nameAt, end - nameAt);
        if (end == text_.size()) {
            return fail(at_, "the text ends in the middle of a tag");
        }
        if (text_[end] != '>') {
            return fail(at_, "the tag of " + name + " does not end with \">\" behind its name");
        }
        return isEnd ? close(name, end) : open(name, end);
    }

    bool open(const std::string& name, std::size_t end) {
        open_.push_back({name, at_});
        at_ = end + 1;
        return true;
    }

    bool close(const std::string& name, std::size_t end) {
        if (open_.empty()) {
            return fail(at_, "</" + name + "> closes nothing");
        }
        if (open_.back().name != name) {
            return fail(at_, "</" + name + "> stands where </" + open_.back().name + "> is due");
        }
        open_.pop_back();
        at_ = end + 1;
        return true;
    }

    const std::string& text_;
    std::size_t at_ = 0;
    std::vector<Open> open_;
    std::optional<Defect> defect_;
};

}  // namespace

std::optional<Defect> findDefect(const std::string& text) {
    return Walk(text).firstDefect();
}

std::string describe(const Defect& defect) {
    return "line " + std::to_string(defect.line) + ", column " + std::to_string(defect.column) + ": " +
           printable(defect.what);
}

}  // namespace calljournal
