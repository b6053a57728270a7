#ifndef CALLJOURNAL_REDIRECTING_H
#define CALLJOURNAL_REDIRECTING_H

#include <string>

#include "CallJournalExport.h"
#include "CallLogEntryEvent.h"
#include "NumberType.h"
#include "TransferNumber.h"

/// The party that deflected or transferred a call; a part of call detail records. A plain value without a virtual
/// destructor.
class CALLJOURNAL_EXPORT Redirecting {
public:
    /// Both texts empty, all enumerations 0.
    Redirecting();

    /// Returns whether all six members are equal. Texts are compared byte for byte.
    virtual bool operator==(const Redirecting& other) const;

    /// Goes back to the state of a new object.
    virtual void reset();

    std::string deflectNumber;
    std::string deflectName;  ///< UTF-8.
    NumberType::NT deflectNumberType;
    CallLogEntryEvent::_PresentationValue deflectNumberPresentation;
    CallLogEntryEvent::_PresentationValue deflectNamePresentation;
    TransferNumber::TransferNumberType transferType;  ///< Which number of a transfer this is.
};

#endif
