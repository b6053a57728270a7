#pragma once

#include <string>
#include <string_view>

#include "CallKinds.h"

namespace calljournal {

// What the messages of the data access service are made of beside the elements of the call log format.

inline constexpr std::string_view resultElement = "Result";
inline constexpr std::string_view reasonElement = "Reason";
inline constexpr std::string_view okResult = "ok";
inline constexpr std::string_view failedResult = "failed";

inline constexpr std::string_view callBacksSchema = "CallBacks";  ///< The host's own; a phone has none for them.

/// The schemas that a store keeps entries of.
#define CALLJOURNAL_SCHEMA(Kind, word) format::CallKind<Kind##CallItem>::schema,
inline constexpr std::string_view storedSchemas[] = {
    CALLJOURNAL_CALL_KINDS(CALLJOURNAL_SCHEMA) format::text::DAS_CONVERSATIONS, callBacksSchema};
#undef CALLJOURNAL_SCHEMA

inline std::string openTag(std::string_view name) {
    return std::string("<").append(name).append(">");
}

inline std::string closeTag(std::string_view name) {
    return std::string("</").append(name).append(">");
}

inline void appendXmlElement(std::string_view name, std::string_view text, std::string& xml) {
    xml.append("<").append(name).append(">").append(text).append("</").append(name).append(">");
}

inline std::string xmlElement(std::string_view name, std::string_view text) {
    std::string xml;
    appendXmlElement(name, text, xml);
    return xml;
}

/// What is around the name in the start tag of a schema.
inline constexpr std::string_view schemaTagBegin = "<Schema name=\"";
inline constexpr std::string_view schemaTagEnd = "\">";

}  // namespace calljournal
