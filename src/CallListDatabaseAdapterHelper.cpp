#include "CallListDatabaseAdapterHelper.h"

#include <stdexcept>

#include "ClientUtils.h"
#include "detail/Elements.h"
#include "format/Texts.h"

namespace detail = calljournal::detail;
namespace text = calljournal::detail::text;

#define TEXT(name, literal) const char* const CallListDatabaseAdapterHelper::name = literal;
#include "format/Texts.inc"

std::string CallListDatabaseAdapterHelper::createXMLBegin(const char* tag) {
    std::string out;
    detail::appendBegin(out, tag);
    return out;
}

std::string CallListDatabaseAdapterHelper::createXMLClose(const char* tag) {
    std::string out;
    detail::appendClose(out, tag);
    return out;
}

void CallListDatabaseAdapterHelper::createXMLField(const char* tag, const std::string& value, std::string& out) {
    out += createXMLField(tag, value);
}

std::string CallListDatabaseAdapterHelper::createXMLField(const char* tag, const std::string& value) {
    std::string out;
    if (!value.empty()) {
        out.reserve(detail::tagsLength(tag) + value.size());
        detail::appendElement(out, tag, value);
    }
    return out;
}

std::string CallListDatabaseAdapterHelper::createXMLField(const char* tag, const char* value) {
    if (value == nullptr) {
        throw std::logic_error("basic_string::_M_construct null not valid");
    }
    return createXMLField(tag, std::string(value));
}

std::string CallListDatabaseAdapterHelper::createXMLField(const char* tag, bool value) {
    return createXMLField(tag, value ? TRUE : FALSE);
}

std::string CallListDatabaseAdapterHelper::createXMLField(const char* tag, unsigned int value) {
    // Stored counts are signed: from 2^31 up they are negative.
    return createXMLField(tag, std::to_string(static_cast<int>(value)));
}

void CallListDatabaseAdapterHelper::addXMLHeaderFooter(std::string& msg, const std::string& schemaName) {
    std::string framed;
    framed.reserve(text::XMLHEADER.size() + schemaName.size() + msg.size() + sizeof("<Schema name=\"\"></Schema>"));
    framed += text::XMLHEADER;
    if (!schemaName.empty()) {
        framed += "<Schema name=\"";
        framed += schemaName;
        framed += "\">";
    }
    framed += msg;
    if (!schemaName.empty()) {
        framed += "</Schema>";
    }
    msg = std::move(framed);
}

const char* CallListDatabaseAdapterHelper::getXMLValue2(const char* cursor, const char* tag, std::string& out) {
    const detail::FoundElement element = detail::findElement(cursor, tag);
    if (element) {
        out = ClientUtils::unescapeXMLString(std::string(element.raw()));
    } else {
        out.clear();
    }
    return element.next;
}

const char* CallListDatabaseAdapterHelper::getXMLValue2(const char* cursor, const char* tag, bool& out) {
    const detail::FoundElement element = detail::findElement(cursor, tag);
    out = element && element.raw() == text::TRUE;
    return element.next;
}

bool CallListDatabaseAdapterHelper::getAndRemoveXMLValue(std::string& xml, const char* tag, std::string& out) {
    const std::string open = createXMLBegin(tag);
    const std::string close = createXMLClose(tag);
    // Callers rely on 32-bit positions, in which a missing tag is at -1: a lone end tag is cut from byte length-1 on.
    const int openAt = static_cast<int>(xml.find(open));
    const int closeAt = static_cast<int>(xml.find(close));
    const int begin = static_cast<int>(static_cast<unsigned>(openAt) + static_cast<unsigned>(open.size()));
    const int end = static_cast<int>(static_cast<unsigned>(closeAt) + static_cast<unsigned>(close.size()));
    if (begin >= closeAt || openAt >= end) {
        return false;
    }
    out = xml.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(closeAt - begin));
    xml = xml.substr(0, static_cast<std::size_t>(openAt)) + xml.substr(static_cast<std::size_t>(end));
    return true;
}

std::string CallListDatabaseAdapterHelper::getMethodFromXMLMsg(const std::string& msg) {
    const std::size_t open = msg.find(METHOD_XML_BEGIN);
    const std::size_t close = msg.find(METHOD_XML_CLOSE);
    if (open == std::string::npos || close == std::string::npos) {
        return std::string();
    }
    // With the end tag in front the length wraps around and the rest of the message is taken.
    return msg.substr(open, close - open);
}
