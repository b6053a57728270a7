#pragma once

#include "DialledCallItem.h"
#include "ForwardedCallItem.h"
#include "MissedCallItem.h"
#include "ReceivedCallItem.h"

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

template <>
struct OwnMembers<MissedCallItem> {
    static constexpr auto calls = &MissedCallItem::missedCallInfoList_;
};

template <>
struct OwnMembers<DialledCallItem> {
    static constexpr auto calls = &DialledCallItem::dialledCallInfoList_;
};

template <>
struct OwnMembers<ReceivedCallItem> {
    static constexpr auto calls = &ReceivedCallItem::receivedCallInfoList_;
};

template <>
struct OwnMembers<ForwardedCallItem> {
    static constexpr auto calls = &ForwardedCallItem::forwardedCallInfoList_;
};

}  // namespace calljournal::detail
