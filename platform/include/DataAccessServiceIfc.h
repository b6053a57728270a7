#ifndef CALLJOURNAL_DATAACCESSSERVICEIFC_H
#define CALLJOURNAL_DATAACCESSSERVICEIFC_H

#include <string>

/// The phone's data access service: a database service that takes one XML request text and answers with one XML reply
/// text. The journal service owns it; the library keeps a plain pointer and calls it on the caller's own thread.
class DataAccessServiceIfc {
public:
    virtual ~DataAccessServiceIfc() {}

    /// Carries out `request` (UTF-8 XML, declaration included) and returns the reply text. May throw; the library lets
    /// the exception pass.
    virtual std::string processRequest(const std::string& request) = 0;
};

#endif
