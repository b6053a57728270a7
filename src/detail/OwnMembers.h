#pragma once

#include "../format/CallKinds.h"

namespace calljournal::detail {

/// The private members that reading fills in place, where the accessors of the item would cost a copy.
template <class Item>
struct OwnMembers;

template <>
struct OwnMembers<CallItem> {
    static constexpr auto surname = &CallItem::surname_;
    static constexpr auto firstname = &CallItem::firstname_;
};

template <>
struct OwnMembers<CallItemWithPicture> {
    static constexpr auto pictureClip = &CallItemWithPicture::pictureClip_;
};

#define CALLJOURNAL_OWN_MEMBERS(Kind, word)                                 \
    template <>                                                             \
    struct OwnMembers<Kind##CallItem> {                                     \
        static constexpr auto calls = &Kind##CallItem::word##CallInfoList_; \
    };

CALLJOURNAL_CALL_KINDS(CALLJOURNAL_OWN_MEMBERS)
#undef CALLJOURNAL_OWN_MEMBERS

}  // namespace calljournal::detail
