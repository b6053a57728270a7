#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "DialledCallItem.h"
#include "ForwardedCallItem.h"
#include "MissedCallItem.h"
#include "ReceivedCallItem.h"
#include "Tag.h"
#include "Texts.h"

namespace calljournal::format {

/// A member of a call that the format carries. Its type says how: a text as it is, left out when empty; a flag as
/// "True" or "False" and an enumeration as its word, always.
template <class Call>
using CallMember = std::variant<std::string Call::*, bool Call::*, CallLogEntryEvent::_LogTarget Call::*,
                                CallLogEntryEvent::_PresentationValue Call::*, CallLogEntryEvent::_TFormat Call::*,
                                NumberType::NT Call::*, TransferNumber::TransferNumberType Call::*>;

/// One element of a call. The rows of a table are in the order in which they are written.
template <class Call>
struct CallField {
    Tag tag;
    CallMember<Call> member;
    bool isReadFirst = false;  ///< It is searched before the field in front of it, which it is written behind.
};

/// Returns the index of the field that is searched in the place `place`, counted from 0. What a reader makes of damaged
/// data depends on that order, since the search goes on from where it found the field before.
template <class Call, std::size_t count>
constexpr std::size_t readAt(const CallField<Call> (&fields)[count], std::size_t place) {
    if (fields[place].isReadFirst) {
        return place - 1;
    }
    return place + 1 < count && fields[place + 1].isReadFirst ? place + 1 : place;
}

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
inline constexpr ItemField<CallItemWithPicture> partyFields[] = {
    {text::UNIQUEID, text::UNIQUEID,
     TextAccess<CallItemWithPicture>{&CallItemWithPicture::getUniqueId, &CallItemWithPicture::setUniqueId,
                                     Form::withoutColons}},
    {text::ENTRYID, text::ENTRYID,
     TextAccess<CallItemWithPicture>{&CallItem::getEntryId, &CallItem::setEntryId, Form::asItIs}},
    {text::SURNAME, text::SURNAME,
     TextAccess<CallItemWithPicture>{&CallItem::getSurname, &CallItem::setSurname, Form::escaped}},
    {text::FIRSTNAME, text::FIRSTNAME,
     TextAccess<CallItemWithPicture>{&CallItem::getFirstname, &CallItem::setFirstname, Form::escaped}},
};

template <class Item>
constexpr TextAccess<Item> pictureClip() {
    return {&CallItemWithPicture::getPictureClip, &CallItemWithPicture::setPictureClip, Form::asItIs};
}

inline constexpr Tag logListTag = text::LOGLIST;
inline constexpr Tag itemTag = text::ITEM;

/// What sets one kind of item apart from the others: its schema of the data access service, its notification, the list
/// of its calls, the fields that follow the party, the fields of a call, and whether a flag of a call is unescaped before
/// it is compared with "True".
template <class Item>
struct CallKind;

template <>
struct CallKind<MissedCallItem> {
    using Call = MissedCallItem::MissedCallInfo;
    static constexpr std::string_view schema = text::DAS_CALLLOGMISSEDCALLS;
    static constexpr std::string_view updateMethod = text::MISSEDCALLSUPDATE_XML;
    static constexpr auto calls = &MissedCallItem::getMissedCallInfoList;
    static constexpr auto setCalls = &MissedCallItem::setMissedCallInfoList;
    static constexpr bool unescapesFlags = true;

    static constexpr ItemField<MissedCallItem> itemFields[] = {
        // Served by the data access service under another name than it is written by.
        {text::PICTURE, text::PICTURE_CLIP, pictureClip<MissedCallItem>()},
        {text::VIEWED, text::VIEWED,
         FlagAccess<MissedCallItem>{&MissedCallItem::getViewed, &MissedCallItem::setViewed}},
    };
    static constexpr CallField<Call> callFields[] = {
        {text::NUMBER, &Call::number},
        {text::NUMBERTYPE, &Call::numberType},
        {text::CONNECTEDNUMBER, &Call::connectedNumber},
        {text::CONNECTEDNUMBERTYPE, &Call::connectedNumberType},
        {text::CONNECTEDSURNAME, &Call::connectedSurname},
        {text::CONNECTEDFIRSTNAME, &Call::connectedFirstname},
        {text::TIMEDATE, &Call::timeDate},
        {text::COMPLETED_ELSEWHERE, &Call::completedElsewhere},
        {text::TARGETLOG, &Call::targetLog},
        {text::NUMBERPRESENTATION, &Call::numberPresentation},
        {text::NAMEPRESENTATION, &Call::namePresentation},
        {text::DEFLECTNUMBERPRESENTATION, &Call::deflectNumberPresentation},
        {text::DEFLECTNUMBER, &Call::deflectNumber},
        {text::DEFLECTNUMBERTYPE, &Call::deflectNumberType},
        {text::DEFLECTNAMEPRESENTATION, &Call::deflectNamePresentation},
        {text::DEFLECTNAME, &Call::deflectName},
        {text::TIMEFORMAT, &Call::timeFormat},
        {text::GROUPNAME, &Call::groupName},
        {text::GROUPNUMBER, &Call::groupNumber},
    };
};

template <>
struct CallKind<DialledCallItem> {
    using Call = DialledCallItem::DialledCallInfo;
    static constexpr std::string_view schema = text::DAS_CALLLOGDIALLEDCALLS;
    static constexpr std::string_view updateMethod = text::DIALLEDCALLSUPDATE_XML;
    static constexpr auto calls = &DialledCallItem::getDialledCallInfoList;
    static constexpr auto setCalls = &DialledCallItem::setDialledCallInfoList;
    static constexpr bool unescapesFlags = false;

    static constexpr ItemField<DialledCallItem> itemFields[] = {
        {text::PICTURE_CLIP, text::PICTURE_CLIP, pictureClip<DialledCallItem>()},
        {text::JSGROUPBY, text::JSGROUPBY,
         TextAccess<DialledCallItem>{&DialledCallItem::getJournalSeviceGroupBy,
                                     &DialledCallItem::setJournalSeviceGroupBy, Form::asItIs}},
    };
    static constexpr CallField<Call> callFields[] = {
        {text::NUMBER, &Call::number},
        {text::NUMBERTYPE, &Call::numberType},
        {text::RESOLVEDNUMBER, &Call::resolvedNumber},
        {text::CONNECTEDNUMBER, &Call::connectedNumber},
        {text::CONNECTEDNUMBERPRIORITY, &Call::connectedNumberPriority, true},
        {text::CONNECTEDNUMBERTYPE, &Call::connectedNumberType},
        {text::CONNECTEDSURNAME, &Call::connectedSurname},
        {text::CONNECTEDFIRSTNAME, &Call::connectedFirstname},
        {text::ISBLUETOOTHCALL, &Call::isBluetoothCall},
        {text::TIMEDATE, &Call::timeDate},
        {text::DURATION, &Call::duration},
        {text::TARGETLOG, &Call::targetLog},
        {text::NUMBERPRESENTATION, &Call::numberPresentation},
        {text::NAMEPRESENTATION, &Call::namePresentation},
        {text::TIMEFORMAT, &Call::timeFormat},
        {text::TRANSFERTYPE, &Call::transferType},
    };
};

template <>
struct CallKind<ReceivedCallItem> {
    using Call = ReceivedCallItem::ReceivedCallInfo;
    static constexpr std::string_view schema = text::DAS_CALLLOGRECEIVEDCALLS;
    static constexpr std::string_view updateMethod = text::RECEIVEDCALLSUPDATE_XML;
    static constexpr auto calls = &ReceivedCallItem::getReceivedCallInfoList;
    static constexpr auto setCalls = &ReceivedCallItem::setReceivedCallInfoList;
    static constexpr bool unescapesFlags = false;

    static constexpr ItemField<ReceivedCallItem> itemFields[] = {
        {text::PICTURE_CLIP, text::PICTURE_CLIP, pictureClip<ReceivedCallItem>()},
    };
    static constexpr CallField<Call> callFields[] = {
        {text::NUMBER, &Call::number},
        {text::NUMBERTYPE, &Call::numberType},
        {text::CONNECTEDNUMBER, &Call::connectedNumber},
        {text::CONNECTEDNUMBERTYPE, &Call::connectedNumberType},
        {text::CONNECTEDSURNAME, &Call::connectedSurname},
        {text::CONNECTEDFIRSTNAME, &Call::connectedFirstname},
        {text::TIMEDATE, &Call::timeDate},
        {text::DURATION, &Call::duration},
        {text::TARGETLOG, &Call::targetLog},
        {text::NUMBERPRESENTATION, &Call::numberPresentation},
        {text::NAMEPRESENTATION, &Call::namePresentation},
        {text::DEFLECTNUMBERPRESENTATION, &Call::deflectNumberPresentation},
        {text::DEFLECTNUMBER, &Call::deflectNumber},
        {text::DEFLECTNUMBERTYPE, &Call::deflectNumberType},
        {text::DEFLECTNAMEPRESENTATION, &Call::deflectNamePresentation},
        {text::DEFLECTNAME, &Call::deflectName},
        {text::TIMEFORMAT, &Call::timeFormat},
        {text::TRANSFERTYPE, &Call::transferType},
    };
};

template <>
struct CallKind<ForwardedCallItem> {
    using Call = ForwardedCallItem::ForwardedCallInfo;
    static constexpr std::string_view schema = text::DAS_CALLLOGFORWARDEDCALLS;
    static constexpr std::string_view updateMethod = text::FORWARDEDCALLSUPDATE_XML;
    static constexpr auto calls = &ForwardedCallItem::getForwardedCallInfoList;
    static constexpr auto setCalls = &ForwardedCallItem::setForwardedCallInfoList;
    static constexpr bool unescapesFlags = false;

    static constexpr ItemField<ForwardedCallItem> itemFields[] = {
        {text::PICTURE_CLIP, text::PICTURE_CLIP, pictureClip<ForwardedCallItem>()},
    };
    static constexpr CallField<Call> callFields[] = {
        {text::NUMBER, &Call::number},
        {text::NUMBERTYPE, &Call::numberType},
        {text::CONNECTEDNUMBER, &Call::connectedNumber},
        {text::CONNECTEDNUMBERTYPE, &Call::connectedNumberType},
        {text::CONNECTEDSURNAME, &Call::connectedSurname},
        {text::CONNECTEDFIRSTNAME, &Call::connectedFirstname},
        {text::TIMEDATE, &Call::timeDate},
        {text::DURATION, &Call::duration},
        {text::TRANSFERTYPE, &Call::transferType},
    };
};

}  // namespace calljournal::format

/// Every kind of call, in the order in which people list them. KIND(Missed, missed) stands for MissedCallItem and all
/// that is named after it; its second word is what people call the kind.
#define CALLJOURNAL_CALL_KINDS(KIND) \
    KIND(Missed, missed)             \
    KIND(Dialled, dialled)           \
    KIND(Received, received)         \
    KIND(Forwarded, forwarded)
