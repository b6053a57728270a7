#ifndef CALLJOURNAL_CSVPARSERIFC_H
#define CALLJOURNAL_CSVPARSERIFC_H

#include <vector>

#include "CallJournalExport.h"
#include "Contact.h"

/// What a contacts importer gives: the contacts and how the import went.
class CALLJOURNAL_EXPORT CSVParserIfc {
public:
    virtual ~CSVParserIfc() {}

    /// Returns a copy of the contacts in file order, also those that were read before an error struck: look at
    /// getCSVType() first.
    virtual std::vector<Contact> getContacts() const = 0;

    /// Returns the outcome, a CSVType.
    virtual int getCSVType() const = 0;
};

#endif
