#ifndef CALLJOURNAL_SESSION_H
#define CALLJOURNAL_SESSION_H

#include <iosfwd>

#include "CommandContext.h"
#include "Journal.h"
#include "NumberMatcher.h"
#include "Store.h"

namespace calljournal {

/// An opened store with the journal on top.
class Session {
public:
    /// Opens the store of `options`; throws StoreError. Requests and replies go to `xmlTrace` if they are to be shown.
    Session(const GlobalOptions& options, std::ostream& xmlTrace);

    Journal& journal() { return journal_; }

    Store& store() { return *store_; }

    /// What numbers of one party have in common.
    const NumberMatcher& numberKey() const { return numberKey_; }

private:
    std::unique_ptr<Store> store_;
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
