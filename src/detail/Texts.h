#ifndef CALLJOURNAL_DETAIL_TEXTS_H
#define CALLJOURNAL_DETAIL_TEXTS_H

#include <string_view>

namespace calljournal {
namespace detail {

/// The texts of the format as views, under the names that CallListDatabaseAdapterHelper offers them by.
namespace text {
#define TEXT(name, literal) inline constexpr std::string_view name = literal;
#include "Texts.inc"
#undef TEXT
}  // namespace text

}  // namespace detail
}  // namespace calljournal

#endif
