#ifndef CALLJOURNAL_CALLINFO_H
#define CALLJOURNAL_CALLINFO_H

#include <string>

#include "CallJournalExport.h"
#include "CallLogEntryEvent.h"
#include "NumberType.h"

/// Who called whom, when and with which presentation: the part that every call detail record has.
///
///     CallInfo call;
///     call.number = "0301234";
///     call.timeDate = "2024-05-01 10:15:00";
///
/// A plain value: copies are deep, all members are public, any thread may use its own objects. There is no virtual
/// destructor; do not delete a derived object through a pointer to this class.
class CALLJOURNAL_EXPORT CallInfo {
public:
    /// All texts empty, all enumerations 0.
    CallInfo();

    /// Returns whether all eleven members are equal. Texts are compared byte for byte.
    virtual bool operator==(const CallInfo& other) const;

    /// Goes back to the state of a new object.
    virtual void reset();

    std::string reference;           ///< Kept with the call; no stored format carries it.
    std::string number;              ///< The remote party's number.
    std::string connectedNumber;     ///< The number of the party actually connected.
    std::string connectedSurname;    ///< UTF-8.
    std::string connectedFirstname;  ///< UTF-8.
    std::string timeDate;            ///< Date and time as text, in a form whose text order is the time order.
    CallLogEntryEvent::_LogTarget targetLog;
    CallLogEntryEvent::_PresentationValue numberPresentation;
    CallLogEntryEvent::_PresentationValue namePresentation;
    NumberType::NT numberType;
    NumberType::NT connectedNumberType;
};

#endif
