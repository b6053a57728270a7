// The parser against its rules written down once more, as plainly as they can be: each kind of markup is one regular
// expression, tried at each `<`.

#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "Rounds.h"
#include "XmlEvents.h"

namespace {

const std::string name = "[A-Za-z_:\x80-\xFF][A-Za-z0-9_:.\x80-\xFF-]*";
const std::string blank = "[ \t\n\r]";
const std::string attribute = blank + "+" + name + blank + "*=" + blank + "*(?:\"[^\"]*\"|'[^']*')";

const std::regex beginTag("<(" + name + ")((?:" + attribute + ")*)" + blank + "*(/?)>");
const std::regex oneAttribute("(" + name + ")" + blank + "*=" + blank + "*(?:\"([^\"]*)\"|'([^']*)')");
const std::regex endTag("</(" + name + ")" + blank + "*>");
const std::regex comment("<!--(?:(?!-->)[\\s\\S])*-->");
const std::regex instruction("<\\?" + name + "(?:(?!\\?>)[\\s\\S])*\\?>");
const std::regex cdata("<!\\[CDATA\\[((?:(?!\\]\\]>)[\\s\\S])*)\\]\\]>");

/// What begins at the end of the message, to be continued.
const std::regex cutBeginTag("<(?:" + name + "(?:" + attribute + ")*(?:" + blank + "*/?|" + blank + "+" + name + blank +
                             "*(?:=" + blank + "*(?:\"[^\"]*|'[^']*)?)?))?");
const std::regex cutEndTag("</(?:" + name + blank + "*)?");
const std::regex cutOther("<\\?|<!|<!-|<!\\[|<!\\[C|<!\\[CD|<!\\[CDA|<!\\[CDAT|<!\\[CDATA");
const std::regex unendedOther("<!--|<!\\[CDATA\\[|<\\?" + name);

class PlainParser {
public:
    explicit PlainParser(const std::string& message) : rest_(message) {}

    XmlEvents run() {
        result_.isSound = true;
        std::string pending;  // What stands since the last markup.
        while (!rest_.empty()) {
            if (takeMarkup()) {
                pending.clear();
            } else {
                text_ += rest_[0];
                pending += rest_[0];
                rest_.erase(0, 1);
            }
        }
        for (std::size_t at = 0; at < pending.size(); ++at) {
            const std::string end = pending.substr(at);
            if (std::regex_match(end, cutBeginTag) || std::regex_match(end, cutEndTag) ||
                std::regex_match(end, cutOther)) {
                result_.isSound = false;
            }
        }
        result_.isSound = result_.isSound && open_.empty();
        return result_;
    }

private:
    bool stands(const std::regex& markup) {
        return std::regex_search(rest_, match_, markup, std::regex_constants::match_continuous);
    }

    bool takeMarkup() {
        if (stands(beginTag)) {
            takeBeginTag();
        } else if (stands(endTag)) {
            flushText();
            close(match_[1]);
        } else if (stands(cdata)) {
            text_ += match_[1];
        } else if (stands(unendedOther) && !stands(comment) && !stands(instruction)) {
            result_.isSound = false;
            return false;
        } else if (!stands(comment) && !stands(instruction)) {
            return false;
        }
        rest_ = match_.suffix();
        return true;
    }

    void takeBeginTag() {
        flushText();
        XmlEvent event{XmlEvent::begin, match_[1], {}};
        const std::string attributes = match_[2];
        for (std::sregex_iterator it(attributes.begin(), attributes.end(), oneAttribute); it != std::sregex_iterator();
             ++it) {
            event.attributes.emplace_back((*it)[1], (*it)[2].matched ? (*it)[2] : (*it)[3]);
        }
        result_.events.push_back(event);
        open_.push_back(event.value);
        if (match_[3].length() > 0) {
            close(event.value);
        }
    }

    void close(const std::string& closed) {
        if (!open_.empty() && open_.back() == closed) {
            open_.pop_back();
        } else {
            result_.isSound = false;
        }
        result_.events.push_back({XmlEvent::end, closed, {}});
    }

    void flushText() {
        if (!text_.empty() && !open_.empty()) {
            result_.events.push_back({XmlEvent::text, text_, {}});
        }
        text_.clear();
    }

    std::string rest_;
    std::smatch match_;
    std::string text_;
    std::vector<std::string> open_;
    XmlEvents result_;
};

}  // namespace

TEST(XmlParserRules, GiveTheSameEventsWrittenDownPlainly) {
    const std::string pieces[] = {
        "<",   "<",         "<a",    "<a",       "</a",      "</b", "</a>",   "</b>",
        "<a>", "<b>",       "<a/>",  ">",        ">",        "/>",  "/",      " ",
        " ",   "\n",        "a",     "b=",       "=",        "'",   "'",      "\"",
        "\"",  "'x'",       "\"y\"", " c='1'",   " d=\"<\"", "&",   "x",      "-",
        "--",  "]",         "]]>",   "?",        "?>",       "!",   "<!--",   "-->",
        "<?p", "<![CDATA[", "[",     "\xC3\xA9", "1",        "<!",  "<![CDA", std::string(1, '\0')};
    const unsigned seed = 20261121;
    std::mt19937 random(seed);
    unsigned sound = 0;
    for (unsigned round = 0; round < rounds(20000); ++round) {
        std::string message = round % 2 == 0 ? "<a>" : "";
        for (std::size_t left = random() % 20; left > 0; --left) {
            message += pieces[random() % std::size(pieces)];
        }
        message += round % 4 == 0 ? "</a>" : "";
        const XmlEvents events = parse(message);
        ASSERT_EQ(events, PlainParser(message).run())
            << "seed " << seed << ", round " << round << ": " << testing::PrintToString(message);
        sound += events.isSound ? 1 : 0;
    }
    // The messages are no rubbish throughout.
    EXPECT_GT(sound, rounds(2000));
}
