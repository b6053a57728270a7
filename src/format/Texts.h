#pragma once

#include <string_view>

namespace calljournal::format {

/// The texts of the format, under the names that CallListDatabaseAdapterHelper offers them by.
namespace text {

#define TEXT(name, literal) inline constexpr std::string_view name = literal;
#include "Texts.inc"

// Texts that the helper does not offer: the element around a message's content, and the schema of conversations with
// the element that names the call log entry of one.
inline constexpr std::string_view SCHEMA = "Schema";
inline constexpr std::string_view DAS_CONVERSATIONS = "Conversations";
inline constexpr std::string_view CALLLOGID = "CallLogId";

}  // namespace text

}  // namespace calljournal::format
