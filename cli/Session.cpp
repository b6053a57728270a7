#include "Session.h"

#include <ostream>

#include "StoreUrl.h"

namespace calljournal {

Session::Session(const GlobalOptions& options, std::ostream& xmlTrace)
    : store_(openStore(options.store.empty() ? defaultStoreUrl() : options.store)),
      journal_(*store_),
      numberKey_(options.region.empty() ? localeRegion() : options.region) {
    journal_.setNumberKey(numberKey_);
    if (options.showXml) {
        journal_.setTrace([&xmlTrace](const std::string& request, const std::string& reply) {
            xmlTrace << "> " << request << "\n< " << reply << '\n';
        });
    }
}

void PrintingObserver::notify(const std::string& message) {
    out_ << message << '\n';
}

}  // namespace calljournal
