#include <limits>

#include "ClientUtils.h"

namespace {

const char blanks[] = " \t\n\r\v\f";

struct Entity {
    char character;
    const char* text;
};

const Entity entities[] = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}};

}  // namespace

namespace ClientUtils {

std::string escapeXMLString(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        const std::string::size_type before = escaped.size();
        for (const Entity& entity : entities) {
            if (c == entity.character) {
                escaped += entity.text;
            }
        }
        if (escaped.size() == before) {
            escaped += c;
        }
    }
    return escaped;
}

// In one pass: "&amp;lt;" becomes "&lt;", not "<".
std::string unescapeXMLString(const std::string& text) {
    std::string plain;
    for (std::string::size_type at = 0; at < text.size(); ++at) {
        char c = text[at];
        for (const Entity& entity : entities) {
            const std::string name = entity.text;
            if (text.compare(at, name.size(), name) == 0) {
                c = entity.character;
                at += name.size() - 1;
                break;
            }
        }
        plain += c;
    }
    return plain;
}

std::string fixSpecialXMLCharactersToQuote(const std::string& text) {
    std::string fixed = text;
    for (char& c : fixed) {
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r') {
            c = '\'';
        }
    }
    return fixed;
}

std::string trim(const std::string& text) {
    const std::string::size_type first = text.find_first_not_of(blanks);
    if (first == std::string::npos) {
        return std::string();
    }
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

bool isAllDigits(const std::string& text) {
    return text.find_first_not_of("0123456789") == std::string::npos;
}

int stoi(const std::string& text) {
    const long long most = std::numeric_limits<int>::max();
    std::string::size_type at = text.find_first_not_of(blanks);
    if (at == std::string::npos) {
        return 0;
    }
    const bool isNegative = text[at] == '-';
    if (isNegative || text[at] == '+') {
        ++at;
    }
    long long value = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9' && value <= most; ++at) {
        value = 10 * value + (text[at] - '0');
    }
    if (isNegative) {
        return static_cast<int>(value > most ? -most - 1 : -value);
    }
    return static_cast<int>(value > most ? most : value);
}

void handleCRatEnd(std::string& line) {
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
}

}  // namespace ClientUtils
