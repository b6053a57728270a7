#ifndef CALLJOURNAL_CALLBACKS_H
#define CALLJOURNAL_CALLBACKS_H

#include <array>
#include <string>
#include <string_view>
#include <variant>

#include "CallBackItem.h"
#include "Texts.h"

namespace calljournal {

/// The schema in which the host keeps call-backs; a phone has none for them.
constexpr char callBackSchema[] = "CallBacks";

/// A call-back with the id that the store gave it.
struct StoredCallBack {
    std::string uniqueId;
    CallBackItem item;
};

/// How a value of a call-back is got and set.
template <class Value>
struct CallBackAccess {
    Value (CallBackItem::*get)() const;
    void (CallBackItem::*set)(Value);
};

using CallBackText = CallBackAccess<const std::string&>;

struct CallBackField {
    std::string_view tag;
    std::variant<CallBackText, CallBackAccess<NumberType::NT>, CallBackAccess<CallBackItem::CallBackType>,
                 CallBackAccess<CallBackItem::CallBackState>>
        access;
};

/// What is kept of a call-back, in the order in which it is written. Texts are escaped once and left out when empty.
inline constexpr std::array<CallBackField, 9> callBackFields = {{
    {format::text::ENTRYID, CallBackText{&CallItem::getEntryId, &CallItem::setEntryId}},
    {format::text::SURNAME, CallBackText{&CallItem::getSurname, &CallItem::setSurname}},
    {format::text::FIRSTNAME, CallBackText{&CallItem::getFirstname, &CallItem::setFirstname}},
    {format::text::CALLBACKNUMBER, CallBackText{&CallBackItem::getNumber, &CallBackItem::setNumber}},
    {format::text::NUMBERTYPE,
     CallBackAccess<NumberType::NT>{&CallBackItem::getNumberType, &CallBackItem::setNumberType}},
    {format::text::TIMEDATE, CallBackText{&CallBackItem::getTimeDate, &CallBackItem::setTimeDate}},
    {format::text::CALLBACKTYPE,
     CallBackAccess<CallBackItem::CallBackType>{&CallBackItem::getCallBackType, &CallBackItem::setCallBackType}},
    {format::text::CALLBACKSTATE,
     CallBackAccess<CallBackItem::CallBackState>{&CallBackItem::getCallBackState, &CallBackItem::setCallBackState}},
    {format::text::CALLBACKDEVICEID, CallBackText{&CallBackItem::getDeviceId, &CallBackItem::setDeviceId}},
}};

/// Returns the body that the store keeps.
std::string encodeCallBack(const CallBackItem& item);

/// Reads a body as the store serves it, with the id in front. What is absent reads as empty or 0.
StoredCallBack decodeCallBack(const std::string& body);

}  // namespace calljournal

#endif
