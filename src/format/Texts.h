#ifndef CALLJOURNAL_FORMAT_TEXTS_H
#define CALLJOURNAL_FORMAT_TEXTS_H

#include <string_view>

namespace calljournal {
namespace format {

/// The texts of the format as views, under the names that CallListDatabaseAdapterHelper offers them by.
namespace text {
#define TEXT(name, literal) inline constexpr std::string_view name = literal;
#include "Texts.inc"
#undef TEXT
}  // namespace text

}  // namespace format
}  // namespace calljournal

#endif
