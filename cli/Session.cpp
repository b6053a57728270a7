#include "Session.h"

#include <ostream>

#include "NumberMatcher.h"
#include "StoreUrl.h"

namespace calljournal {

Session::Session(const GlobalOptions& options, std::ostream& xmlTrace)
    : store_(openStore(options.store.empty() ? defaultStoreUrl() : options.store)), journal_(*store_) {
    journal_.setNumberKey(NumberMatcher(options.region.empty() ? localeRegion() : options.region));
    if (options.showXml) {
        journal_.setTrace([&xmlTrace](const std::string& request, const std::string& reply) {
            xmlTrace << "> " << request << "\n< " << reply << '\n';
        });
    }
}

}  // namespace calljournal
