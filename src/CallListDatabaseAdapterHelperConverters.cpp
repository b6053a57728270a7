#include "CallListDatabaseAdapterHelper.h"
#include "format/Words.h"

using calljournal::format::fromWord;
using calljournal::format::toWord;

std::string CallListDatabaseAdapterHelper::convertTargetLog(CallLogEntryEvent::_LogTarget value) {
    return std::string(toWord(value));
}

CallLogEntryEvent::_LogTarget CallListDatabaseAdapterHelper::convertTargetLog(const std::string& word) {
    return fromWord<CallLogEntryEvent::_LogTarget>(word);
}

std::string CallListDatabaseAdapterHelper::convertPresentationValue(CallLogEntryEvent::_PresentationValue value) {
    return std::string(toWord(value));
}

CallLogEntryEvent::_PresentationValue CallListDatabaseAdapterHelper::convertPresentationValue(const std::string& word) {
    return fromWord<CallLogEntryEvent::_PresentationValue>(word);
}

std::string CallListDatabaseAdapterHelper::convertTimeFormat(CallLogEntryEvent::_TFormat value) {
    return std::string(toWord(value));
}

CallLogEntryEvent::_TFormat CallListDatabaseAdapterHelper::convertTimeFormat(const std::string& word) {
    return fromWord<CallLogEntryEvent::_TFormat>(word);
}

std::string CallListDatabaseAdapterHelper::convertNumberType(NumberType::NT value) {
    return std::string(toWord(value));
}

NumberType::NT CallListDatabaseAdapterHelper::convertNumberType(const std::string& word) {
    return fromWord<NumberType::NT>(word);
}

std::string CallListDatabaseAdapterHelper::convertTransferNumberTypeValue(TransferNumber::TransferNumberType value) {
    return std::string(toWord(value));
}

TransferNumber::TransferNumberType CallListDatabaseAdapterHelper::convertTransferNumberTypeValue(
    const std::string& word) {
    return fromWord<TransferNumber::TransferNumberType>(word);
}

std::string CallListDatabaseAdapterHelper::getOrderedContactSourceToString(Contact::eOrderedContactSource value) {
    return std::string(toWord(value));
}

Contact::eOrderedContactSource CallListDatabaseAdapterHelper::getOrderedContactSource(std::string& word) {
    return fromWord<Contact::eOrderedContactSource>(word);
}
