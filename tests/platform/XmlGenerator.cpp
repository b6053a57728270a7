#include "XmlGenerator.h"

#include <cstddef>
#include <set>

std::string XmlGenerator::document() {
    static const char* const declarations[] = {"", "<?xml version=\"1.0\" encoding=\"utf-8\"?>",
                                               "<?xml version='1.0' encoding='UTF-8' standalone='yes' ?>\r\n",
                                               "\xEF\xBB\xBF<?xml version='1.0'?>"};
    return oneOf(declarations) + miscellany() + element(0) + miscellany();
}

std::string XmlGenerator::name() {
    static const char* const starts[] = {"a", "Entry", "Item", "_", "x:y", "Z", "\xC3\xA9", "\xD0\x96", "\xE5\x90\x8D"};
    static const char* const ends[] = {"", "", "1", "-b", ".c", "_D", "\xC3\x9F", "\xCE\xA9"};
    return oneOf(starts) + oneOf(ends);
}

std::string XmlGenerator::blanks(std::size_t least) {
    static const char* const choices[] = {" ", "\t", "\n", "\r\n", "\r "};
    std::string all;
    for (std::size_t left = least + (below(4) == 0 ? below(3) : 0); left > 0; --left) {
        all += oneOf(choices);
    }
    return all;
}

std::string XmlGenerator::attributes() {
    std::string all;
    std::set<std::string> used;
    for (std::size_t left = below(3) == 0 ? below(4) : 0; left > 0; --left) {
        const std::string attribute = name();
        if (used.insert(attribute).second) {
            const char quote = below(2) == 0 ? '"' : '\'';
            all += blanks(1) + attribute + blanks(0) + "=" + blanks(0) + value(quote);
        }
    }
    return all;
}

std::string XmlGenerator::value(char quote) {
    static const char* const choices[] = {"x",     "1 2",   "&amp;", "&lt;",     "&gt;", "&quot;", "&apos;", "&#233;",
                                          "&#xA;", "&#13;", "\r\n",  "\r \t",    "\n",   ">",      "/>",     "]]>",
                                          "--",    "=",     "?>",    "\xC3\xA9", "'",    "\""};
    std::string all(1, quote);
    for (std::size_t left = below(5); left > 0; --left) {
        const std::string piece = oneOf(choices);
        all += piece[0] == quote ? "" : piece;
    }
    return all + quote;
}

std::string XmlGenerator::element(int depth) {
    const std::string tag = name();
    const std::string begin = "<" + tag + attributes() + blanks(0);
    if (depth > 0 && below(6) == 0) {
        return begin + "/>";
    }
    return begin + ">" + content(depth) + "</" + tag + blanks(0) + ">";
}

std::string XmlGenerator::content(int depth) {
    std::string all;
    for (std::size_t left = depth == 0 ? 3 + below(8) : below(depth < 6 ? 6 : 3); left > 0; --left) {
        switch (below(10)) {
            case 0:
                all += cdata();
                break;
            case 1:
                all += comment();
                break;
            case 2:
                all += instruction();
                break;
            case 3:
            case 4:
            case 5:
                all += depth < 12 ? element(depth + 1) : "";
                break;
            default:
                all += text();
        }
    }
    return all;
}

std::string XmlGenerator::text() {
    // A carriage return never stands last: were the next text to begin with a line feed, the two would be one line
    // end or two, depending on what stood between.
    static const char* const choices[] = {
        "Smith",  "+49 89 123", "&amp;",   "&lt;",   "&gt;", "&quot;",   "&apos;",
        "&#233;", "&#x1F600;",  "&#13;",   "&#x0A;", "\r\n", "\n",       "\r\t",
        " ",      ">",          "\"",      "'",      "]",    "\xC3\xA9", "\xF0\x9F\x98\x80",
        "/>",     "=",          "&amp;lt;"};
    std::string all;
    for (std::size_t left = 1 + below(5); left > 0; --left) {
        const std::string piece = oneOf(choices);
        // "]]>" is no text.
        all += piece == ">" && !all.empty() && all.back() == ']' ? "&gt;" : piece;
    }
    return all + (all.back() == ']' ? "." : "");
}

std::string XmlGenerator::cdata() {
    static const char* const choices[] = {"<b>",  "</b>", "]",    "]]", "x",        "-->",
                                          "<!--", " ",    "\r\n", "\n", "\xC3\xA9", "<![CDATA["};
    std::string all = "<![CDATA[";
    for (std::size_t left = below(4); left > 0; --left) {
        all += oneOf(choices);
    }
    return all + "]]>";
}

std::string XmlGenerator::comment() {
    static const char* const choices[] = {"<b>", "</b>", "- ", "x",    "&",         "]]>", " ",
                                          "'",   "\"",   "?>", "\r\n", "<![CDATA[", "->x"};
    std::string all = "<!--";
    for (std::size_t left = below(4); left > 0; --left) {
        const std::string piece = oneOf(choices);
        all += piece[0] == '-' && (all.back() == '-') ? " " : piece;
    }
    return all + "-->";
}

std::string XmlGenerator::instruction() {
    static const char* const choices[] = {"<b>", "</b>", "?", "x", "&", "]]>", " ", "'", "\"", "-->", "\r\n", "<?"};
    std::string all = "<?p" + name();
    for (std::size_t left = below(4); left > 0; --left) {
        all += " " + oneOf(choices);
    }
    return all + "?>";
}

std::string XmlGenerator::miscellany() {
    std::string all;
    for (std::size_t left = below(3) == 0 ? below(3) : 0; left > 0; --left) {
        const std::size_t choice = below(3);
        all += choice == 0 ? comment() : choice == 1 ? instruction() : blanks(1);
    }
    return all;
}
