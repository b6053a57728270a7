#include "OtherPlatform.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <utility>

#include "ClientUtils.h"
#include "HardwareVersion.h"
#include "PlatformLog.h"
#include "Storage.h"

OtherPlatform& otherPlatform() {
    static OtherPlatform platform;
    return platform;
}

namespace ClientUtils {

std::string escapeXMLString(const std::string& text) {
    std::string result;
    for (const char character : text) {
        result += character == '~' ? "" : character == '&' ? "&and;" : std::string(1, character);
    }
    return result;
}

std::string unescapeXMLString(const std::string& text) {
    otherPlatform().unescaped.push_back(text);
    static const std::pair<std::string, std::string> entities[] = {{"&and;", "&"},
                                                                   {"&T;", "True"},
                                                                   {"&I;", "<Item>"},
                                                                   {"&/I;", "</Item>"},
                                                                   {"&M;", "MOBILE"},
                                                                   {"&1;", "&2;"},
                                                                   {"&0;", std::string(1, '\0')}};
    std::string result;
    for (std::size_t place = 0; place < text.size();) {
        std::string piece(1, text[place]);
        std::size_t length = 1;
        for (const auto& [entity, plain] : entities) {
            if (text.compare(place, entity.size(), entity) == 0) {
                piece = plain;
                length = entity.size();
            }
        }
        result += piece;
        place += length;
    }
    return result;
}

std::string fixSpecialXMLCharactersToQuote(const std::string& text) {
    otherPlatform().fixed.push_back(text);
    return otherPlatform().fix(text);
}

// What only the contacts importer asks for, which is not looked at here.

std::string trim(const std::string& text) {
    return text;
}

bool isAllDigits(const std::string&) {
    return false;
}

int stoi(const std::string&) {
    return 0;
}

void handleCRatEnd(std::string&) {}

}  // namespace ClientUtils

namespace Storage {

std::uint32_t UserDiskSpace(const std::string&) {
    return 0;
}

std::uint32_t fileSize(std::string) {
    return 0;
}

void deleteFile_noEx(const std::string&) {}

}  // namespace Storage

namespace HardwareVersion {

bool is_NQ() {
    return false;
}

int getHWSubPlatformVariant() {
    return 0;
}

}  // namespace HardwareVersion

XmlParser::XmlParser(void* object, TagBegin begin, TagEnd end, Data characters)
    : userData(object), tagBegin(begin), tagEnd(end), data(characters) {
    otherPlatform().events.push_back("parser made");
}

XmlParser::~XmlParser() {
    otherPlatform().events.push_back("parser gone");
}

bool XmlParser::parseMessage(const char* text, int length) {
    OtherPlatform& platform = otherPlatform();
    platform.events.push_back("parse");
    platform.parses.push_back({std::string(text, static_cast<std::size_t>(length)), length,
                               std::string(text).size() >= static_cast<std::size_t>(length)});
    if (platform.script) {
        platform.script(userData, tagBegin, tagEnd, data);
    }
    return platform.parseResult;
}

bool loggingOnAppZel(const char*, int) {
    return otherPlatform().logs;
}

void logAppZel(const char*, const char*, int, int, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    char text[1000];
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    otherPlatform().events.push_back(text);
}
