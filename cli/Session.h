#pragma once

#include <memory>
#include <ostream>

#include "CommandContext.h"
#include "Journal.h"
#include "Store.h"

namespace calljournal {

/// What becomes of a store that is not there.
enum class MissingStore { isRefused, isMade };

/// An opened store with the journal on top.
class Session {
public:
    /// Opens the store of `options`; throws StoreError, also if it is not there and `missing` refuses that. Requests
    /// and replies go to `xmlTrace` if they are to be shown.
    Session(const GlobalOptions& options, MissingStore missing, std::ostream& xmlTrace);

    Journal& journal() { return journal_; }

private:
    std::unique_ptr<Store> store_;
    Journal journal_;
};

/// An observer that prints each notification on a line of its own.
class PrintingObserver : public JournalServiceObserverIfc {
public:
    explicit PrintingObserver(std::ostream& out) : out_(out) {}
    void notify(const std::string& message) override { out_ << message << '\n'; }

private:
    std::ostream& out_;
};

}  // namespace calljournal
