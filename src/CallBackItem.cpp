#include "CallBackItem.h"

CallBackItem::CallBackItem() : numberType_(), callBackType_(), callBackState_() {}

CallBackItem::CallBackItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                           const std::string& number, NumberType::NT numberType, const std::string& timeDate,
                           CallBackType type, CallBackState state, const std::string& deviceId)
    : CallItem(entryId, surname, firstname),
      number_(number),
      numberType_(numberType),
      timeDate_(timeDate),
      callBackType_(type),
      callBackState_(state),
      deviceId_(deviceId) {}

void CallBackItem::reset() {
    number_.clear();
    numberType_ = NumberType::NT();
    timeDate_.clear();
    callBackType_ = CallBackType();
    callBackState_ = CallBackState();
    deviceId_.clear();
}

bool CallBackItem::operator==(const CallBackItem& other) const {
    return number_ == other.number_ && numberType_ == other.numberType_ && timeDate_ == other.timeDate_ &&
           callBackType_ == other.callBackType_ && callBackState_ == other.callBackState_ &&
           deviceId_ == other.deviceId_;
}

const std::string& CallBackItem::getNumber() const {
    return number_;
}

void CallBackItem::setNumber(const std::string& text) {
    number_ = text;
}

NumberType::NT CallBackItem::getNumberType() const {
    return numberType_;
}

void CallBackItem::setNumberType(NumberType::NT value) {
    numberType_ = value;
}

const std::string& CallBackItem::getTimeDate() const {
    return timeDate_;
}

void CallBackItem::setTimeDate(const std::string& text) {
    timeDate_ = text;
}

CallBackItem::CallBackType CallBackItem::getCallBackType() const {
    return callBackType_;
}

void CallBackItem::setCallBackType(CallBackType value) {
    callBackType_ = value;
}

CallBackItem::CallBackState CallBackItem::getCallBackState() const {
    return callBackState_;
}

void CallBackItem::setCallBackState(CallBackState value) {
    callBackState_ = value;
}

const std::string& CallBackItem::getDeviceId() const {
    return deviceId_;
}

void CallBackItem::setDeviceId(const std::string& id) {
    deviceId_ = id;
}
