#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "CallBackItem.h"
#include "CallKinds.h"
#include "StoreWords.h"

namespace calljournal {

/// A call-back with the id that the store gave it. A phone keeps call-backs in no schema; this is the host's own.
class StoredCallBack : public CallBackItem {
public:
    StoredCallBack() = default;
    explicit StoredCallBack(const CallBackItem& item) : CallBackItem(item) {}

    const std::string& getUniqueId() const { return uniqueId_; }
    void setUniqueId(const std::string& id) { uniqueId_ = id; }

private:
    std::string uniqueId_;
};

/// How a word of a call-back is got and set.
template <class Enumeration>
struct WordAccess {
    Enumeration (CallBackItem::*get)() const;
    void (CallBackItem::*set)(Enumeration);
};

struct CallBackField {
    format::Tag writtenAs;
    format::Tag readAs;
    std::variant<format::TextAccess<StoredCallBack>, WordAccess<NumberType::NT>, WordAccess<CallBackItem::CallBackType>,
                 WordAccess<CallBackItem::CallBackState>>
        access;
};

namespace format {

/// A call-back has fields of its own alone: no list of calls, and no notification.
template <>
struct CallKind<StoredCallBack> {
    static constexpr std::string_view schema = callBacksSchema;
    static constexpr std::string_view updateMethod{};

    using Stored = StoredCallBack;
    using Text = TextAccess<Stored>;
    static constexpr CallBackField itemFields[] = {
        {text::UNIQUEID, text::UNIQUEID, Text{&Stored::getUniqueId, &Stored::setUniqueId, Form::withoutColons}},
        {text::ENTRYID, text::ENTRYID, Text{&CallItem::getEntryId, &CallItem::setEntryId, Form::escaped}},
        {text::SURNAME, text::SURNAME, Text{&CallItem::getSurname, &CallItem::setSurname, Form::escaped}},
        {text::FIRSTNAME, text::FIRSTNAME, Text{&CallItem::getFirstname, &CallItem::setFirstname, Form::escaped}},
        {text::CALLBACKNUMBER, text::CALLBACKNUMBER, Text{&Stored::getNumber, &Stored::setNumber, Form::escaped}},
        {text::NUMBERTYPE, text::NUMBERTYPE,
         WordAccess<NumberType::NT>{&CallBackItem::getNumberType, &CallBackItem::setNumberType}},
        {text::TIMEDATE, text::TIMEDATE, Text{&Stored::getTimeDate, &Stored::setTimeDate, Form::escaped}},
        {text::CALLBACKTYPE, text::CALLBACKTYPE,
         WordAccess<CallBackItem::CallBackType>{&CallBackItem::getCallBackType, &CallBackItem::setCallBackType}},
        {text::CALLBACKSTATE, text::CALLBACKSTATE,
         WordAccess<CallBackItem::CallBackState>{&CallBackItem::getCallBackState, &CallBackItem::setCallBackState}},
        {text::CALLBACKDEVICEID, text::CALLBACKDEVICEID,
         Text{&Stored::getDeviceId, &Stored::setDeviceId, Form::escaped}},
    };
};

}  // namespace format

}  // namespace calljournal
