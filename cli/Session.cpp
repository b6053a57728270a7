#include "Session.h"

#include <ostream>

#include "NumberMatcher.h"
#include "Region.h"
#include "StoreUrl.h"

namespace calljournal {

Session::Session(const GlobalOptions& options, std::ostream& xmlTrace)
    : store_(openStore(options.store.empty() ? defaultStoreUrl() : options.store)), journal_(*store_) {
    journal_.setNumberKey(NumberMatcher(usersRegion(options)));
    if (options.showXml) {
        journal_.setTrace([&xmlTrace](const std::string& request, const std::string& reply) {
            xmlTrace << "> " << request << "\n< " << reply << '\n';
        });
    }
}

}  // namespace calljournal
