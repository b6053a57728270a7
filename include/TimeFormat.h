#ifndef CALLJOURNAL_TIMEFORMAT_H
#define CALLJOURNAL_TIMEFORMAT_H

#include "CallJournalExport.h"
#include "CallLogEntryEvent.h"

/// How the time of a call is to be shown; a part of call detail records. A plain value without a virtual destructor.
class CALLJOURNAL_EXPORT TimeFormat {
public:
    /// The format 0.
    TimeFormat();

    /// Returns whether both formats are equal.
    virtual bool operator==(const TimeFormat& other) const;

    /// Goes back to the format 0.
    virtual void reset();

    CallLogEntryEvent::_TFormat timeFormat;
};

#endif
