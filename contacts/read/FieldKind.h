#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace calljournal {

/// What a column of an address book, or a property of a vCard, says about a person: FieldKinds.inc has the list.
///
/// An address has parts and, where a program puts all in one cell, a kind for the whole. The phone's own two address
/// lines have kinds of their own, since they are already joined the way the phone does it.
enum class FieldKind : unsigned char {
#define KIND(name) name,
#include "FieldKinds.inc"
#undef KIND
};

/// How many field kinds there are; they are numbered from 0 without gaps.
constexpr std::size_t fieldKindCount = static_cast<std::size_t>(FieldKind::address2PoBox) + 1;

/// Returns the word for a field kind, which is the enumerator's: "workPhone".
std::string_view fieldKindName(FieldKind kind);

/// Returns the field kind of a word; upper and lower case are the same. The phone's own column names are words as well
/// ("Mobile1" is mobile, "LastName" is family). Nothing for other words.
std::optional<FieldKind> fieldKindOf(std::string_view word);

}  // namespace calljournal
