#ifndef CALLJOURNAL_FORMAT_CALLKINDS_H
#define CALLJOURNAL_FORMAT_CALLKINDS_H

#include <array>
#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "DialledCallItem.h"
#include "ForwardedCallItem.h"
#include "MissedCallItem.h"
#include "ReceivedCallItem.h"
#include "Tag.h"
#include "Texts.h"

namespace calljournal {
namespace format {

/// A member of a call that the format carries. Its type says how: a text as it is, left out when empty; a flag as
/// "True" or "False" and an enumeration as its word, always.
template <class Call>
using CallMember = std::variant<std::string Call::*, bool Call::*, CallLogEntryEvent::_LogTarget Call::*,
                                CallLogEntryEvent::_PresentationValue Call::*, CallLogEntryEvent::_TFormat Call::*,
                                NumberType::NT Call::*, TransferNumber::TransferNumberType Call::*>;

template <class Call>
using TextMember = std::string Call::*;

template <class Call>
struct CallField {
    Tag tag;
    CallMember<Call> member;
};

/// How a text of an item is written. Reading always unescapes.
enum class Form { asItIs, escaped, withoutColons };

template <class Item>
struct TextAccess {
    const std::string& (Item::*get)() const;
    void (Item::*set)(const std::string&);
    Form form;
};

template <class Item>
struct FlagAccess {
    bool (Item::*get)() const;
    void (Item::*set)(bool);
};

/// A member of an item that the format carries: texts unless they are empty, flags always.
template <class Item>
struct ItemField {
    Tag writtenAs;
    Tag readAs;
    std::variant<TextAccess<Item>, FlagAccess<Item>> access;
};

/// What every kind of item starts with.
inline constexpr std::array<ItemField<CallItemWithPicture>, 4> partyFields = {{
    {text::UNIQUEID, text::UNIQUEID,
     TextAccess<CallItemWithPicture>{&CallItemWithPicture::getUniqueId, &CallItemWithPicture::setUniqueId,
                                     Form::withoutColons}},
    {text::ENTRYID, text::ENTRYID,
     TextAccess<CallItemWithPicture>{&CallItem::getEntryId, &CallItem::setEntryId, Form::asItIs}},
    {text::SURNAME, text::SURNAME,
     TextAccess<CallItemWithPicture>{&CallItem::getSurname, &CallItem::setSurname, Form::escaped}},
    {text::FIRSTNAME, text::FIRSTNAME,
     TextAccess<CallItemWithPicture>{&CallItem::getFirstname, &CallItem::setFirstname, Form::escaped}},
}};

template <class Item>
constexpr TextAccess<Item> pictureClip() {
    return {&CallItemWithPicture::getPictureClip, &CallItemWithPicture::setPictureClip, Form::asItIs};
}

template <class Field, std::size_t count, std::size_t behindCount, std::size_t... place>
constexpr std::array<Field, sizeof...(place)> joinedAt(const std::array<Field, count>& first,
                                                       const std::array<Field, behindCount>& behind,
                                                       std::index_sequence<place...>) {
    return {{(place < count ? first[place] : behind[place - count])...}};
}

/// Returns the fields of `first` and behind them those of `rest`.
template <class Field, std::size_t count>
constexpr std::array<Field, count> joined(const std::array<Field, count>& only) {
    return only;
}

template <class Field, std::size_t count, class... Rest>
constexpr auto joined(const std::array<Field, count>& first, const Rest&... rest) {
    const auto behind = joined(rest...);
    return joinedAt(first, behind, std::make_index_sequence<count + behind.size()>());
}

/// Returns `fields` with the places `first` and `second` exchanged.
template <class Field, std::size_t count>
constexpr std::array<Field, count> exchanged(std::array<Field, count> fields, std::size_t first, std::size_t second) {
    const Field kept = fields[first];
    fields[first] = fields[second];
    fields[second] = kept;
    return fields;
}

template <class Call, std::size_t count>
using CallFields = std::array<CallField<Call>, count>;

// Runs of fields that more than one kind of call has, in the order in which they are written.

template <class Call>
inline constexpr CallFields<Call, 7> numbersNamesAndTime = {{
    {text::NUMBER, &Call::number},
    {text::NUMBERTYPE, &Call::numberType},
    {text::CONNECTEDNUMBER, &Call::connectedNumber},
    {text::CONNECTEDNUMBERTYPE, &Call::connectedNumberType},
    {text::CONNECTEDSURNAME, &Call::connectedSurname},
    {text::CONNECTEDFIRSTNAME, &Call::connectedFirstname},
    {text::TIMEDATE, &Call::timeDate},
}};

template <class Call>
inline constexpr CallFields<Call, 3> logAndPresentations = {{
    {text::TARGETLOG, &Call::targetLog},
    {text::NUMBERPRESENTATION, &Call::numberPresentation},
    {text::NAMEPRESENTATION, &Call::namePresentation},
}};

template <class Call>
inline constexpr CallFields<Call, 6> deflectionAndTimeFormat = {{
    {text::DEFLECTNUMBERPRESENTATION, &Call::deflectNumberPresentation},
    {text::DEFLECTNUMBER, &Call::deflectNumber},
    {text::DEFLECTNUMBERTYPE, &Call::deflectNumberType},
    {text::DEFLECTNAMEPRESENTATION, &Call::deflectNamePresentation},
    {text::DEFLECTNAME, &Call::deflectName},
    {text::TIMEFORMAT, &Call::timeFormat},
}};

inline constexpr Tag logListTag = text::LOGLIST;
inline constexpr Tag itemTag = text::ITEM;

/// What sets one kind of item apart from the others: its table in the data access service, its notification, the fields
/// that follow the party, the list of calls, the fields of a call in the order in which they are written and read, and
/// whether a flag of a call is unescaped before it is compared with "True".
template <class Item>
struct CallKind;

/// What all kinds share: the picture, which is long enough to be put into its place without a copy.
template <>
struct CallKind<CallItemWithPicture> {
    static constexpr auto ownPictureClip = &CallItemWithPicture::pictureClip_;
};

template <>
struct CallKind<MissedCallItem> {
    using Call = MissedCallItem::MissedCallInfo;
    static constexpr std::string_view schema = text::DAS_CALLLOGMISSEDCALLS;
    static constexpr std::string_view updateMethod = text::MISSEDCALLSUPDATE_XML;
    static constexpr auto calls = &MissedCallItem::getMissedCallInfoList;
    static constexpr auto setCalls = &MissedCallItem::setMissedCallInfoList;
    static constexpr auto ownCalls = &MissedCallItem::missedCallInfoList_;

    static constexpr std::array<ItemField<MissedCallItem>, 2> itemFields = {{
        // Served by the data access service under another name than it is written by.
        {text::PICTURE, text::PICTURE_CLIP, pictureClip<MissedCallItem>()},
        {text::VIEWED, text::VIEWED,
         FlagAccess<MissedCallItem>{&MissedCallItem::getViewed, &MissedCallItem::setViewed}},
    }};
    static constexpr auto callFields =
        joined(numbersNamesAndTime<Call>, CallFields<Call, 1>{{{text::COMPLETED_ELSEWHERE, &Call::completedElsewhere}}},
               logAndPresentations<Call>, deflectionAndTimeFormat<Call>,
               CallFields<Call, 2>{{{text::GROUPNAME, &Call::groupName}, {text::GROUPNUMBER, &Call::groupNumber}}});
    static constexpr const auto& readFields = callFields;
    static constexpr bool unescapesFlags = true;
};

template <>
struct CallKind<DialledCallItem> {
    using Call = DialledCallItem::DialledCallInfo;
    static constexpr std::string_view schema = text::DAS_CALLLOGDIALLEDCALLS;
    static constexpr std::string_view updateMethod = text::DIALLEDCALLSUPDATE_XML;
    static constexpr auto calls = &DialledCallItem::getDialledCallInfoList;
    static constexpr auto setCalls = &DialledCallItem::setDialledCallInfoList;
    static constexpr auto ownCalls = &DialledCallItem::dialledCallInfoList_;

    static constexpr std::array<ItemField<DialledCallItem>, 2> itemFields = {{
        {text::PICTURE_CLIP, text::PICTURE_CLIP, pictureClip<DialledCallItem>()},
        {text::JSGROUPBY, text::JSGROUPBY,
         TextAccess<DialledCallItem>{&DialledCallItem::getJournalSeviceGroupBy,
                                     &DialledCallItem::setJournalSeviceGroupBy, Form::asItIs}},
    }};
    static constexpr auto callFields =
        joined(CallFields<Call, 11>{{
                   {text::NUMBER, &Call::number},
                   {text::NUMBERTYPE, &Call::numberType},
                   {text::RESOLVEDNUMBER, &Call::resolvedNumber},
                   {text::CONNECTEDNUMBER, &Call::connectedNumber},
                   {text::CONNECTEDNUMBERPRIORITY, &Call::connectedNumberPriority},
                   {text::CONNECTEDNUMBERTYPE, &Call::connectedNumberType},
                   {text::CONNECTEDSURNAME, &Call::connectedSurname},
                   {text::CONNECTEDFIRSTNAME, &Call::connectedFirstname},
                   {text::ISBLUETOOTHCALL, &Call::isBluetoothCall},
                   {text::TIMEDATE, &Call::timeDate},
                   {text::DURATION, &Call::duration},
               }},
               logAndPresentations<Call>,
               CallFields<Call, 2>{{{text::TIMEFORMAT, &Call::timeFormat}, {text::TRANSFERTYPE, &Call::transferType}}});
    // The priority is looked for before the number that it is written behind. Readers of damaged data notice: the
    // search then goes on from before the number.
    static constexpr auto readFields = exchanged(callFields, 3, 4);
    static constexpr bool unescapesFlags = false;
};

template <>
struct CallKind<ReceivedCallItem> {
    using Call = ReceivedCallItem::ReceivedCallInfo;
    static constexpr std::string_view schema = text::DAS_CALLLOGRECEIVEDCALLS;
    static constexpr std::string_view updateMethod = text::RECEIVEDCALLSUPDATE_XML;
    static constexpr auto calls = &ReceivedCallItem::getReceivedCallInfoList;
    static constexpr auto setCalls = &ReceivedCallItem::setReceivedCallInfoList;
    static constexpr auto ownCalls = &ReceivedCallItem::receivedCallInfoList_;

    static constexpr std::array<ItemField<ReceivedCallItem>, 1> itemFields = {{
        {text::PICTURE_CLIP, text::PICTURE_CLIP, pictureClip<ReceivedCallItem>()},
    }};
    static constexpr auto callFields = joined(
        numbersNamesAndTime<Call>, CallFields<Call, 1>{{{text::DURATION, &Call::duration}}}, logAndPresentations<Call>,
        deflectionAndTimeFormat<Call>, CallFields<Call, 1>{{{text::TRANSFERTYPE, &Call::transferType}}});
    static constexpr const auto& readFields = callFields;
    static constexpr bool unescapesFlags = false;
};

template <>
struct CallKind<ForwardedCallItem> {
    using Call = ForwardedCallItem::ForwardedCallInfo;
    static constexpr std::string_view schema = text::DAS_CALLLOGFORWARDEDCALLS;
    static constexpr std::string_view updateMethod = text::FORWARDEDCALLSUPDATE_XML;
    static constexpr auto calls = &ForwardedCallItem::getForwardedCallInfoList;
    static constexpr auto setCalls = &ForwardedCallItem::setForwardedCallInfoList;
    static constexpr auto ownCalls = &ForwardedCallItem::forwardedCallInfoList_;

    static constexpr std::array<ItemField<ForwardedCallItem>, 1> itemFields = {{
        {text::PICTURE_CLIP, text::PICTURE_CLIP, pictureClip<ForwardedCallItem>()},
    }};
    static constexpr auto callFields =
        joined(numbersNamesAndTime<Call>,
               CallFields<Call, 2>{{{text::DURATION, &Call::duration}, {text::TRANSFERTYPE, &Call::transferType}}});
    static constexpr const auto& readFields = callFields;
    static constexpr bool unescapesFlags = false;
};

}  // namespace format
}  // namespace calljournal

#endif
