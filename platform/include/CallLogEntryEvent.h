#ifndef CALLJOURNAL_CALLLOGENTRYEVENT_H
#define CALLJOURNAL_CALLLOGENTRYEVENT_H

/// Enumerations of the platform's call events. Stored data relies on the numbers.
class CallLogEntryEvent {
public:
    /// The log (list) that a call belongs to.
    enum _LogTarget : int {
        IN_ANSWERED = 0,
        IN_NO_ANSWER = 1,
        IN_BUSY = 2,
        IN_GROUP_MISSED = 3,
        OUT_ANSWERED = 4,
        OUT_NO_ANSWER = 5,
        OUT_BUSY = 6,
        IN_GROUP_CALL = 7
    };

    /// Whether a number or a name may be shown.
    enum _PresentationValue : int { NOT_AVAILABLE = 0, ALLOWED = 1, NOT_ALLOWED = 2 };

    /// How a call's time is to be shown.
    enum _TFormat : int { FORM_24 = 0, FORM_AM = 1, FORM_PM = 2 };
};

#endif
