#ifndef CALLJOURNAL_JOURNALSERVICEOBSERVERIFC_H
#define CALLJOURNAL_JOURNALSERVICEOBSERVERIFC_H

#include <string>

/// Someone who wants to know of changes to the call journal.
class JournalServiceObserverIfc {
public:
    /// What happened to an entry; a notification carries the number.
    enum ActionType : int { ADDED = 0, CHANGED = 1, VIEWED = 2, DELETED = 3 };

    virtual ~JournalServiceObserverIfc() {}

    /// Takes one notification message (UTF-8 XML).
    virtual void notify(const std::string& message) = 0;
};

#endif
