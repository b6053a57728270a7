#pragma once

#include <functional>
#include <string>
#include <vector>

#include "XmlParser.h"

/// A platform whose texts and XML differ from the host's as far as the interfaces allow: it shows what the library
/// leaves to the platform and what it takes from it. One per process; reset() it before each test.
///
/// - It escapes "&" as "&and;" and drops each "~", so a name can vanish.
/// - It unescapes "&and;" to "&", "&T;" to "True", "&I;" and "&/I;" to the tags of an item, "&M;" to "MOBILE", "&0;" to a
///   zero byte and "&1;" to "&2;".
/// - Its XML parser calls back what `script` calls back.
struct OtherPlatform {
    struct Parse {
        std::string text;  ///< As many bytes as the length said.
        int length;
        bool zeroFollows;  ///< Whether a zero byte stands behind them or further on.
    };

    std::function<std::string(const std::string&)> fix = [](const std::string& text) { return text; };
    std::vector<std::string> fixed;      ///< What was given to be fixed.
    std::vector<std::string> unescaped;  ///< What was given to be unescaped.
    std::function<void(void* userData, XmlParser::TagBegin, XmlParser::TagEnd, XmlParser::Data)> script;
    std::vector<Parse> parses;
    std::vector<std::string> events;  ///< Log lines, "parser made", "parse", "parser gone", in order.
    bool parseResult = true;
    bool logs = false;

    void reset() { *this = OtherPlatform(); }
};

OtherPlatform& otherPlatform();
