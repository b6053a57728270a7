#include "CallInfo.h"

CallInfo::CallInfo() : targetLog(), numberPresentation(), namePresentation(), numberType(), connectedNumberType() {}

bool CallInfo::operator==(const CallInfo& other) const {
    return reference == other.reference && number == other.number && connectedNumber == other.connectedNumber &&
           connectedSurname == other.connectedSurname && connectedFirstname == other.connectedFirstname &&
           timeDate == other.timeDate && targetLog == other.targetLog &&
           numberPresentation == other.numberPresentation && namePresentation == other.namePresentation &&
           numberType == other.numberType && connectedNumberType == other.connectedNumberType;
}

void CallInfo::reset() {
    *this = CallInfo();
}
