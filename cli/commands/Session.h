#ifndef CALLJOURNAL_SESSION_H
#define CALLJOURNAL_SESSION_H

#include <iosfwd>
#include <string>

#include "Journal.h"
#include "NumberMatcher.h"
#include "SqlDataAccessService.h"

namespace calljournal {

/// What every command takes.
struct GlobalOptions {
    std::string store;   ///< URL or path; empty for the default store.
    int log = 0;         ///< Log lines up to this level go to standard error.
    std::string format;  ///< "table", "json" or "xml"; empty for what suits the output.
    std::string region;  ///< ISO 3166-1 code; empty for the locale's.
    bool showXml = false;
};

/// An opened store with the journal on top.
class Session {
public:
    /// Opens the store of `options`; throws StoreError. Requests and replies go to `xmlTrace` if they are to be shown.
    Session(const GlobalOptions& options, std::ostream& xmlTrace);

    Journal& journal() { return journal_; }

    SqlDataAccessService& store() { return store_; }

    /// What numbers of one party have in common.
    const NumberMatcher& numberKey() const { return numberKey_; }

private:
    SqlDataAccessService store_;
    Journal journal_;
    NumberMatcher numberKey_;
};

/// An observer that prints each notification on a line of its own.
class PrintingObserver : public JournalServiceObserverIfc {
public:
    explicit PrintingObserver(std::ostream& out) : out_(out) {}
    void notify(const std::string& message) override;

private:
    std::ostream& out_;
};

}  // namespace calljournal

#endif
